#include "PrivacyFence.hpp"

#include <gmock/gmock.h>

namespace volbrin::test {
namespace {

using testing::ElementsAre;

TEST(PrivacyFenceTests, NamesTheGuardedFolders) {
  EXPECT_THAT(PrivacyFence::guardedRoots("/h"),
              ElementsAre("/h/Desktop", "/h/Documents", "/h/Downloads", "/h/Library/Containers",
                          "/h/Library/Group Containers", "/h/Library/Mail", "/h/Library/Messages",
                          "/h/Library/Safari", "/h/Library/Calendars", "/h/Library/Reminders",
                          "/h/Library/HomeKit", "/h/Pictures/Photos Library.photoslibrary"));
}

TEST(PrivacyFenceTests, TellsARootFromWhatLiesInIt) {
  PrivacyFence fence;
  std::ignore = fence.begin({"/a", "/b/c"});
  for (const char* path : {"/a", "/b/c"}) EXPECT_TRUE(fence.isFenced(path) && !fence.blocks(path));
  for (const char* path : {"/a/x/y", "/b/c/d"}) EXPECT_TRUE(fence.blocks(path)) << path;
  for (const char* path : {"/ab", "/b", "/A/x", "/"}) {
    EXPECT_FALSE(fence.isFenced(path) || fence.blocks(path)) << path;
  }
}

TEST(PrivacyFenceTests, StandsUntilTheLastFenceEnds) {
  PrivacyFence fence;
  const auto first = fence.begin({"/a", "/b"});
  const auto second = fence.begin({"/b"});
  fence.end(first);
  fence.end(first);
  EXPECT_TRUE(fence.blocks("/b/x"));
  EXPECT_FALSE(fence.blocks("/a/x"));
  fence.end(second);
  EXPECT_THAT(fence.active(), testing::IsEmpty());
}

}  // namespace
}  // namespace volbrin::test
