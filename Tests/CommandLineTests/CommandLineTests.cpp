#include "CommandLineTests.hpp"

#include <gmock/gmock.h>

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
       "  Known as:       Title of tool [tool]\n"},
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

TEST_F(CommandLineTests, ScansTheDemoMachine) {
  const auto demo = folder_.at("demo");
  const int made = runInto(::open(folder_.at("out").c_str(), O_WRONLY | O_CREAT, 0600),
                           folder_.at("err"), {VOLBRIN_DEMO, "--now", "2026-03-01", demo}, {});
  ASSERT_EQ(made, 0) << readFile(folder_.at("err"));
  const auto scan = run({"scan", "--machine", demo, "--now", "2026-03-01", "--json"});
  const auto report = fromJson<ScanReport>(parseJson(scan.out, "scan"), "scan");
  ASSERT_FALSE(report.findings.empty());
  for (const auto& finding : report.findings) {
    EXPECT_GT(finding.bytes, 0) << finding.id;
    for (const auto& path : finding.paths) EXPECT_TRUE(exists(path)) << path;
  }
}

}  // namespace
}  // namespace volbrin::test
