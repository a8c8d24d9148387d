#include "Platform/Linux/LinuxPlatform.hpp"

#include <gmock/gmock.h>

#include <cstdlib>
#include <filesystem>

#include "Files.hpp"
#include "Paths.hpp"
#include "Platform/Linux/ChildProcess.hpp"
#include "Platform/Linux/LinuxDrives.hpp"
#include "Platform/Linux/LinuxTrash.hpp"
#include "System.hpp"
#include "TemporaryFolder.hpp"

namespace volbrin::test {
namespace {

using namespace std::string_literals;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::MatchesRegex;
using testing::Optional;
namespace fs = std::filesystem;

/// An environment variable, changed as long as this value lives.
class Variable {
 public:
  Variable(const char* name, const std::string& value) : name_(name) {
    if (const char* before = std::getenv(name)) before_ = before;
    ::setenv(name, value.c_str(), 1);
  }
  ~Variable() { before_ ? ::setenv(name_, before_->c_str(), 1) : ::unsetenv(name_); }
  Variable(const Variable&) = delete;
  Variable& operator=(const Variable&) = delete;

 private:
  const char* name_;
  std::optional<std::string> before_;
};

TEST(LinuxDrivesTests, ReadsTheMountTable) {
  const auto mounts = parseMountInfo(
      "22 1 259:2 / / rw,relatime shared:1 master:3 - ext4 /dev/nvme0n1p2 rw\n"
      "40 22 8:17 /sub /mnt/My\\040Disk\\134\\011x rw - ext4 /dev/disk/by\\040id rw\n"
      "\nnonsense\n42 22 8:1 / /short rw\n43 22 8:1 / /short rw -\n44 22 8:1 / /short rw - ext4\n");
  EXPECT_THAT(mounts,
              ElementsAre(Mount{"259:2", "/", "/", "ext4", "/dev/nvme0n1p2"},
                          Mount{"8:17", "/sub", "/mnt/My Disk\\\tx", "ext4", "/dev/disk/by id"}));
}

TEST(LinuxDrivesTests, KeepsWhatIsADriveToAUser) {
  struct Case {
    std::vector<std::string> lines, wanted;
  };
  const std::string top = "259:2 / / rw - ext4 /dev/nvme0n1p2";
  const Case cases[] = {
      // What is no drive, and what only looks like it.
      {{top, "0:5 / /dev rw - devtmpfs udev", "0:51 / /ssh rw - fuse.sshfs me@host:/",
        "7:1 / /snap/core rw - squashfs /dev/loop1", "0:70 / /tank rw - zfs tank",
        "8:33 / /media/usb rw - fuseblk /dev/sdc1"},
       {"/", "/tank", "/media/usb"}},
      // A bound folder before its disk.
      {{top, "8:17 /sub /mnt/sub rw - ext4 /dev/sdb1", "8:17 / /mnt/disk rw - ext4 /dev/sdb1"},
       {"/", "/mnt/disk"}},
      // Below and on top of another mount.
      {{top, "8:17 / /mnt rw - ext4 /dev/sdb1", "0:7 / /mnt rw - tmpfs tmpfs"}, {"/"}},
      {{top, "0:7 / /mnt rw - tmpfs tmpfs", "8:17 / /mnt rw - ext4 /dev/sdb1"}, {"/", "/mnt"}}};
  for (const auto& [lines, wanted] : cases) {
    std::string table;
    for (const auto& line : lines) table += "1 1 " + line + " rw\n";
    const auto mounts = driveMounts(parseMountInfo(table), {"tmpfs", "devtmpfs", "fuse", "zfs"});
    std::vector<std::string> paths;
    for (const auto& mount : mounts) paths.push_back(mount.path);
    EXPECT_EQ(paths, wanted) << table;
  }
}

TEST(ChildProcessTests, ReturnsTheOutputOfWhatWentWell) {
  const auto shell = [](const std::string& script) { return outputOf("/bin/sh", {"-c", script}); };
  EXPECT_THAT(shell("echo out; echo err >&2"), Optional("out\n"s));
  EXPECT_THAT(shell("head -c 5000000 /dev/zero"), Optional(std::string(5'000'000, '\0')));
  EXPECT_THAT(shell("cat"), Optional(""s));  // its input is empty and not ours
  EXPECT_FALSE(shell("echo out; exit 3"));
  EXPECT_FALSE(outputOf("/missing/program", {}));
}

TEST(ChildProcessTests, KeepsArgumentsFromAnyShell) {
  const LinuxPlatform platform("/nowhere");
  const std::string odd = "$HOME `id` \"*\" 'x'; exit 1 | & \\n";
  EXPECT_THAT(platform.run({"printf", "%s|", odd, "", "-x"}), Optional(odd + "||-x|"));
  EXPECT_FALSE(platform.run({}) || platform.run({"echo x"}) || platform.runAsAdmin({{"true"}}));
}

TEST(ChildProcessTests, FindsToolsInOrder) {
  const TemporaryFolder folder;
  for (const char* path : {"one/both", "two/both"}) {
    fs::permissions(folder.file(path), fs::perms::owner_all);
  }
  fs::permissions(folder.file("one/plain"), fs::perms::owner_read);
  folder.folder("one/folder");
  const std::vector<std::string> more = {folder.at("two")};
  const Variable environment("PATH", "::" + folder.at("one") + "::" + folder.at("none"));
  EXPECT_EQ(findTool("both", more), folder.at("one/both"));
  fs::remove(folder.at("one/both"));
  EXPECT_EQ(findTool("both", more), folder.at("two/both"));
  for (const char* none : {"plain", "folder", "", "../two/both"})
    EXPECT_FALSE(findTool(none, more));
}

/// A home with a Trash of its own, whatever the environment says.
class LinuxTrashTests : public testing::Test {
 protected:
  [[nodiscard]] std::string home() const { return folder_.at("home"); }
  std::string trash(const std::string& path) const { return LinuxPlatform(home()).trash(path); }
  [[nodiscard]] std::string record(const std::string& name) const {
    return readFile(home() + "/.local/share/Trash/info/" + name + ".trashinfo");
  }

  Variable dataHome_{"XDG_DATA_HOME", ""};
  TemporaryFolder folder_;
  std::string files_ = folder_.at("home/.local/share/Trash/files");
};

TEST_F(LinuxTrashTests, RecordsWhereThingsCameFrom) {
  const auto odd = folder_.file("sub/odd %\n\xFF~é", "contents");
  EXPECT_EQ(trash(odd), files_ + "/odd %\n\xFF~é");
  EXPECT_EQ(readFile(files_ + "/odd %\n\xFF~é"), "contents");
  EXPECT_THAT(record("odd %\n\xFF~é"),
              MatchesRegex("\\[Trash Info\\]\nPath=" + folder_.at("sub/odd%20%25%0A%FF~%C3%A9") +
                           "\nDeletionDate=[0-9]{4}-[0-9]{2}-[0-9]{2}T[0-9:]{8}\n"));
  EXPECT_EQ(fs::status(home() + "/.local/share/Trash").permissions(), fs::perms::owner_all);
}

TEST_F(LinuxTrashTests, ReplacesNothing) {
  EXPECT_EQ(trash(folder_.file("a", "1")), files_ + "/a");
  EXPECT_EQ(trash(folder_.file("a", "2")), files_ + "/a 2");
  EXPECT_EQ(readFile(files_ + "/a") + readFile(files_ + "/a 2"), "12");
  folder_.file("home/.local/share/Trash/info/b.trashinfo", "a record without a file");
  EXPECT_EQ(trash(folder_.file("b")), files_ + "/b 2");
  EXPECT_EQ(record("b"), "a record without a file");
  folder_.link("home/.local/share/Trash/files/c", "a dangling link without a record");
  EXPECT_EQ(trash(folder_.file("c", "new")), files_ + "/c 2");
}

TEST_F(LinuxTrashTests, LeavesNoRecordWhenItFails) {
  EXPECT_THROW(trash(folder_.at("missing")), std::system_error);
  EXPECT_THROW(trash(folder_.folder("home")), std::system_error);  // the Trash lies in it
  EXPECT_THAT(listNames(home() + "/.local/share/Trash/info"), IsEmpty());

  fs::remove_all(home() + "/.local/share/Trash");
  folder_.folder("elsewhere");
  folder_.link("home/.local/share/Trash", folder_.at("elsewhere"));
  EXPECT_THROW(trash(folder_.file("a")), std::system_error);
  EXPECT_TRUE(exists(folder_.at("a")));
}

TEST_F(LinuxTrashTests, LiesWhereTheEnvironmentSays) {
  const Variable set("XDG_DATA_HOME", folder_.at("data"));
  EXPECT_EQ(homeTrash("/h"), folder_.at("data/Trash"));
  const Variable relative("XDG_DATA_HOME", "data");
  EXPECT_EQ(homeTrash("/h"), "/h/.local/share/Trash");
}

TEST(LinuxPlatformTests, SeesWhatRuns) {
  EXPECT_THAT(LinuxPlatform("/nowhere").runningBundleIDs(),
              testing::Contains(std::string(lastComponent(*executablePath()))));
}

}  // namespace
}  // namespace volbrin::test
