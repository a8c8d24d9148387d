#include "CommandLineTests.hpp"

#include <gmock/gmock.h>
#include <sys/inotify.h>

#include <cstring>
#include <filesystem>
#include <set>

#include "Descriptor.hpp"
#include "PrivacyFence.hpp"
#include "Text.hpp"

namespace volbrin::test {
namespace {

using namespace std::string_literals;
using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

TEST_F(CommandLineTests, PrintsTheTextOfEachCommand) {
  struct Case {
    Words words;
    std::string beginning, part;
  };
  const Case cases[] = {
      {{"status"}, "Disk: 40 GB free of 1000 GB\nExt: 1900 GB free of 2000 GB\nTrash: ", ""},
      {{"scan", "--goal", "50GB"},
       "Disk: 40 GB free of 1000 GB (goal 50 GB: 10 GB short)\n",
       "[tool]\n           Reason of tool.\n"},
      {{"plan"}, "Disk: 40 GB free, goal 50 GB (50 GB)\n", "✓"},
      {{"usage", "~/Library/Caches"}, " ", " GB  ~/Library/Caches\n"},
      {{"explain", "~/Library/Caches/tool"},
       "~/Library/Caches/tool\n  Size: ",
       "  Known as:         Title of tool [tool]\n"},
      {{"compare", "~/.Trash", "~/.Trash", "--checksums"}, "The same: 1 file, contents", "."},
      {{"apps"}, "Photo Lab  (com.maker.photolab)\n", "/Applications/Photo Lab.app\n"},
      {{"catalog", "check"}, "The rules are sound.\n", ""}};
  for (const auto& [words, beginning, part] : cases) {
    const auto outcome = onMachine(words);
    SCOPED_TRACE(words.front());
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.err, "");
    EXPECT_THAT(outcome.out, AllOf(StartsWith(beginning), HasSubstr(part), Not(HasSubstr("\x1B"))));
  }
}

TEST_F(CommandLineTests, PrintsTheRecordsOfEachCommand) {
  const auto report = fromJson<ScanReport>(json({"scan", "--now", "2026-03-01"}), "scan");
  EXPECT_EQ(report.findings.size(), 2U);
  EXPECT_EQ(json({"plan"})["goal"], "50 GB");
  EXPECT_EQ(jsonText(json({"catalog", "check"})), R"({"ok":true,"problems":[]})");
}

TEST_F(CommandLineTests, TakesPathsInEveryForm) {
  const auto tool = machine_.path("~/Library/Caches/tool");
  const auto ext = machine_.path("/Volumes/Ext/cache");
  machine_.file("~/bad\xFF");
  Words keys;
  const auto usages = json({"usage", "/Volumes/Ext/cache///", "~/Library/Caches/tool", tool,
                            ext + "/", "/Users/me/Library/Caches/tool", "~/bad\xFF", "/"});
  for (const auto& [key, value] : usages.items()) keys.push_back(key);
  EXPECT_THAT(keys, ElementsAre(ext, tool, machine_.path("~/bad\uFFFD"), machine_.root()));
  EXPECT_EQ(fromJson<Usage>(usages[tool], ""), machine_.mac().usage(tool));
  for (const auto& drive : {"Ext"s, "/Volumes/Ext/"s, machine_.path("/Volumes/Ext")}) {
    EXPECT_EQ(json({"plan", "--drive", drive})["drive"]["name"], "Ext") << drive;
  }
  for (const auto& path : {"~/Library"s, "/Users/me/Library/"s, tool}) {
    const auto report =
        fromJson<ScanReport>(json({"scan", "--protect", "/none", "--protect", path}), "");
    EXPECT_EQ(report.findings.size(), 1U) << path;
    EXPECT_THAT(report.skipped, testing::Contains(testing::Field(&Skipped::path, tool)));
  }
}

TEST_F(CommandLineTests, EndsWithTheStatusOfTheFault) {
  const auto none = folder_.at("none");
  const auto bad = folder_.file("bad.json", "{\n]");
  const auto broken = folder_.file("broken/volbrin-fixture.json", R"({"drives":7})");
  const auto& root = machine_.root();
  struct Case {
    int status;
    Words words;
    std::string part;
  };
  const Case cases[] = {
      {2, {}, "--help"},
      {2, {"--frobnicate", "status"}, "--frobnicate"},
      {2, {"owner", "x"}, "--kind"},
      {2, {"--machine", root, "scan", "--goal", "lots"}, "lots"},
      {2, {"--machine", root, "scan", "--now", "2026-02-30"}, "2026-02-30"},
      {2, {"--machine", root, "scan", "--min-bytes=-1"}, "-1"},
      {2, {"--machine", root, "clean", "x", "--yes", "--move-to", "--dry-run"}, "--move-to wants"},
      {2, {"clean", "x", "--yes", "--machine", "--dry-run"}, "--machine wants a value"},
      {2, {"--machine", root, "clean", "x", "--yes", "--dry-run=false"}, "takes no value"},
      {2, {"--machine", root, "clean", "x", "--yes", "--protect", "/none"}, "'/none'"},
      {3, {"--machine", none, "status"}, none + "/volbrin-fixture.json: No such file"},
      {3, {"--machine", folder_.at("broken"), "status"}, broken + ": drives: expected a list"},
      {3, {"--machine", root, "--catalog", bad, "plan"}, bad + ": not valid JSON"},
      {3, {"catalog", "check", none}, none}};
  for (const auto& [status, words, part] : cases) {
    for (const bool wantsJson : {false, true}) {
      auto all = words;
      if (wantsJson) all.insert(all.begin(), "--json");
      SCOPED_TRACE(joined(all, " "));
      const auto outcome = run(all);
      EXPECT_EQ(outcome.status, status);
      EXPECT_EQ(outcome.out, "");
      EXPECT_THAT(outcome.err, AllOf(StartsWith("volbrin: "), HasSubstr(part)));
      EXPECT_EQ(outcome.err.find('\n'), outcome.err.size() - 1);
    }
  }
  EXPECT_EQ(run({"--machine", root, "scan"}, {{"VOLBRIN_CATALOG", bad}}).status, 3);
}

TEST_F(CommandLineTests, TellsProblemsFromFaults) {
  const auto differing = onMachine({"compare", "--json", "~/.Trash", "/Volumes/Ext/cache"});
  EXPECT_EQ(differing.status, 1);
  EXPECT_EQ(differing.out,
            "{\"files\":1,\"onlyHere\":1,\"onlyThere\":1,\"differing\":0,\"checksummed\":false}\n");
  const auto bad = folder_.file("bad.json", R"({"version":"1"})");
  const auto checked = run({"catalog", "check", bad, "--json"});
  EXPECT_EQ(checked.status, 1);
  EXPECT_THAT(checked.out, StartsWith(R"({"ok":false,"problems":[{"path":"version","problem":")"));
  machine_.setFixture(R"({"drives":[{"name":"Ext","path":"/Volumes/Ext","total":2,"free":1}]})");
  const auto plan = onMachine({"plan", "--json"});
  EXPECT_TRUE(plan.status == 1 && plan.out == "null\n");
  const int full = ::open("/dev/full", O_WRONLY);
  EXPECT_EQ(runInto(full, folder_.at("err"), {VOLBRIN_PROGRAM, "--help"}, {}), 3);
  EXPECT_THAT(readFile(folder_.at("err")), StartsWith("volbrin: "));
}

TEST_F(CommandLineTests, HelpsAnywhere) {
  EXPECT_EQ(run({"--version"}).out, "volbrin 0.1.0\n");
  for (const Words& words : {Words{"-h", "scan"}, Words{"scan", "--wrong", "--help"}}) {
    const auto outcome = run(words);
    EXPECT_EQ(outcome.status, 0);
    EXPECT_THAT(outcome.out, AllOf(StartsWith("volbrin scan - "), HasSubstr("--min-bytes N")));
  }
}

TEST_F(CommandLineTests, ColorsTerminals) {
  const auto colored = HasSubstr("\x1B[");
  EXPECT_THAT(onTerminal({"scan"}, {}), colored);
  EXPECT_THAT(onTerminal({"scan"}, {{"NO_COLOR", "1"}}), Not(colored));
  EXPECT_THAT(onMachine({"scan", "--color=always"}, {{"NO_COLOR", "1"}}).out, colored);
  EXPECT_THAT(onMachine({"--color", "always", "scan", "--json"}).out, Not(colored));
  EXPECT_THAT(onTerminal({"status", "--json"}, {}), StartsWith("{\n  \"engine\": \"volbrin"));
  EXPECT_EQ(
      onTerminal({"owner", "a\x1B[2J\xC2\x9B", "--kind", "support-folder", "--color", "never"}, {}),
      "Nothing tells whose a?[2J? is.\n");
}

/// Hears of every file and folder that is opened in a tree.
class OpenWatch {
 public:
  void add(const std::string& path) const {
    constexpr unsigned mask = IN_OPEN | IN_DONT_FOLLOW;
    EXPECT_GE(::inotify_add_watch(queue_.get(), path.c_str(), mask), 0) << path;
    if (!std::filesystem::is_directory(path)) return;
    for (const auto& entry : std::filesystem::directory_iterator(path)) {
      if (!entry.is_symlink()) add(entry.path().string());
    }
  }
  /// Whether anything was opened since the last question.
  bool wasOpened() const {
    std::array<char, 65536> events{};
    bool any = false;
    while (::read(queue_.get(), events.data(), events.size()) > 0) any = true;
    return any;
  }

 private:
  Descriptor queue_{::inotify_init1(IN_NONBLOCK | IN_CLOEXEC)};
};

class DemoMachineTests : public CommandLineTests {
 protected:
  DemoMachineTests() {
    const int made = runInto(::open(folder_.at("out").c_str(), O_WRONLY | O_CREAT, 0600),
                             folder_.at("err"), {VOLBRIN_DEMO, "--now", "2026-03-01", demo_}, {});
    EXPECT_EQ(made, 0) << readFile(folder_.at("err"));
  }

  ScanReport scan(Words more = {}) const {
    Words words = {"scan", "--machine", demo_, "--now", "2026-03-01", "--json"};
    words.insert(words.end(), more.begin(), more.end());
    return fromJson<ScanReport>(parseJson(run(words).out, "scan"), "scan");
  }

  std::string demo_ = folder_.at("demo");
};

TEST_F(DemoMachineTests, ShowsEachFinderAtWork) {
  const auto report = scan();
  std::set<std::string> finders, stories;
  for (const auto& finding : report.findings) {
    EXPECT_GT(finding.bytes, 0) << finding.id;
    for (const auto& path : finding.paths) EXPECT_TRUE(exists(path)) << path;
    finders.insert(finding.finder);
    if (finding.finder == "personal") {
      stories.insert(
          finding.duplicateOf
              ? "copy"
              : jsonText(toJson(finding.action)).substr(0, std::strlen("{'kind':'move")));
    }
    if (finding.id.starts_with("steam-workshop")) stories.insert(finding.getBack.substr(0, 16));
  }
  EXPECT_EQ(finders, (std::set<std::string>{"app-caches", "installers", "leftovers", "personal",
                                            "places", "simulators", "split-installs",
                                            "stale-mounts", "steam", "unused-apps"}));
  EXPECT_EQ(stories,
            (std::set<std::string>{"copy", R"({"kind":"hand)", R"({"kind":"move)",
                                   R"({"kind":"revi)", "Steam downloads ", "The copy on Back",
                                   "Keep whichever c", "Moved, not remov"}));
  const auto notes = joined(report.notes, "\n");
  EXPECT_THAT(notes, AllOf(HasSubstr("isn't plugged in. Plug it in to compare."),
                           HasSubstr("whose drive isn't plugged in"),
                           HasSubstr("Left the caches of open apps alone")));
}

TEST_F(DemoMachineTests, OpensNothingThatIsGuarded) {
  const OpenWatch watch;
  for (const auto& root : PrivacyFence::guardedRoots(demo_ + "/Users/me")) {
    if (exists(root)) watch.add(root);
  }
  EXPECT_TRUE(watch.wasOpened());  // by the watch itself, on its way down
  EXPECT_FALSE(scan({"--avoid-privacy-prompts"}).findings.empty());
  EXPECT_FALSE(watch.wasOpened());
  EXPECT_FALSE(scan().findings.empty());
  EXPECT_TRUE(watch.wasOpened());
}

}  // namespace
}  // namespace volbrin::test
