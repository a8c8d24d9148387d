#include <unistd.h>

#include "ActTest.hpp"
#include "Files.hpp"
#include "Paths.hpp"

namespace volbrin::test {
namespace {

namespace fs = std::filesystem;
using testing::ElementsAre;
using Kind = Action::Kind;

/// Does something at a moment of an action.
class Intruder final : public CleanObserver {
 public:
  std::function<void()> atCopying, atProving;
  bool stop = false;

  void beginning(const Finding& /*finding*/) override {}
  void copying(const std::string& /*path*/) override {
    if (atCopying) atCopying();
  }
  void proving() override {
    if (atProving) atProving();
  }
  void copied(ByteCount /*bytes*/) override {}
  void measured(ByteCount /*bytes*/) override {}
  void unrecorded(const CleanResult& /*result*/) override {}
  [[nodiscard]] bool isStopped() const override { return stop; }
};

class MoveTests : public ActTest {
 protected:
  MoveTests() {
    machine_.file("~/Movies/Trip/a", "first"), machine_.file("~/Movies/Trip/b/c", "2");
  }

  void write(const std::string& written, std::string_view contents) const {
    machine_.file(written, contents);
  }

  const std::string target_ = "/Volumes/Ext/Moved from Mac/Movies/Trip";
};

TEST_F(MoveTests, CopiesProvesAndTrashes) {
  const auto trip = move({"~/Movies/Trip"});
  const auto before = recordOf(trip.paths[0]);
  EXPECT_EQ(toldDry(trip), "wouldDo: Would copy to " + target_ +
                               ", check every file, then move the original to the Trash.");
  EXPECT_EQ(told(trip), "done: Moved to " + target_ +
                            " and checked file by file; the original is in the Trash.");
  EXPECT_THAT(moves(),
              ElementsAre("~/Movies/Trip -> " + target_, "~/Movies/Trip -> ~/.Trash/Trip"));
  EXPECT_EQ(recordOf(machine_.path(target_)), before);
  EXPECT_EQ(recordOf(machine_.path("~/.Trash/Trip")), before);
}

TEST_F(MoveTests, RefusesWhatHasNoPlaceToGo) {
  machine_.file("/Shared/Trip"), machine_.file("/Volumes/Ext/Moved from Mac/Trip");
  machine_.link("/Volumes/Ext/Moved from Mac/Movies/Trip", "nowhere");
  struct Case {
    std::optional<std::string> drive;
    ByteCount bytes;
    std::vector<std::string> paths;
    std::string told;
  };
  const std::string noDrive = "Say which drive to move it to.";
  const std::string noRoom = "Ext doesn't have room for it plus a margin.";
  const std::string exists = " already exists; compare the two before anything moves.";
  for (const auto& [drive, bytes, paths, words] :
       {Case{{}, 1, {"~/Movies/Trip"}, noDrive}, Case{"Other", 1, {"~/Movies/Trip"}, noDrive},
        Case{"Disk", 1, {"~/Movies/Trip"}, noDrive}, Case{"Ext", 1, {}, "Nothing to move."},
        Case{"Ext", 910, {"~/Movies/Trip"}, noRoom},
        Case{"Ext", 909, {"~/Movies/Trip"}, target_ + exists},
        Case{machine_.path("/Volumes/Ext"),
             9,
             {"/Shared/Trip"},
             "/Volumes/Ext/Moved from Mac/Trip" + exists},
        Case{"Ext", 1, {"/Volumes"}, noDrive}}) {
    auto trip = move(paths);
    trip.bytes = bytes;
    options_.moveTo = drive;
    EXPECT_EQ(toldTwice(trip), "refused: " + words);
  }
  auto inside = move({"~/Movies/Trip"});
  inside.action.destination = machine_.path("~/Movies/Trip/new/in");
  EXPECT_EQ(toldTwice(inside), "refused: " + noDrive);
  inside.action.destination = machine_.path("/Shared");
  EXPECT_EQ(toldTwice(inside), "refused: /Shared" + exists);
}

TEST_F(MoveTests, TakesSteamsRecordAlong) {
  for (const bool isThere : {false, true}) {
    const std::string library = isThere ? "/Volumes/Ext/two" : "/Volumes/Ext/one";
    machine_.file("~/Steam/common/Game/data", "game"), machine_.file("~/Steam/app_1.acf", "record");
    machine_.file("~/Steam/more", "more");
    if (isThere) machine_.file(library + "/app_1.acf", "theirs");
    auto game = move({"~/Steam/common/Game", "~/Steam/app_1.acf", "~/Steam/more"});
    game.bytes = 5000;  // a fixed target isn't asked for room
    game.action.destination = machine_.path(library + "/common/Game");
    EXPECT_EQ(told(game),
              "done: Moved to " + library +
                  "/common/Game and checked file by file; the original is in the Trash.");
    EXPECT_EQ(readFile(machine_.path(library + "/app_1.acf")), isThere ? "theirs" : "record");
    auto expected = std::vector<std::string>{
        "~/Steam/common/Game -> " + library + "/common/Game",
        "~/Steam/app_1.acf -> " + library + "/app_1.acf", "~/Steam/app_1.acf -> ~/.Trash/app_1.acf",
        "~/Steam/more -> ~/.Trash/more", "~/Steam/common/Game -> ~/.Trash/Game"};
    if (isThere) {
      expected.erase(expected.begin() + 1);
      for (std::size_t i = 1; i < 4; ++i) expected[i] += " 2";
    }
    EXPECT_EQ(moves(), expected);
  }
}

TEST_F(MoveTests, TellsWhatAFailureHasLeft) {
  makeReal();
  machine_.file("~/x.acf"), machine_.file("~/more");
  auto trip = move({"~/Movies/Trip", "~/x.acf", "~/more"});
  const auto targetOf = [&](const char* name) {
    trip.action.destination = machine_.path(std::string("/Volumes/Ext/") + name + "/common/Trip");
  };
  platform_->failingTrash = 2;
  targetOf("1");
  EXPECT_EQ(told(trip), "failed: Copied, but couldn't trash ~/more.");
  EXPECT_EQ(moves().size(), 3U);
  platform_->failingTrash = 5;
  targetOf("2");
  EXPECT_EQ(told(trip),
            "failed: Copied and checked, but the original couldn't go to the Trash: "
            "Input/output error");
  EXPECT_EQ(moves().size(), 4U);
  machine_.link("/Volumes/Ext/3/x.acf", "nowhere");
  targetOf("3");
  EXPECT_EQ(told(trip), "failed: Copied the files, but not Steam's record of them: " +
                            machine_.path("/Volumes/Ext/3/x.acf") + ": File exists");
  EXPECT_EQ(moves().size(), 1U);
  machine_.file("/Volumes/Ext/4");
  targetOf("4");
  EXPECT_EQ(told(trip), "failed: Couldn't make the folder on the drive: Not a directory");
  EXPECT_TRUE(exists(machine_.path("~/Movies/Trip/b/c")));
}

/// Whatever happens between the look and the act, the original stays and nothing lands elsewhere.
TEST_F(MoveTests, SurvivesWhatOthersDoMeanwhile) {
  Intruder intruder;
  options_.observer = &intruder;
  const auto elsewhere = machine_.folder("/elsewhere");
  struct Case {
    std::function<void()> copying, proving;
    const char* told;
  };
  const auto trip = move({"~/Movies/Trip"});
  const std::string mismatch =
      "The copy doesn't match the original file for file; the original is untouched.";
  const auto copied = machine_.path(target_);
  const Case cases[] = {{{}, [&] { write("~/Movies/Trip/a", "FIRST"); }, mismatch.c_str()},
                        {{}, [&] { write("~/Movies/Trip/new", ""); }, mismatch.c_str()},
                        {{}, [&] { write(target_ + "/a", "firsT"); }, mismatch.c_str()},
                        {{},
                         [&] {
                           fs::rename(machine_.path("~/Movies"), machine_.path("~/away"));
                           machine_.link("~/Movies", machine_.path("~/away"));
                         },
                         mismatch.c_str()},
                        {[&] {
                           if (exists(machine_.path("/Volumes/Ext/away"))) return;
                           fs::rename(copied, machine_.path("/Volumes/Ext/away"));
                           machine_.link(target_, elsewhere);
                         },
                         {},
                         mismatch.c_str()},
                        {[&] { intruder.stop = true; },
                         {},
                         "The copy didn't finish; the original is untouched, and "
                         "the partial copy is at "},
                        {{}, [&] { intruder.stop = true; }, mismatch.c_str()}};
  for (const auto& [copying, proving, words] : cases) {
    intruder = Intruder();
    intruder.atCopying = copying;
    intruder.atProving = proving;
    EXPECT_THAT(told(trip), testing::StartsWith(std::string("failed: ") + words));
    EXPECT_TRUE(relocated_.empty());
    EXPECT_TRUE(fs::is_empty(elsewhere));
    EXPECT_FALSE(exists(machine_.path("~/.Trash")));
    for (const char* path : {"~/Movies", "/Volumes/Ext/Moved from Mac", "/Volumes/Ext/away"}) {
      fs::remove_all(machine_.path(path));
    }
    fs::remove_all(machine_.path("~/away"));
    write("~/Movies/Trip/a", "first"), write("~/Movies/Trip/b/c", "2");
  }
}

TEST_F(MoveTests, StopsBeforeTheNextFinding) {
  Intruder intruder;
  intruder.stop = true;
  options_.observer = &intruder;
  EXPECT_EQ(toldTwice(finding({"~/Movies/Trip"})),
            "refused: Stopped before this one; nothing was touched.");
}

TEST_F(MoveTests, MovesWithLinks) {
  machine_.file("/Library/Sounds/a/x", "1"), machine_.file("/Library/Sounds/b/x", "2");
  machine_.link("/Library/Sounds/done", "a");
  const auto sounds = linkMove({"/Library/Sounds/a", "/Library/Sounds/a/x", "/Library/Sounds/done",
                                "/Library/Sounds/gone", "/Library/Sounds/b"});
  const std::string base = "/Volumes/Ext/Sound Libraries/Maker";
  EXPECT_EQ(toldDry(sounds), "wouldDo: Would copy each of the 2 to " + base +
                                 ", check every file, put the original in the Trash and leave a "
                                 "link in its place, so Maker keep finding the sounds while Ext is "
                                 "plugged in.");
  EXPECT_EQ(told(sounds), "done: Moved to " + base +
                              " and checked file by file, with a link where each was, so Maker "
                              "find them while Ext is plugged in. The originals are in the Trash.");
  EXPECT_THAT(
      moves(),
      ElementsAre("/Library/Sounds/a -> " + base + "/a", "/Library/Sounds/a -> ~/.Trash/a",
                  "/Library/Sounds/a => " + base + "/a", "/Library/Sounds/b -> " + base + "/b",
                  "/Library/Sounds/b -> ~/.Trash/b", "/Library/Sounds/b => " + base + "/b"));
  EXPECT_EQ(fs::read_symlink(machine_.path("/Library/Sounds/b")), machine_.path(base + "/b"));
  EXPECT_EQ(readFile(machine_.path("/Library/Sounds/b/x")), "2");
  EXPECT_EQ(toldTwice(sounds), "refused: Nothing left to move; scan again.");
  machine_.file("/Library/More/a"), machine_.file("/Library/other/same"),
      machine_.file("/Library/same");
  EXPECT_EQ(toldTwice(linkMove({"/Library/More/a"})),
            "refused: " + base + "/a already exists; compare the two before anything moves.");
  EXPECT_EQ(toldTwice(linkMove({"/Library/other/same", "/Library/same"})),
            "refused: " + base + "/same already exists; compare the two before anything moves.");
  EXPECT_EQ(toldTwice(linkMove({"/Volumes"})), "refused: Say which drive to move it to.");
}

TEST_F(MoveTests, AsksForThePasswordWhereTheSystemProtects) {
  machine_.file("/Library/a/x", "1"), machine_.file("~/.Trash/a", "old");
  const auto sounds = linkMove({"/Library/a"});
  const auto path = machine_.path("/Library/a");
  machine_.file("~/.Trash/x", "");
  makeReal();
  platform_->failingTrash = 1;
  EXPECT_EQ(told(sounds),
            "failed: Moved, but the link at /Library/a couldn't be made; undo puts "
            "the original back.");
  EXPECT_THAT(platform_->touches(),
              testing::Contains("admin /bin/mv " + path + " " + machine_.path("~/.Trash/a 2")));
  EXPECT_THAT(moves(), ElementsAre("/Library/a -> /Volumes/Ext/Sound Libraries/Maker/a",
                                   "/Library/a -> ~/.Trash/a 2"));
}

class CopyRemovalTests : public ActTest {
 protected:
  Finding copyOf(const std::string& written, const std::string& keeper) const {
    auto result = finding({written});
    result.tier = Tier::personal;
    result.action = actions::review;
    result.duplicateOf = machine_.path(keeper);
    return result;
  }
};

TEST_F(CopyRemovalTests, RemovesOnlyAProvedCopy) {
  machine_.file("~/Trip/a", "same"), machine_.file("/Volumes/Ext/Trip/a", "same");
  machine_.file("/Volumes/Ext/Other/a", "diff"), machine_.file("/Volumes/Ext/Other/b");
  machine_.folder("~/Documents/Kept"), machine_.link("~/link", "Trip");
  const std::string differs = "The copy on the drive isn't identical any more (";
  const std::string throughLink = "One of the copies is reached through a link.";
  struct Case {
    std::string path, keeper, told;
  };
  for (const auto& [path, keeper, words] :
       {Case{"~/Trip", "/Volumes/Ext/Other", differs + "2 files differ); nothing was removed."},
        Case{"~/Trip", "/none", "One of the two copies isn't there any more; scan again."},
        Case{"~/link", "/Volumes/Ext/Trip", throughLink}, Case{"~/Trip", "~/link", throughLink},
        Case{"~/Trip", "~/Trip", throughLink},
        Case{"~/Documents", "~/Trip", "It reaches a kept thing, which is never touched."}}) {
    EXPECT_EQ(toldTwice(copyOf(path, keeper)), "refused: " + words);
  }
  auto two = copyOf("~/Trip", "/Volumes/Ext/Trip");
  two.paths.push_back(two.paths[0]);
  EXPECT_EQ(toldTwice(two), "refused: Nothing to remove.");

  const auto copy = copyOf("~/Trip", "/Volumes/Ext/Trip");
  EXPECT_EQ(toldDry(copy),
            "wouldDo: Contents match byte for byte; would move this copy to the "
            "Trash and keep /Volumes/Ext/Trip.");
  EXPECT_EQ(told(copy),
            "done: Contents matched byte for byte; this copy is in the Trash and "
            "/Volumes/Ext/Trip stays.");
  EXPECT_THAT(moves(), ElementsAre("~/Trip -> ~/.Trash/Trip"));
}

}  // namespace
}  // namespace volbrin::test
