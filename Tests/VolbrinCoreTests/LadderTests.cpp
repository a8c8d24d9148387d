#include "Acting/Ladder.hpp"

#include "ActTest.hpp"

namespace volbrin::test {
namespace {

using Kind = Action::Kind;

class LadderTests : public ActTest {};

/// A finding with everything against it: taking away what was told, the next reason shows.
TEST_F(LadderTests, TellsTheFirstReasonInOrder) {
  auto all = finding({"~/link/Kept", "~/gone"});
  machine_.folder("~/Documents/Kept"), machine_.link("~/link", machine_.path("~/Documents"));
  all.tier = Tier::personal;
  all.unsure = true;
  all.blockedBy = "It is open.";
  all.action = {Kind::handOff, {}, {}, "App", "do this", {}, {}};
  all.caution = "Mind it.";
  struct Step {
    const char* told;
    std::function<void()> takeAway;
  };
  const Step steps[] = {
      {"Its owner isn't known for sure; look into it first.", [&] { all.unsure = false; }},
      {"It is open.", [&] { all.blockedBy.reset(); }},
      {"Only App can do this: do this.",
       [&] { all.action = {Kind::handOff, {}, {}, {}, {}, {}, true}; }},
      {"Only its own app can do this: .", [&] { all.action.kind = Kind::review; }},
      {"This one is for you to decide; Volbrin doesn't act on it.",
       [&] { all.action.kind = Kind::command; }},
      {"Your own files are never removed, only moved.",
       [&] { all.action.kind = Kind::remove, all.tier = Tier::reinstallable; }},
      {"Only caches that rebuild themselves are ever deleted.", [&] { all.tier = Tier::rebuilds; }},
      {"Mind it. It waits until you've agreed to it, knowing that.",
       [&] { options_.includeCautioned = true; }},
      {"It's reached through a link, so acting on it could land somewhere else.",
       [&] { all.paths[0] = machine_.path("~/Documents"); }},
      {"It reaches a kept thing, which is never touched.",
       [&] { all.paths[0] = machine_.path("~/Documents/Kept/in"); }},
      {"It reaches a kept thing, which is never touched.",
       [&] { all.paths[0] = machine_.path("~/x.kept/in"); }},
      {"It reaches a kept ending, which is never touched.",
       [&] {
         all.paths[0] = machine_.file("~/holds/deep/own.kept"),
         all.paths[0] = machine_.path("~/holds");
       }},
      {"It holds a kept ending, which is never touched.",
       [&] { std::filesystem::remove(machine_.path("~/holds/deep/own.kept")); }},
      {"~/gone isn't there any more; scan again.", [&] { all.paths.pop_back(); }}};
  for (const auto& [text, takeAway] : steps) {
    EXPECT_EQ(toldTwice(all), std::string("refused: ") + text);
    takeAway();
  }
  EXPECT_EQ(toldDry(all), "wouldDo: Would move to the Trash.");
}

TEST_F(LadderTests, SearchesOnlyWhatTheActionTouches) {
  machine_.file("~/holds/own.kept");
  auto command = finding({"~/holds"});
  command.action = {Kind::command, {{"tool", "all"}}, {}, {}, {}, {}, {}};
  EXPECT_EQ(toldDry(command), "wouldDo: Would run: tool all");
  EXPECT_EQ(toldTwice(move({"~/holds"})),
            "refused: It holds a kept ending, which is never touched.");
  const PathGuard guard(catalog_, mac(), {});
  EXPECT_FALSE(protectedInside(machine_.path("~/none"), guard));
  EXPECT_FALSE(protectedInside(machine_.path("~/holds/own.kept"), guard));
  EXPECT_EQ(protectedInside(machine_.path("~/Documents"), guard), std::nullopt);
  machine_.folder("~/Documents/Kept");
  EXPECT_EQ(protectedInside(machine_.path("~/Documents"), guard), "a kept thing");
}

TEST_F(LadderTests, LeadsACopyAndALinkMovePastTheLaterSteps) {
  auto copy = finding({"~/gone"});
  copy.tier = Tier::personal;
  copy.action = actions::review;
  copy.duplicateOf = machine_.path("/Volumes/Ext/gone");
  copy.caution = "Mind it.";
  EXPECT_EQ(toldTwice(copy), "refused: Mind it. It waits until you've agreed to it, knowing that.");
  options_.includeCautioned = true;
  EXPECT_EQ(toldTwice(copy), "refused: One of the two copies isn't there any more; scan again.");
  auto linkable = linkMove({"~/gone"});
  linkable.caution = "Mind it.";
  EXPECT_EQ(toldTwice(linkable), "refused: Nothing left to move; scan again.");
  options_.linkMove = false;
  EXPECT_EQ(toldTwice(linkable), "refused: Only its own app can do this: .");
}

}  // namespace
}  // namespace volbrin::test
