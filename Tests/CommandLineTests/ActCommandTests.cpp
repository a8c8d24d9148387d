#include <gmock/gmock.h>

#include <filesystem>

#include "Acting/History.hpp"
#include "CommandLineTests.hpp"
#include "Paths.hpp"
#include "Text.hpp"
#include "TreeRecord.hpp"

namespace volbrin::test {
namespace {

using namespace std::string_literals;
using testing::AllOf;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

class ActCommandTests : public CommandLineTests {
 protected:
  /// What a terminal shows when the tool is run on it and `typed` is what the user types.
  std::string atTerminal(Words words, const std::string& typed) const {
    words.insert(words.begin(), VOLBRIN_PROGRAM);
    words.insert(words.end(),
                 {"--machine", machine_.root(), "--catalog", folder_.at("rules.json"), "--quiet"});
    const int terminal = ::posix_openpt(O_RDWR | O_NOCTTY);
    EXPECT_TRUE(::grantpt(terminal) == 0 && ::unlockpt(terminal) == 0);
    const int inside = ::open(::ptsname(terminal), O_RDWR | O_NOCTTY);
    EXPECT_EQ(::write(terminal, typed.data(), typed.size()), static_cast<ssize_t>(typed.size()));
    const pid_t child = ::fork();
    if (child == 0) {
      for (const int file : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) ::dup2(inside, file);
      std::vector<char*> vector;
      for (auto& word : words) vector.push_back(word.data());
      vector.push_back(nullptr);
      ::execv(vector.front(), vector.data());
      ::_exit(127);
    }
    EXPECT_EQ(::waitpid(child, nullptr, 0), child);
    std::string text(4095, '\0');  // shorter than what a terminal holds back
    const auto length = ::read(terminal, text.data(), text.size());
    ::close(inside);
    ::close(terminal);
    text.resize(static_cast<std::size_t>(std::max<ssize_t>(length, 0)));
    std::erase(text, '\r');
    return text;
  }

  const std::string tool_ = machine_.path("~/Library/Caches/tool/file");
};

TEST_F(ActCommandTests, ActsTellsAndPutsBack) {
  const auto before = recordOf(machine_.path("~/Library/Caches/tool"));
  const auto planned = onMachine({"clean", "tool", "--dry-run"});
  EXPECT_EQ(planned.status, 0);
  EXPECT_THAT(planned.out, AllOf(StartsWith("Title of tool  ("), HasSubstr("GB)\n"),
                                 HasSubstr("\n  Would move to the Trash.\n")));
  const auto cleaned = onMachine({"clean", "tool", "none", "--yes"});
  EXPECT_EQ(cleaned.status, 1);
  EXPECT_THAT(cleaned.out,
              AllOf(HasSubstr("  ✓ Moved to the Trash; the space comes back when the Trash is "
                              "emptied.\n  Undo with: volbrin undo tool\n"),
                    HasSubstr("none  (0 KB)\n  ⏸ A fresh scan doesn't find this any more; scan "
                              "again.\n")));
  EXPECT_FALSE(exists(tool_));
  EXPECT_THAT(onMachine({"history"}).out,
              AllOf(HasSubstr("  Title of tool, "), HasSubstr("  [tool]\n    ~/Library/Caches/tool "
                                                              "went to ~/.Trash/tool\n")));
  EXPECT_EQ(json({"undo", "tool", "--dry-run"})["detail"],
            "Would put 1 item(s) back where they were.");
  EXPECT_EQ(jsonText(json({"undo", "tool", "--yes"})["relocated"]),
            R"([{"from":")" + machine_.path("~/.Trash/tool") + R"(","to":")" +
                machine_.path("~/Library/Caches/tool") + "\"}]");
  EXPECT_EQ(recordOf(machine_.path("~/Library/Caches/tool")), before);
  EXPECT_EQ(onMachine({"undo", "tool", "--yes"}).status, 1);
  const auto history = json({"history"});
  EXPECT_EQ(history.size(), 2U);
  EXPECT_EQ(history[1]["undone"], true);
  EXPECT_EQ(history[0]["action"], "delete");
}

TEST_F(ActCommandTests, WantsAWordWhereNobodyCanBeAsked) {
  for (const Words& words : {Words{"clean", "tool"}, Words{"undo", "tool"}}) {
    const auto before = recordOf(machine_.root());
    const auto outcome = onMachine(words);
    EXPECT_EQ(outcome.status, 2);
    EXPECT_THAT(outcome.err, AllOf(StartsWith("volbrin: "), HasSubstr("--yes")));
    EXPECT_EQ(recordOf(machine_.root()), before);
  }
}

TEST_F(ActCommandTests, ShowsWhatWillHappenAndAsks) {
  for (const auto& typed : {"n\n"s, "\n"s, "\x04"s}) {
    EXPECT_THAT(
        atTerminal({"clean", "tool"}, typed),
        AllOf(HasSubstr("Would move to the Trash.\nGo ahead? [y/N] "), Not(HasSubstr("Moved to"))));
    EXPECT_TRUE(exists(tool_));
  }
  EXPECT_THAT(atTerminal({"clean", "none"}, ""), Not(HasSubstr("Go ahead?")));
  EXPECT_THAT(atTerminal({"clean", "none", "tool"}, "y\n"),
              AllOf(HasSubstr("Go ahead?"), HasSubstr("✓ Moved to the Trash")));
  EXPECT_FALSE(exists(tool_));
  EXPECT_THAT(atTerminal({"undo", "tool"}, "y\n"),
              AllOf(HasSubstr("Would put 1 item(s) back"), HasSubstr("✓ Put back")));
  EXPECT_TRUE(exists(tool_));
}

TEST_F(ActCommandTests, TakesAnyId) {
  const auto longID = std::string(10'000, 'x');
  const auto results = run({"clean", "--yes", "--json", "--machine", machine_.root(), "--catalog",
                            folder_.at("rules.json"), "--", "", longID, "a\nb", "--tool", "-"});
  EXPECT_EQ(results.status, 1);
  const auto list = parseJson(results.out, "standard output");
  ASSERT_EQ(list.size(), 5U);
  for (const auto& result : list) EXPECT_EQ(result["status"], "refused");
  EXPECT_EQ(list[2]["id"], "a\nb");
}

TEST_F(ActCommandTests, NamesTheUndoAsAShellTakesIt) {
  auto catalog = catalogOfPlaces();
  for (const auto* id : {"it's odd", "-x"}) {
    catalog.places.push_back(placeAt(id, {"~/"s + id}));
    machine_.fileOfSize("~/"s + id + "/file", 4096);
  }
  folder_.file("rules.json", jsonText(toJson(catalog)));
  EXPECT_THAT(onMachine({"clean", "it's odd", "--yes"}).out,
              HasSubstr("Undo with: volbrin undo 'it'\\''s odd'\n"));
  EXPECT_THAT(run({"clean", "--yes", "--machine", machine_.root(), "--catalog",
                   folder_.at("rules.json"), "--", "-x"})
                  .out,
              HasSubstr("Undo with: volbrin undo -- -x\n"));
}

TEST_F(ActCommandTests, ActsWhateverBecomesOfTheHistory) {
  const auto file = History::pathOn(machine_.mac());
  std::filesystem::create_directories(file);
  const auto outcome = onMachine({"clean", "tool", "--yes"});
  EXPECT_EQ(outcome.status, 0);
  EXPECT_THAT(outcome.err, HasSubstr("couldn't be written into the history"));
  EXPECT_EQ(onMachine({"history"}).out, "Nothing was done yet.\n");
  EXPECT_THAT(onMachine({"undo", "tool", "--yes"}).out, HasSubstr("Nothing in the history"));
}

TEST_F(ActCommandTests, MovesToTheDriveOfThatNameOrPath) {
  auto catalog = catalogOfPlaces();
  catalog.places = {placeAt("trip", {"~/Trip"})};
  catalog.places[0].action.kind = Action::Kind::move;
  folder_.file("rules.json", jsonText(toJson(catalog)));
  for (const auto& drive : {"Ext"s, "/Volumes/Ext"s, machine_.path("/Volumes/Ext")}) {
    machine_.fileOfSize("~/Trip/file", 4096);
    EXPECT_EQ(onMachine({"clean", "trip", "--move-to", drive, "--yes"}).status, 0) << drive;
    std::filesystem::remove_all(machine_.path("/Volumes/Ext/Moved from Mac"));
  }
  EXPECT_EQ(onMachine({"clean", "trip", "--move-to", "Disk", "--yes"}).status, 1);
}

}  // namespace
}  // namespace volbrin::test
