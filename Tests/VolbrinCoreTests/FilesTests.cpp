#include "Files.hpp"

#include <gmock/gmock.h>
#include <sys/stat.h>

#include <filesystem>
#include <system_error>

#include "PrivacyFence.hpp"
#include "TemporaryFolder.hpp"

namespace volbrin::test {
namespace {

using namespace std::string_literals;
namespace fs = std::filesystem;

TEST(FilesTests, TellsWhatStandsAtAPath) {
  const TemporaryFolder folder;
  folder.file("file", "12345");
  folder.folder("folder");
  folder.link("to-folder", "folder");
  folder.link("dangling", "nothing");
  struct Case {
    std::string name;
    bool exists, isDirectory, isSymlink;
    std::optional<ByteCount> size;
  };
  const Case cases[] = {{"file", true, false, false, 5},
                        {"folder", true, true, false, sizeOf(folder.at("folder"))},
                        {"to-folder", true, true, true, 6},
                        {"dangling", false, false, true, 7},
                        {"file\0x"s, false, false, false, {}}};
  for (const auto& each : cases) {
    SCOPED_TRACE(each.name);
    const auto path = folder.at(each.name);
    EXPECT_EQ(exists(path), each.exists);
    EXPECT_EQ(isDirectory(path), each.isDirectory);
    EXPECT_EQ(isSymlink(path), each.isSymlink);
    EXPECT_EQ(sizeOf(path), each.size);
    EXPECT_EQ(modified(path).has_value(), each.size.has_value());
  }
}

TEST(FilesTests, ListsHostileNames) {
  const TemporaryFolder folder;
  const std::vector<std::string> names = {"\x01 control", "line\nbreak", "\xFF\xFE no text"};
  std::vector<std::string> paths;
  for (const auto& name : names) paths.push_back(folder.file("top/" + name));
  EXPECT_THAT(listNames(folder.at("top")), testing::UnorderedElementsAreArray(names));
  folder.file("top/.hidden");
  EXPECT_EQ(children(folder.at("top")), paths);
}

TEST(FilesTests, KeepsOutOfFencedFolders) {
  const TemporaryFolder folder;
  const auto root = folder.folder("above/root");
  const auto inside = folder.folder("above/root/inside");
  const auto file = folder.file("above/root/inside/file", "text");
  const auto link = folder.link("above/root/link", "inside");
  folder.folder("above/root-beside");
  const FenceGuard fence({root});

  EXPECT_THAT(children(folder.at("above")), testing::ElementsAre(root, root + "-beside"));
  for (const auto& path : {root, inside}) {
    EXPECT_TRUE(children(path).empty() && listNames(path).empty()) << path;
  }
  for (const auto& path : {inside, file, link}) {
    EXPECT_FALSE(exists(path) || sizeOf(path) || modified(path) || readFileIfPossible(path));
  }
}

TEST(FilesTests, ReadsWholeFiles) {
  const TemporaryFolder folder;
  const auto contents = "\0\xFF\n"s + std::string(200'000, 'x');
  EXPECT_EQ(readFile(folder.file("file", contents)), contents);
  EXPECT_FALSE(readFile("/proc/self/status").empty());  // says that it holds 0 bytes
}

TEST(FilesTests, RefusesWhatIsNoPlainFile) {
  const TemporaryFolder folder;
  ASSERT_EQ(::mkfifo(folder.at("pipe").c_str(), 0600), 0);
  fs::resize_file(folder.file("big"), static_cast<std::uintmax_t>(maximumFileBytes) + 1);
  for (const char* name : {"pipe", "", "missing", "big"}) {
    EXPECT_THROW(std::ignore = readFile(folder.at(name)), std::system_error) << name;
    EXPECT_FALSE(readFileIfPossible(folder.at(name))) << name;
  }
}

TEST(FilesTests, ResolvesLinks) {
  const TemporaryFolder folder;
  folder.file("real/file");
  folder.link("link", "real/../real");
  EXPECT_EQ(resolved(folder.at("link/./file")), folder.at("real/file"));
}

}  // namespace
}  // namespace volbrin::test
