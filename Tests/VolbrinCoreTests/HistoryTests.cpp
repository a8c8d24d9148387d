#include "Acting/History.hpp"

#include <gmock/gmock.h>
#include <sys/wait.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>

#include "Files.hpp"
#include "Machine.hpp"
#include "Paths.hpp"
#include "Text.hpp"

namespace volbrin::test {
namespace {

class HistoryTests : public testing::Test {
 protected:
  HistoryEntry entry(std::string id, bool isMark = false) const {
    HistoryEntry entry;
    entry.at = *parseIso8601("2026-03-01T12:00:00Z");
    entry.id = std::move(id);
    entry.title = "Title";
    entry.action = Action::Kind::remove;
    entry.bytes = 42;
    if (isMark) entry.undone = true;
    return entry;
  }

  void write(const std::string& text) const {
    std::filesystem::create_directories(parentFolder(History::pathOn(mac_)));
    std::ofstream(History::pathOn(mac_), std::ios::binary | std::ios::app) << text;
  }

  /// "a" for each entry, "a*" when it counts as undone.
  std::string loaded() const {
    std::string text;
    for (const auto& each : History::load(mac_)) {
      text += each.id + (each.undone.value_or(false) ? "* " : " ");
    }
    return text;
  }

  Machine machine_;
  Mac mac_ = machine_.mac();
};

TEST_F(HistoryTests, GivesBackWhatWasWritten) {
  EXPECT_EQ(loaded(), "");
  auto whole = entry("whole");
  whole.relocated = {{"/a\xFF/%41\n", "/b", true, {}}, {"/é \"", "/.Trash/\xC3", {}, false}};
  EXPECT_TRUE(History::append(whole, mac_));
  EXPECT_EQ(History::load(mac_), std::vector{whole});
  EXPECT_EQ(
      readFile(History::pathOn(mac_)),
      R"({"at":"2026-03-01T12:00:00Z","id":"whole","title":"Title","action":"delete",)"
      R"("bytes":42,"relocated":[{"from":{"percent":"/a%FF/%2541%0A"},"to":"/b","link":true},)"
      R"({"from":"/é \"","to":{"percent":"/.Trash/%C3"},"parked":false}]})"
      "\n");
}

TEST_F(HistoryTests, MarksWhatAnUndoCameAfter) {
  for (const auto& [id, isMark] :
       {std::pair{"a", false}, {"b", false}, {"a", true}, {"a", false}}) {
    History::append(entry(id, isMark), mac_);
  }
  EXPECT_EQ(loaded(), "a* b a* a ");
}

TEST_F(HistoryTests, ADamagedLineCostsOnlyItself) {
  History::append(entry("a"), mac_);
  write("{}\n\nnothing\n{\"at\":\"2026-02-30T00:00:00Z\"}\n\xFF\n");
  write(R"({"at":"2026-03-01T12:00:00Z","id":"big","title":"","action":"trash",)"
        R"("bytes":9223372036854775808,"relocated":[]})"
        "\n");
  write(R"({"at":"2026-03-01T12:00:00Z","id":"torn","ti)");
  History::append(entry("b"), mac_);
  EXPECT_EQ(loaded(), "a b ");
}

TEST_F(HistoryTests, LinesOfSeveralProcessesNeverMix) {
  constexpr int processes = 4, lines = 50;
  for (int i = 0; i < processes; ++i) {
    if (::fork() != 0) continue;
    for (int line = 0; line < lines; ++line) History::append(entry(std::string(5'000, 'x')), mac_);
    ::_exit(0);
  }
  while (::wait(nullptr) > 0) {
  }
  EXPECT_EQ(History::load(mac_).size(), static_cast<std::size_t>(processes * lines));
}

TEST_F(HistoryTests, TellsWhenALineCouldntBeWritten) {
  std::filesystem::create_directories(History::pathOn(mac_));
  EXPECT_FALSE(History::append(entry("a"), mac_));
  EXPECT_EQ(loaded(), "");
}

}  // namespace
}  // namespace volbrin::test
