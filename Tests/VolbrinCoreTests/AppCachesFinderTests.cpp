#include "Finders/AppCaches.hpp"

#include <gmock/gmock.h>

#include "FinderTest.hpp"

namespace volbrin::test {
namespace {

using ::testing::ElementsAre;
using AppCachesFinderTest = FinderTest;
const std::string caches = "~/Library/Caches/", none = "Caches of 0 apps that aren't open: ";

TEST_F(AppCachesFinderTest, OffersAllFoldersThatNobodyElseHasAtOnce) {
  std::string paths;
  for (const auto& name : hostileNames) paths += (paths.empty() ? "" : ", ") + caches + name;
  for (const auto& name : hostileNames) fill(caches + name);
  for (const char* name : {"com.Apple.x", "Cloud", "Own", "Above", ".hid"}) fill(caches + name);
  machine_.file(caches + "file");
  machine_.link(caches + "link", machine_.path(caches + hostileNames[0]));
  machine_.link(caches + "dangling", "nowhere");
  catalog_.systemNames = {"cloud"};
  catalog_.systemPrefixes = {"com.apple."};
  catalog_.places = {placeAt("p", {caches + "Own", caches + "Above/data"})};
  EXPECT_EQ(toldFirst(AppCachesFinder()),
            "app-caches|app-caches|Caches of 5 apps that aren't open|Files apps keep so they start "
            "faster; each app makes them again when it needs them.|Rebuilds itself: the apps "
            "recreate what they need.|rebuilds|" +
                paths + "|delete");
}

TEST_F(AppCachesFinderTest, LeavesTheCachesOfOpenAppsAlone) {
  machine_.app("/Applications/The App.app", "com.maker.app");
  machine_.app("/Applications/Shut.app", "com.maker.shut");
  machine_.setFixture(R"({"drives": [], "running": ["com.Maker.app", "com.other.Tool"]})");
  for (const char* name :
       {"com.maker.APP", "com.maker.app.helper", "the-app", "com.Other.tool.x"}) {
    fill(caches + name);
  }
  std::vector<std::string> kept;
  for (const char* name : {"com.maker. app", "com.maker.shut", "com.other", "com.other.toolbox"}) {
    fill(caches + name);
    kept.push_back(machine_.path(caches + name));
  }
  const auto found = find(AppCachesFinder());
  EXPECT_THAT(
      found.notes,
      ElementsAre(
          "Left the caches of open apps alone: The App, The App, The App, com.Other.tool.x."));
  EXPECT_EQ(found.findings.at(0).paths, kept);
}

TEST_F(AppCachesFinderTest, CountsWhatReachesTheLimitOfEachAndThenOfAll) {
  const ByteCount size = fill(caches + "one");
  fill(caches + "org.open.app");
  machine_.file(caches + "small/x");
  machine_.setFixture(R"({"drives": [], "running": ["org.open.app"]})");
  const auto expect = [&](ByteCount each, ByteCount all, const std::vector<std::string>& lines,
                          int notes) {
    catalog_.thresholds.appCacheEach = each;
    catalog_.thresholds.appCaches = all;
    EXPECT_EQ(listed(AppCachesFinder()), lines) << each << ", " << all;
    EXPECT_EQ(find(AppCachesFinder()).notes.size(), notes) << each << ", " << all;
  };
  const std::string one = "Cache of an app that isn't open: " + caches + "one";
  expect(size, size, {one}, 1);
  expect(size, size + 1, {}, 1);
  expect(size + 1, 0, {none}, 0);
  options_.minimumBytes = size;
  expect(0, size + 1, {one}, 1);
}

}  // namespace
}  // namespace volbrin::test
