#include <sys/stat.h>
#include <unistd.h>

#include "ActTest.hpp"
#include "Acting/RemoveTree.hpp"
#include "Files.hpp"
#include "RandomTree.hpp"

namespace volbrin::test {
namespace {

namespace fs = std::filesystem;
using testing::ElementsAre;
using Kind = Action::Kind;

class SimpleActionTests : public ActTest {};

TEST_F(SimpleActionTests, MovesToTheTrash) {
  machine_.file("~/a/name", "1"), machine_.file("~/b/name", "2"), machine_.file("~/.Trash/name");
  auto both = finding({"~/a/name", "~/b/name"});
  both.action = actions::remove;
  EXPECT_EQ(toldDry(both), "wouldDo: Would move to the Trash.");
  EXPECT_EQ(told(both),
            "done: Moved to the Trash; the space comes back when the Trash is emptied.");
  EXPECT_THAT(moves(), ElementsAre("~/a/name -> ~/.Trash/name 2", "~/b/name -> ~/.Trash/name 3"));
  EXPECT_EQ(readFile(machine_.path("~/.Trash/name 2")), "1");
  EXPECT_EQ(told(finding({})),
            "done: Moved to the Trash; the space comes back when the Trash is emptied.");
  EXPECT_EQ(toldTwice(both), "refused: ~/a/name isn't there any more; scan again.");
}

TEST_F(SimpleActionTests, StopsAtTheFirstThatCantGoToTheTrash) {
  for (const char* name : {"~/a", "~/b", "~/c"}) machine_.file(name);
  makeReal();
  platform_->failingTrash = 2;
  platform_->failure = std::make_error_code(std::errc::permission_denied);
  EXPECT_EQ(told(finding({"~/a", "~/b", "~/c"})),
            "failed: Couldn't move ~/b to the Trash: Permission denied");
  EXPECT_THAT(moves(), ElementsAre("~/a -> ~/.Trash/a"));
}

TEST_F(SimpleActionTests, RemovesForGood) {
  machine_.file("~/cache/in/file"), machine_.file("~/other/file"), machine_.file("~/own/file");
  machine_.link("~/cache/in/link", machine_.path("~/own"));
  auto caches = finding({"~/cache", "~/other"});
  caches.action = actions::remove;
  options_.permanentCaches = true;
  EXPECT_EQ(toldDry(caches), "wouldDo: Would delete (it rebuilds itself).");
  EXPECT_EQ(told(caches), "done: Deleted; it rebuilds itself.");
  EXPECT_TRUE(relocated_.empty());
  EXPECT_FALSE(exists(caches.paths[0]) || exists(caches.paths[1]));
  EXPECT_TRUE(exists(machine_.path("~/own/file")));
}

TEST_F(SimpleActionTests, RunsCommandsOnRealMachinesOnly) {
  auto command = finding({});
  command.action = {Kind::command, {{"tool", "clean up"}}, {}, {}, {}, {}, {}};
  EXPECT_EQ(told(command), "refused: A fake Mac runs no commands (would run: tool clean up).");
  makeReal();
  EXPECT_EQ(toldDry(command), "wouldDo: Would run: tool clean up");
  EXPECT_EQ(told(command), "failed: tool clean up didn't succeed; nothing else was tried.");
  platform_->outputs["tool clean up"] = "";
  EXPECT_EQ(told(command), "done: Ran tool clean up.");
  EXPECT_THAT(platform_->touches(), testing::Contains("run tool clean up").Times(2));
}

TEST(RemoveTreeTests, RemovesAnyTree) {
  const TemporaryFolder folder;
  folder.file("stays", "");
  for (std::uint32_t seed = 1; seed <= 3; ++seed) {
    const RandomTree tree(folder.folder("tree"), seed);
    removeTree(holdItem(folder.at("tree")));
    EXPECT_FALSE(isSymlink(folder.at("tree")) || exists(folder.at("tree")));
  }
  const auto deep = folder.folder("deep");
  for (int depth = 0; depth < 300; ++depth) {
    const auto above = folder.folder("above");
    folder.file("above/z"), folder.folder("above/empty");
    fs::rename(deep, above + "/" + std::string(100, 'd'));
    fs::rename(above, deep);
  }
  removeTree(holdItem(deep));
  EXPECT_THAT(listNames(folder.path()), ElementsAre("stays"));
  EXPECT_THROW(removeTree(holdItem(folder.at("none/x"))), std::system_error);
}

TEST(RemoveTreeTests, NeverGoesThroughALink) {
  const TemporaryFolder folder;
  const auto kept = folder.file("own/in/file", "kept");
  const auto held = [&](const char* path) { return holdItem(folder.at(path)); };
  folder.link("link", "own"), folder.link("tree/link", folder.at("own"));
  EXPECT_THROW(removeTree(held("link/in")), std::system_error);
  const auto item = held("tree/link");
  fs::rename(folder.at("tree"), folder.at("moved"));  // and something else takes its place
  folder.link("tree", folder.at("own"));
  removeTree(item);
  removeTree(held("tree")), removeTree(held("link"));
  EXPECT_EQ(readFile(kept), "kept");
  EXPECT_TRUE(listNames(folder.at("moved")).empty());
}

}  // namespace
}  // namespace volbrin::test
