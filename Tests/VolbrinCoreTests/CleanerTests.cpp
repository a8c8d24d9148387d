#include "Acting/Cleaner.hpp"

#include <sys/stat.h>
#include <unistd.h>

#include <fstream>

#include "ActTest.hpp"
#include "Files.hpp"
#include "Paths.hpp"

namespace volbrin::test {
namespace {

namespace fs = std::filesystem;
using testing::ElementsAre;
using testing::IsEmpty;

/// The whole way: a scan, an action, the history, an undo.
class CleanerTests : public ActTest {
 protected:
  CleanerTests() {
    catalog_ = catalogOfPlaces();
    catalog_.places = {placeAt("one", {"~/Library/One"}), placeAt("two", {"~/Library/Two"})};
    for (const char* path : {"~/Library/One/file", "~/Library/Two/file"}) {
      machine_.fileOfSize(path, 4096);
    }
  }

  std::vector<std::string> clean(const std::vector<std::string>& ids) {
    std::vector<std::string> lines;
    for (const auto& result : Cleaner::clean(ids, mac(), catalog_, options_)) {
      lines.push_back(result.id + " " + result.title + " " +
                      toJson(result.status).get<std::string>() + ": " + result.detail);
    }
    return lines;
  }

  std::string undo(const std::string& id, bool dryRun = false) {
    const auto result = Cleaner::undo(id, mac(), dryRun);
    relocated_ = result.relocated;
    return toJson(result.status).get<std::string>() + ": " + result.detail;
  }

  /// Writes an entry with these relocations, their paths in the machine's form.
  void record(const std::string& id, std::vector<Relocation> relocated) const {
    for (auto& each : relocated) {
      each.from = machine_.path(each.from);
      each.to = machine_.path(each.to);
    }
    HistoryEntry entry;
    entry.id = entry.title = id;
    entry.relocated = std::move(relocated);
    ASSERT_TRUE(History::append(entry, mac()));
  }
};

const std::string trashed = "Moved to the Trash; the space comes back when the Trash is emptied.";

TEST_F(CleanerTests, AnswersForEachIdInOrderAndRecordsWhatItDid) {
  const std::string none = " refused: A fresh scan doesn't find this any more; scan again.";
  const auto before = recordOf(machine_.path("~/Library/One"));
  const auto bytes = mac().usage(machine_.path("~/Library/One")).bytes;
  EXPECT_THAT(clean({"none", "one", "", "one"}),
              ElementsAre("none none" + none, "one Title of one done: " + trashed, " " + none,
                          "one Title of one refused: ~/Library/One isn't there any more; scan "
                          "again."));
  const auto entries = History::load(mac());
  ASSERT_EQ(entries.size(), 1U);
  EXPECT_EQ(entries[0].id, "one");
  EXPECT_EQ(entries[0].action, Action::Kind::remove);
  EXPECT_EQ(entries[0].bytes, bytes);
  EXPECT_EQ(undo("one", true), "wouldDo: Would put 1 item(s) back where they were.");
  EXPECT_EQ(undo("one"), "done: Put back where it was.");
  EXPECT_THAT(moves(), ElementsAre("~/.Trash/One -> ~/Library/One"));
  EXPECT_EQ(recordOf(machine_.path("~/Library/One")), before);
  EXPECT_EQ(undo("one"), "refused: Nothing in the history to undo for this.");
  EXPECT_EQ(History::load(mac()).size(), 2U);
}

TEST_F(CleanerTests, RecordsOnlyWhatChangedTheDisk) {
  options_.scan.extraProtected = {{"~/Library/One", "mine"}};
  EXPECT_EQ(clean({"one"}).size(), 1U);
  options_ = {};
  options_.dryRun = true;
  EXPECT_THAT(clean({"one"}), ElementsAre("one Title of one wouldDo: Would move to the Trash."));
  EXPECT_THAT(History::load(mac()), IsEmpty());
  options_ = {};
  options_.permanentCaches = true;
  EXPECT_THAT(clean({"two"}), ElementsAre("two Title of two done: Deleted; it rebuilds itself."));
  EXPECT_EQ(undo("two"), "refused: Nothing went to the Trash; moved files are on the drive at .");
}

TEST_F(CleanerTests, KeepsAFailureThatMovedThingsUndoable) {
  catalog_.places = {placeAt("both", {"~/Library/One", "~/Library/Two"})};
  makeReal();
  platform_->failingTrash = 2;
  EXPECT_THAT(clean({"both"}), ElementsAre("both Title of both failed: Couldn't move "
                                           "~/Library/Two to the Trash: Input/output error"));
  ASSERT_EQ(History::load(mac()).size(), 1U);
  EXPECT_EQ(History::load(mac())[0].relocated.size(), 1U);
}

TEST_F(CleanerTests, UndoesOnlyWhatItCanAndOverwritesNothing) {
  const Relocation inTrash{"~/old", "~/.Trash/old", {}, {}};
  struct Case {
    std::string id;
    std::vector<Relocation> relocated;
    std::vector<std::string> files;
    std::string told;
  };
  const Case cases[] = {
      {"gone",
       {{"~/gone", "~/.Trash/gone", {}, {}}},
       {},
       "failed: ~/.Trash/gone isn't there any more (the Trash was emptied, or the parked copy was "
       "deleted)."},
      {"taken",
       {{"~/taken", "~/.Trash/taken", {}, {}}},
       {"~/taken", "~/.Trash/taken"},
       "refused: Something new is already at ~/taken."},
      {"drive",
       {{"~/a", "/Volumes/Ext/a", {}, {}}, {"~/b", "/Volumes/Ext/b", {}, false}},
       {},
       "refused: Nothing went to the Trash; moved files are on the drive at /Volumes/Ext/a, "
       "/Volumes/Ext/b."},
      {"file above",
       {{"~/file/old", "~/.Trash/in", {}, {}}},
       {"~/file", "~/.Trash/in"},
       "failed: Couldn't put back ~/file/old: Not a directory"}};
  machine_.link("~/dangling", "nowhere"), machine_.file("~/.Trash/dangling");
  for (const auto& [id, relocated, files, words] : cases) {
    for (const auto& file : files) machine_.file(file, id);
    record(id, relocated);
    const auto before = recordOf(machine_.root());
    EXPECT_EQ(undo(id), words);
    if (id != "file above") {
      EXPECT_EQ(undo(id, true), words);
    }
    EXPECT_EQ(recordOf(machine_.root()), before);
  }
  record("dangling", {{"~/dangling", "~/.Trash/dangling", {}, {}}});
  EXPECT_EQ(undo("dangling"), "refused: Something new is already at ~/dangling.");

  // What lay in other Trashes and parking places comes back, folders and all; the first stays back.
  machine_.file("/Volumes/Ext/.Trashes/501/x", "1"), machine_.file("/Volumes/Ext/parked", "2");
  record("some", {{"~/new/deep/x", "/Volumes/Ext/.Trashes/501/x", {}, {}},
                  {"~/new/y", "/Volumes/Ext/parked", {}, true},
                  {"~/gone", "~/.Trash/gone", {}, {}}});
  EXPECT_THAT(undo("some"), testing::StartsWith("failed: ~/.Trash/gone isn't there"));
  EXPECT_THAT(moves(), ElementsAre("/Volumes/Ext/.Trashes/501/x -> ~/new/deep/x",
                                   "/Volumes/Ext/parked -> ~/new/y"));
  EXPECT_EQ(readFile(machine_.path("~/new/y")), "2");
}

TEST_F(CleanerTests, TakesAwayOnlyTheLinksThatItMade) {
  const auto linked = [&](const std::string& name) {
    record(name, {{"~/" + name, "/Volumes/Ext/" + name, {}, {}},
                  {"~/" + name, "~/.Trash/" + name, {}, {}},
                  {"~/" + name, "/Volumes/Ext/" + name, true, {}}});
  };
  const auto inTrash = [&](const std::string& name) { machine_.file("~/.Trash/" + name, name); };
  const auto target = [&](const std::string& name) {
    return machine_.path("/Volumes/Ext/" + name);
  };
  linked("whole"), inTrash("whole"), machine_.link("~/whole", target("whole"));
  EXPECT_EQ(undo("whole", true), "wouldDo: Would put 1 item(s) back where they were.");
  EXPECT_EQ(undo("whole"),
            "done: Put back where it was. The copy on /Volumes/Ext/whole stays until "
            "you remove it.");
  EXPECT_EQ(readFile(machine_.path("~/whole")), "whole");
  EXPECT_FALSE(isSymlink(machine_.path("~/whole")));

  linked("other"), inTrash("other"), machine_.link("~/other", "elsewhere");
  linked("file"), inTrash("file"), machine_.file("~/file", "theirs");
  linked("lost"), machine_.link("~/lost", target("lost"));
  for (const auto& name : {"other", "file"}) {
    EXPECT_EQ(undo(name), std::string("refused: Something new is already at ~/") + name + ".");
  }
  // With the original gone, the link is all that leads to the copy.
  EXPECT_THAT(undo("lost"), testing::StartsWith("failed: ~/.Trash/lost isn't there any more"));
  EXPECT_TRUE(isSymlink(machine_.path("~/lost")) && isSymlink(machine_.path("~/other")));
  EXPECT_EQ(readFile(machine_.path("~/file")), "theirs");
}

TEST_F(CleanerTests, ActsOnNoPathThatIsntPlain) {
  HistoryEntry entry;
  machine_.file("~/.Trash/x");
  const auto bad = machine_.path("~/.Trash/../../../outside");
  for (const auto& [id, from] :
       {std::pair{"relative", std::string("a/b")}, {"empty", std::string()}, {"dots", bad}}) {
    entry.id = id;
    entry.relocated = {{from, machine_.path("~/.Trash/x"), {}, {}}};
    ASSERT_TRUE(History::append(entry, mac()));
    EXPECT_THAT(undo(id), testing::EndsWith(": Invalid argument"));
  }
  EXPECT_TRUE(exists(machine_.path("~/.Trash/x")));
}

/// Writes into what is being put back from another drive, once its copy has begun.
class Writer final : public CopyObserver {
 public:
  explicit Writer(std::function<void()> write) : write_(std::move(write)) {}
  void copying(const std::string& /*path*/) override {
    std::exchange(write_, [] {})();
  }
  void copied(ByteCount /*bytes*/) override {}
  [[nodiscard]] bool isStopped() const override { return false; }

 private:
  std::function<void()> write_;
};

TEST_F(CleanerTests, PutsBackFromAnotherDriveAndRemovesOnlyWhatItCopied) {
  const std::string drive = "/dev/shm/volbrin-test-" + std::to_string(::getpid());
  struct stat here {
  }, there{};
  if (!fs::create_directories(drive + "/tree/in") || ::stat(drive.c_str(), &there) != 0 ||
      ::stat(machine_.root().c_str(), &here) != 0 || here.st_dev == there.st_dev) {
    GTEST_SKIP() << "no other drive here";
  }
  std::ofstream(drive + "/tree/file") << "old";
  fs::create_symlink("in", drive + "/tree/link");
  HistoryEntry entry;
  entry.id = "parked";
  entry.relocated = {{machine_.path("~/new/tree"), drive + "/tree", {}, true}};
  ASSERT_TRUE(History::append(entry, mac()));
  Writer writer([&] { std::ofstream(drive + "/tree/in/late") << "late"; });
  const auto result = Cleaner::undo("parked", mac(), false, &writer);
  // What came while it was copied stays, whether or not the copy has it too.
  EXPECT_TRUE(exists(drive + "/tree/in/late"));
  EXPECT_THAT(result.detail, testing::EndsWith(" is still at " + drive + "/tree."));
  EXPECT_EQ(readFile(machine_.path("~/new/tree/file")), "old");
  EXPECT_TRUE(isSymlink(machine_.path("~/new/tree/link")));
  EXPECT_FALSE(exists(drive + "/tree/file"));
  EXPECT_THAT(listNames(machine_.path("~/new")), ElementsAre("tree"));
  fs::remove_all(drive);
}

}  // namespace
}  // namespace volbrin::test
