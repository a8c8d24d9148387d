#include "PathGuard.hpp"

#include <gmock/gmock.h>

#include "Machine.hpp"

namespace volbrin::test {
namespace {

using ::testing::ElementsAre;
using Words = std::optional<std::string>;

TEST(PathGuardTest, ARuleKeepsItsPathAllInItAndWithContentsAllAbove) {
  const Machine machine;
  machine.setFixture(R"({"drives": [], "cloud": ["~/Sync"]})");
  Catalog catalog;
  catalog.protectedPaths = {{"~/Library/Mail", "your mail"},
                            {"~/Library/Mail/Old", "your old mail"},
                            {"~/Library/Chats", "your mail"}};
  catalog.protectedSuffixes = {{".photoslibrary", "your photos"}};
  const PathGuard guard(catalog, machine.mac(), {{"~/Mine", "you said so"}});
  const auto expect = [&](const Words& alone, const Words& withContents,
                          const std::vector<const char*>& paths) {
    for (const char* written : paths) {
      const auto path = machine.path(written);
      EXPECT_EQ(guard.protection(path, PathGuard::Contents::leaveOut), alone) << path;
      EXPECT_EQ(guard.protection(path, PathGuard::Contents::include), withContents) << path;
    }
  };
  expect("your mail", "your mail", {"~/Library/Mail", "~/Library/Mail/Old/x"});
  expect({}, "your mail", {"~/Library", "~", "/Users"});
  expect("iCloud Drive", "iCloud Drive", {"~/Sync/x", "~/Library/Mobile Documents"});
  expect("a cloud drive", "a cloud drive", {"~/Library/CloudStorage/Box"});
  expect("you said so", "you said so", {"~/Mine/x.photoslibrary"});
  expect("your photos", "your photos", {"~/A.photoslibrary", "~/A.photoslibrary/cache/x"});
  expect({}, {}, {"~/Library/Mails", "~/Library/Mai", "/Library/Mail", "~/A.photoslibrary2/x"});

  EXPECT_THAT(guard.protectedInside(machine.path("~/Library")),
              ElementsAre("your mail", "your old mail", "iCloud Drive", "a cloud drive"));
  EXPECT_THAT(guard.protectedInside(machine.path("~/Library/Mail")), ElementsAre("your old mail"));
}

TEST(PathGuardTest, SeesALinkAnywhereInAPath) {
  const Machine machine;
  machine.file("~/real/file");
  machine.link("~/link", "real");
  EXPECT_TRUE(PathGuard::throughLink(machine.path("~/link")));
  EXPECT_TRUE(PathGuard::throughLink(machine.path("~/link/file")));
  EXPECT_FALSE(PathGuard::throughLink(machine.path("~/real/file")));
}

}  // namespace
}  // namespace volbrin::test
