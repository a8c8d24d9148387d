#include <gmock/gmock.h>

#include <filesystem>

#include "FinderTest.hpp"
#include "ICloud/CloudNames.hpp"
#include "ICloud/ICloud.hpp"
#include "Paths.hpp"

namespace volbrin::test {
namespace {

namespace fs = std::filesystem;
using testing::ElementsAre;
using testing::IsEmpty;

const std::string drive = "~/Library/Mobile Documents/com~apple~CloudDocs";

class CloudScanTests : public testing::Test {
 protected:
  CloudScanTests() {
    machine_.setFixture(R"({"drives":[{"name":"Disk","path":"/","total":9,"free":9},
        {"name":"Ext","path":"/Volumes/Ext","total":9,"free":9}]})");
    machine_.folder("/Volumes/Ext"), machine_.folder(drive);
  }

  /// A file of that size, changed so many days after another.
  void add(const std::string& written, std::size_t bytes, int day = 0) const {
    setDate(machine_.fileOfSize(written, bytes), Date() + std::chrono::days(10'000 + day));
  }

  CloudScan scan() const {
    const auto mac = machine_.mac();
    return ICloud::scan(mac, mac.drives(), sizes_);
  }

  /// "name (place): item keep, ..." of each group; what stands behind tells of the item.
  std::vector<std::string> groups() const {
    std::vector<std::string> lines;
    for (const auto& group : scan().groups) {
      auto line = group.name + " (" + group.keepPlace + ")" + (group.sameName ? ":" : "!:");
      for (const auto& item : group.items) {
        line += " " + std::string(lastComponent(item.path)) + (item.caution ? " cautioned" : "");
        EXPECT_EQ(item.keep, group.keep);
      }
      lines.push_back(line);
    }
    return lines;
  }

  Machine machine_;
  CloudSizes sizes_{100, 5'000, 3'000};
};

TEST_F(CloudScanTests, ReadsNamesAsCopies) {
  for (const auto& [name, normalized] : std::initializer_list<std::pair<const char*, const char*>>{
           {"A.PDF", "a.pdf"},
           {"a copy.pdf", "a.pdf"},
           {"a copy 12.pdf", "a.pdf"},
           {"a (2).pdf", "a.pdf"},
           {"a 3.pdf", "a.pdf"},
           {"a copy (2) copy 7.pdf", "a.pdf"},
           {"a copy", "a."},
           {"acopy.pdf", "acopy.pdf"},
           {"a(2).pdf", "a(2).pdf"},
           {"a \u0663.pdf", "a.pdf"},
           {"3.pdf", "3.pdf"},
           {"a copy x.pdf", "a copy x.pdf"}}) {
    EXPECT_EQ(normalizedCopyName(name), normalized);
  }
  EXPECT_TRUE(isPackageName("X.PhotosLibrary") && !isPackageName("key") && !isPackageName("a.mov"));
  EXPECT_EQ(cloudID("abc"), "icloud-ba7816bf8f01");  // FIPS 180-4, the digest of "abc"
}

TEST_F(CloudScanTests, CountsWhatCounts) {
  add(drive + "/a", 99), add(drive + "/in/b", 200), add(drive + "/.hidden/c", 1000);
  add(drive + "/.d", 1000), add(drive + "/Removed from iCloud/e", 1000);
  add(drive + "/Lib.photoslibrary/In.app/f", 7000), add(drive + "/In.app", 300);
  machine_.link(drive + "/link", "a");
  const auto found = scan();
  EXPECT_EQ(found.files, 4);
  EXPECT_EQ(found.bytes, 7599);
  EXPECT_EQ(found.packages, 1);
  EXPECT_GE(found.onMacBytes, 7599);
  EXPECT_THAT(found.biggest, IsEmpty()) << "what is in a package is in no list";
  EXPECT_THAT(found.roots, ElementsAre(machine_.path(drive)));
}

TEST_F(CloudScanTests, GroupsCopiesAndChoosesTheKeeper) {
  add(drive + "/Talk.mov", 1000, 2), add(drive + "/in/Talk copy.mov", 1000, 1);
  add(drive + "/Talk 2.mov", 1000, 3), add("~/Movies/Talk.mov", 1000);
  add(drive + "/small.txt", 99), add(drive + "/small copy.txt", 99);
  add(drive + "/one.txt", 400), add(drive + "/other.txt", 400);
  add(drive + "/big one.txt", 4000, 5), add(drive + "/big other.txt", 4000, 5);
  add(drive + "/lone.pdf", 500), add("~/Movies/lone copy.pdf", 500),
      add("/Volumes/Ext/x/lone.pdf", 500);
  add(drive + "/home.pdf", 600), add("~/Documents/in/home.pdf", 600);
  EXPECT_THAT(groups(), ElementsAre("big one.txt (iCloud)!: big other.txt",
                                    "Talk copy.mov (iCloud): Talk.mov Talk 2.mov",
                                    "home.pdf (this Mac): home.pdf cautioned",
                                    "lone.pdf (Ext): lone.pdf cautioned"));
}

TEST_F(CloudScanTests, AFileIsNeverItsOwnCopy) {
  machine_.setFixture(R"({"drives":[{"name":"Disk","path":"/","total":9,"free":9},
      {"name":"Ext","path":"/Volumes/Ext","total":9,"free":9}],
      "cloud":["~/Documents/Cloud","~/Library/Mobile Documents/com~apple~CloudDocs/in",
               "/Volumes/Ext/Cloud"]})");
  add(drive + "/in/a.mov", 1000), add("~/Documents/Cloud/b.mov", 1000);
  add("/Volumes/Ext/Cloud/c.mov", 1000);
  fs::create_hard_link(machine_.path(drive + "/in/a.mov"), machine_.path(drive + "/a.mov"));
  machine_.folder("~/Movies");
  fs::create_hard_link(machine_.path("~/Documents/Cloud/b.mov"), machine_.path("~/Movies/b.mov"));
  EXPECT_THAT(groups(), IsEmpty());
  EXPECT_EQ(scan().files, 4);
  EXPECT_EQ(scan().roots.size(), 3U);
}

TEST_F(CloudScanTests, ListsAtMostFiftyBigLoneFiles) {
  for (int i = 0; i < 52; ++i)
    add(drive + "/f" + std::to_string(i), 5000 + static_cast<std::size_t>(i));
  add(drive + "/copy 1.x", 5100), add(drive + "/copy 2.x", 5100), add(drive + "/under", 4999);
  const auto found = scan();
  ASSERT_EQ(found.biggest.size(), 50U);
  EXPECT_EQ(found.biggest[0].bytes, 5051);
  EXPECT_EQ(found.biggest[49].bytes, 5002);
  EXPECT_EQ(found.biggest[0].caution,
            "Afterwards it's no longer in iCloud: the copy moved to your drive is the only one.");
  EXPECT_EQ(found.items().size(), 51U);
  EXPECT_EQ(found, scan());
  EXPECT_EQ(ICloud::display(found.biggest[0].path, machine_.mac()), "iCloud Drive/f51");
}

}  // namespace
}  // namespace volbrin::test
