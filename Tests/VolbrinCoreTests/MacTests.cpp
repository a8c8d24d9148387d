#include "Mac.hpp"

#include <gmock/gmock.h>
#include <sys/xattr.h>

#include <cerrno>
#include <filesystem>

#include "Files.hpp"
#include "Machine.hpp"
#include "RecordingPlatform.hpp"

namespace volbrin::test {
namespace {

using testing::_;
using testing::ElementsAre;
using testing::HasSubstr;
namespace fs = std::filesystem;

TEST(MacTests, TurnsPathsThereAndBack) {
  const Machine machine;
  const Mac fake = machine.mac();
  const Mac real("", "/Users/x", std::make_shared<RecordingPlatform>());
  const auto& root = machine.root();
  struct Case {
    const Mac& mac;
    std::string written, absolute, display;
  };
  for (const auto& [mac, written, absolute, display] :
       {Case{fake, "~", root + "/Users/me", "~"},
        Case{fake, "~/a b", fake.home() + "/a b", "~/a b"}, Case{fake, "", root, "/"},
        Case{fake, "~x", root + "~x", "~x"}, Case{real, "~/a", "/Users/x/a", "~/a"},
        Case{real, "/Users/xy", "/Users/xy", "/Users/xy"}}) {
    EXPECT_EQ(mac.path(written), absolute) << written;
    EXPECT_EQ(mac.display(absolute), display) << written;
  }
}

TEST(MacTests, AnswersFromTheFixture) {
  const Machine machine;
  machine.setFixture(R"({"drives":[{"name":"Disk","path":"/","total":10,"free":4},
                                   {"name":"Ext","path":"/Volumes/Ext","total":20,"free":5}],
      "running":["a.b","a.b","c"], "tools":["brew"], "scale":2.5,
      "simRuntimes":[{"id":"r","name":"iOS 17","bytes":7}],
      "lastUsed":{"~/B.app":"2026-03-02", "/C.app":null, "/D.app":"yesterday"}})");
  const Mac mac = machine.mac();
  const auto& root = machine.root();
  EXPECT_THAT(mac.drives(), ElementsAre(DriveInfo{"Disk", root, true, 10, 4, 4},
                                        DriveInfo{"Ext", root + "/Volumes/Ext", false, 20, 5, 5}));
  EXPECT_THAT(mac.runningBundleIDs(), ElementsAre("a.b", "c"));
  EXPECT_FALSE(mac.which("docker") || !mac.which("brew") || mac.run({"/bin/echo"}) ||
               mac.runAsAdmin({{"true"}}));
  EXPECT_THAT(mac.simulatorRuntimes(),
              testing::Optional(ElementsAre(SimRuntime{"r", "iOS 17", 7})));
  EXPECT_EQ(mac.lastUsed(mac.path("~/B.app")), parseIso8601("2026-03-02"));
  for (const char* app : {"/C.app", "/D.app", "/E.app"}) EXPECT_FALSE(mac.lastUsed(root + app));
}

TEST(MacTests, RaisesTheErrorOfItsFixture) {
  const Machine machine;
  machine.setFixture(R"({"drives":[{"name":"D","path":"/","total":"big","free":1}]})");
  EXPECT_THAT(
      [&] { std::ignore = machine.mac(); },
      testing::ThrowsMessage<DecodingError>(HasSubstr("volbrin-fixture.json: drives[0].total: ")));
}

TEST(MacTests, FindsCloudFolders) {
  const Machine machine;
  machine.setFixture(R"({"drives":[], "cloud":["~/Dropbox", "~/Library/CloudStorage", "/Sync"]})");
  const Mac mac = machine.mac();
  EXPECT_THAT(mac.cloud(),
              ElementsAre(CloudFolder{mac.path("~/Library/Mobile Documents"), "iCloud Drive"},
                          CloudFolder{mac.path("~/Library/CloudStorage"), "a cloud drive"},
                          CloudFolder{mac.path("~/Dropbox"), "iCloud Drive"},
                          CloudFolder{mac.path("/Sync"), "iCloud Drive"}));
  EXPECT_EQ(mac.cloudFolderOf(mac.path("~/Library/CloudStorage/x")), mac.cloud()[1]);
  EXPECT_FALSE(mac.cloudFolderOf(mac.path("/Sync-not")) ||
               mac.cloudFolderOf(mac.path("~/Library")));

  machine.fileOfSize("~/Dropbox/sub/big", 100'000);
  EXPECT_LT(mac.usage(mac.path("~")).bytes, 100'000);
}

/// Whether the item now carries the mark of a cloud's domain; some file systems can't.
bool mark(const std::string& path, const std::string& domain) {
  return ::lsetxattr(path.c_str(), "user.com.apple.file-provider-domain-id", domain.data(),
                     domain.size(), 0) == 0;
}

TEST(MacTests, FindsFoldersThatACloudKeeps) {
  const Machine machine;
  const auto documents = machine.folder("~/Documents"), desktop = machine.folder("~/Desktop");
  if (!mark(documents, "com.apple.CloudDocs.iCloudDriveFileProvider/1") && errno == ENOTSUP) {
    GTEST_SKIP() << "the temporary folder's file system has no extended attributes";
  }
  ASSERT_TRUE(mark(desktop, "com.maker.sync"));
  const auto link = machine.link("~/Pictures", documents);
  EXPECT_FALSE(fileProviderOf(link) || fileProviderOf(machine.path("~")));
  EXPECT_THAT(machine.mac().cloud(), ElementsAre(_, _, CloudFolder{desktop, "a cloud drive"},
                                                 CloudFolder{documents, "iCloud Drive"}));
}

TEST(MacTests, ScalesWhatItMeasures) {
  const Machine machine;
  const auto file = machine.fileOfSize("~/file", 8'192);
  machine.fileOfSize("~/.Trash/old", 8'192);
  const auto plain = machine.mac().usage(file).bytes;
  const auto trash = machine.mac().trashBytes();
  machine.setFixture(R"({"drives":[{"name":"D","path":"/","total":10,"free":4}],"scale":2.5})");
  const Mac mac = machine.mac();
  EXPECT_EQ(mac.usage(file).bytes, plain * 5 / 2);

  EXPECT_EQ(statusOf(mac).trashBytes, trash * 5 / 2);
}

TEST(MacTests, NumbersWhatItTrashesAndLosesNothing) {
  const Machine machine;
  const Mac mac = machine.mac();
  const auto trash = [&](const std::string& contents) {
    return mac.trash(machine.file("~/sub/a.txt", contents));
  };
  machine.link("~/.Trash/a.txt 2", "nothing");
  EXPECT_EQ(trash("1"), mac.path("~/.Trash/a.txt"));
  EXPECT_EQ(trash("2"), mac.path("~/.Trash/a.txt 3"));
  EXPECT_EQ(readFile(mac.path("~/.Trash/a.txt")) + readFile(mac.path("~/.Trash/a.txt 3")), "12");

  EXPECT_TRUE(isSymlink(mac.trash(machine.link("~/sub/link", "a.txt"))));
  EXPECT_THROW(mac.trash(mac.path("~/missing")), std::system_error);

  fs::remove_all(mac.path("~/.Trash"));
  machine.file("~/.Trash");
  EXPECT_THROW(trash("kept"), std::system_error);
  EXPECT_EQ(readFile(mac.path("~/sub/a.txt")), "kept");
}

}  // namespace
}  // namespace volbrin::test
