#include "TreeCopy.hpp"

#include <fcntl.h>
#include <gmock/gmock.h>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>

#include "Compare.hpp"
#include "Descriptor.hpp"
#include "RandomTree.hpp"
#include "TemporaryFolder.hpp"
#include "TreeRecord.hpp"

namespace volbrin::test {
namespace {

namespace fs = std::filesystem;
using testing::HasSubstr;

class TreeCopyTests : public testing::Test {
 protected:
  TemporaryFolder folder_;
};

TEST_F(TreeCopyTests, KeepsAllThatATreeIs) {
  for (std::uint32_t seed = 1; seed <= 3; ++seed) {
    const auto top = folder_.folder("top" + std::to_string(seed));
    const RandomTree tree(top, seed);
    const auto sparse = folder_.file("top" + std::to_string(seed) + "/sparse", "begin");
    fs::resize_file(sparse, 20'000'000);
    const auto odd = folder_.file("top" + std::to_string(seed) + "/z/odd", "1");
    ASSERT_EQ(::setxattr(odd.c_str(), "user.mark", "kept", 4, 0), 0);
    ASSERT_EQ(::lchown(odd.c_str(), 12345, 54321), 0);
    ASSERT_EQ(::chmod(odd.c_str(), 04751), 0);
    ASSERT_EQ(::chmod((top + "/z").c_str(), 0500), 0);
    const timespec times[2] = {{1, 2}, {3, 123456789}};
    ASSERT_EQ(::utimensat(AT_FDCWD, (top + "/z").c_str(), times, 0), 0);

    const auto before = recordOf(top);
    const auto fault = copyTree(top, folder_.at("copy" + std::to_string(seed)), nullptr);
    EXPECT_FALSE(fault) << fault->what;
    const auto copy = folder_.at("copy" + std::to_string(seed));
    EXPECT_EQ(recordOf(copy), before);
    EXPECT_EQ(recordOf(top), before);
    const auto diff = compareCopies(top, copy, CompareBy::contentsOnDrive);
    EXPECT_TRUE(diff && diff->isProof());
  }
}

TEST_F(TreeCopyTests, CopiesMoreThanItKeepsOnItsWay) {
  const auto source = folder_.file("big", "begin");
  fs::resize_file(source, 3'000'000'000'000);  // a hole that nobody waits for
  std::string piece;
  piece.resize(21'000'000, 'p');
  for (const char last : {'a', 'b'}) {
    piece.back() = last;
    std::ofstream(source, std::ios::binary | std::ios::in | std::ios::ate) << piece;
  }
  EXPECT_FALSE(copyTree(source, folder_.at("copy"), nullptr));
  const Descriptor files[] = {Descriptor(::open(source.c_str(), O_RDONLY | O_CLOEXEC)),
                              Descriptor(::open(folder_.at("copy").c_str(), O_RDONLY | O_CLOEXEC))};
  std::string contents[2];
  for (std::size_t i = 0; i < 2; ++i) {
    struct stat status {};
    ASSERT_EQ(::fstat(files[i].get(), &status), 0);
    EXPECT_EQ(status.st_size, 3'000'042'000'000);
    EXPECT_LT(status.st_blocks * 512, 60'000'000);
    contents[i].resize(2 * piece.size());
    ASSERT_EQ(::pread(files[i].get(), contents[i].data(), contents[i].size(), 3'000'000'000'000),
              static_cast<ssize_t>(contents[i].size()));
  }
  EXPECT_TRUE(contents[0] == contents[1]);
}

TEST_F(TreeCopyTests, CopiesSingleItems) {
  const auto file = folder_.file("file", "text");
  const auto link = folder_.link("link", "nowhere");
  for (const auto& source : {file, link}) {
    EXPECT_FALSE(copyTree(source, source + " copy", nullptr));
    EXPECT_EQ(recordOf(source + " copy"), recordOf(source));
  }
}

TEST_F(TreeCopyTests, NeverMergesAndRefusesWhatItCantCopy) {
  folder_.file("tree/in/file", "1"), folder_.file("there/own", "2");
  folder_.link("dangling", "nowhere"), folder_.folder("special/in");
  ASSERT_EQ(::mkfifo(folder_.at("special/in/pipe").c_str(), 0600), 0);
  struct Case {
    const char *source, *target, *what;
  };
  for (const auto& [source, target, what] :
       {Case{"tree", "there", "File exists"}, Case{"tree", "dangling", "File exists"},
        Case{"tree/in/file", "there/own", "File exists"}, Case{"none", "new", "none"},
        Case{"tree", "none/new", "No such file"}, Case{"special", "new", "in/pipe"}}) {
    const auto before = recordOf(folder_.path());
    const auto fault = copyTree(folder_.at(source), folder_.at(target), nullptr);
    ASSERT_TRUE(fault) << source;
    EXPECT_FALSE(fault->hasStarted) << source;
    EXPECT_THAT(fault->what, HasSubstr(what));
    EXPECT_EQ(recordOf(folder_.path()), before);
  }
}

class StoppingObserver final : public CopyObserver {
 public:
  explicit StoppingObserver(ByteCount limit) : limit_(limit) {}
  void copying(const std::string& path) override { paths.push_back(path); }
  void copied(ByteCount bytes) override { sum += bytes; }
  bool isStopped() const override { return sum >= limit_; }

  std::vector<std::string> paths;
  ByteCount sum = 0;

 private:
  ByteCount limit_;
};

TEST_F(TreeCopyTests, TellsHowItGoesOnAndStops) {
  for (const char* name : {"a", "b/c", "d"}) {
    folder_.file(std::string("tree/") + name, std::string(10'000, 'x'));
  }
  StoppingObserver whole(1'000'000), half(15'000);
  EXPECT_FALSE(copyTree(folder_.at("tree"), folder_.at("whole"), &whole));
  EXPECT_EQ(whole.sum, 30'000);
  EXPECT_THAT(whole.paths, testing::ElementsAre("a", "b/c", "d"));
  const auto fault = copyTree(folder_.at("tree"), folder_.at("half"), &half);
  ASSERT_TRUE(fault);
  EXPECT_TRUE(fault->hasStarted);
  EXPECT_EQ(half.sum, 20'000);
}

TEST_F(TreeCopyTests, ReachesAnyDepth) {
  const auto tree = folder_.folder("tree");
  folder_.file("tree/file", "deep");
  for (int depth = 0; depth < 300; ++depth) {  // from the inside out: too deep for whole paths
    const auto above = folder_.folder("above");
    folder_.file("above/z", "beside");
    fs::rename(tree, above + "/" + std::string(100, 'd'));
    fs::rename(above, tree);
  }
  EXPECT_FALSE(copyTree(tree, folder_.at("copy"), nullptr));
  const auto diff = compareCopies(tree, folder_.at("copy"), CompareBy::contentsOnDrive);
  EXPECT_TRUE(diff && diff->isProof());
  EXPECT_EQ(diff->files, 301);
}

}  // namespace
}  // namespace volbrin::test
