#include "Finders/SplitInstalls.hpp"

#include <gmock/gmock.h>

#include "ByteText.hpp"
#include "FinderTest.hpp"
#include "PrivacyFence.hpp"

namespace volbrin::test {
namespace {

const std::string support = "~/Library/Application Support/", caches = "~/Library/Caches/",
                  containers = "~/Library/Containers/";

using SplitInstallsFinderTest = FinderTest;

TEST_F(SplitInstallsFinderTest, TellsOfTheDataOfAnAppOnADrive) {
  machine_.app("/Volumes/Ext/Applications/Big Tool.app", "com.maker.big");
  const ByteCount bytes = fill(support + "big-tool");
  setDrives(R"(, "running": ["com.maker.bigger", "Big Tool", "com.maker"])");
  const std::string story =
      "split-bigtool-bigtool|split-installs|Big Tool data on your Mac|Big Tool is installed on "
      "Ext, but " +
      byteText(bytes) +
      " of its data is on your Mac.|Look inside first: it may hold settings or downloads Big Tool "
      "needs. Some apps let you point this folder at Ext instead.|reinstallable|" +
      support + "big-tool|review|owner=Big Tool";
  const auto found = onlyOne(SplitInstallsFinder(), catalog_.thresholds.splitInstall);
  EXPECT_EQ(told(found), story);
  EXPECT_EQ(found.bytes, bytes);
  catalog_.personalMarkers.extensions = {"bin"};
  machine_.file(support + "big-tool/a.bin");
  setDrives(R"(, "running": ["com.Maker.big"])");
  EXPECT_EQ(told(find(SplitInstallsFinder()).findings.at(0)),
            story +
                "|caution=Inside: 1 file that looks like your own, a.bin.|blockedBy=Big Tool is "
                "open. Quit it first.");
}

TEST_F(SplitInstallsFinderTest, KnowsAnAppsFoldersByAllItsNames) {
  setDrives();
  machine_.app("/Volumes/Ext/Applications/Caf\u00e9.app", "org.maker.steam");
  catalog_.owners = {{{"Attic", "Old Data"}, "Somebody", {{"com.gone.app"}}, {}, {}},
                     {{"Old Data", "Beans"}, "CAF\u00c9!", {}, {}, {}},
                     {{"Attic"}, "Renamed", {{"ORG.maker.steam"}}, {}, {}},
                     {{"Grounds"}, "Cafe\u0301", {}, {}, {}},
                     {{"Not mine"}, "Other", {{"org.maker"}}, {}, {}}};
  std::vector<std::string> expected;
  for (const auto& folder :
       {support + "Attic", support + "Beans", support + "Cafe\u0301", support + "Grounds",
        support + "Maker", support + "Old Data", support + "caf\u00e9", support + "org maker steam",
        containers + "org.maker.steam", caches + "org.maker.steam"}) {
    machine_.folder(folder);
    expected.push_back("Caf\u00e9 data on your Mac: " + folder);
  }
  for (const char* name : {"Steam", "Not mine", "Cafes", "\xff\xfe", "caf\n"})
    machine_.folder(support + name);
  EXPECT_EQ(listed(SplitInstallsFinder()), expected);
  const FenceGuard fence({machine_.path("~/Library/Containers")});
  expected.erase(expected.end() - 2);
  EXPECT_EQ(listed(SplitInstallsFinder()), expected);
}

TEST_F(SplitInstallsFinderTest, PassesOverWhatIsNotTheAppsOwnFolder) {
  setDrives();
  machine_.app("/Applications/Here.app", "com.maker.here");
  machine_.app("/Volumes/Ext/Applications/One.app", "com.maker.one");
  machine_.app("/Volumes/Two/Applications/One.app", "com.maker.one");
  machine_.app("/Volumes/Two/Applications/Two.app", "com.maker.two");
  machine_.app("/Volumes/Two/Applications/Three.app", "maker.app");  // "app" is no name
  catalog_.owners = {{{"Maker"}, "Here", {{"com.maker.here"}}, {}, {}},
                     {{"Maker"}, "One", {}, {}, {}}};
  catalog_.places = {placeAt("p", {support + "com.maker.two", support + "Two/in"})};
  for (const char* name : {"App", "Here", "Maker", "One", "com.maker.two", "Two/in"})
    fill(support + name);
  machine_.link(support + "com.maker.one", machine_.path("/Applications"));
  machine_.link(containers + "com.maker.one", machine_.path("/Applications"));
  machine_.link(caches + "com.maker.one", "nowhere");
  machine_.file(caches + "com.maker.two");
  const auto found = find(SplitInstallsFinder()).findings;
  ASSERT_EQ(found.size(), 1);
  EXPECT_EQ(found[0].paths.at(0), machine_.path(support + "One"));
  EXPECT_THAT(found[0].reason, ::testing::StartsWith("One is installed on Ext, "));
}

}  // namespace
}  // namespace volbrin::test
