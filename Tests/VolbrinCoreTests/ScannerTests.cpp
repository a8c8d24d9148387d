#include "Scanner.hpp"

#include <gmock/gmock.h>

#include "Machine.hpp"
#include "RecordingPlatform.hpp"

namespace volbrin::test {
namespace {

using ::testing::AllOf;
using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::Not;
using ::testing::StartsWith;

constexpr std::size_t kilobytes64 = 65536;
const std::string throughLink = "reached through a link; acting on it could reach somewhere else";
const std::string guarded =
    "macOS asks before any app looks inside; give Osmerly Full Disk Access to include it";

class ScannerTest : public ::testing::Test {
 protected:
  Catalog::Place& addPlace(std::string id, std::vector<std::string> paths) {
    return catalog_.places.emplace_back(placeAt(std::move(id), std::move(paths)));
  }

  ScanReport scan() const { return Scanner::scan(machine_.mac(), catalog_, options_); }

  std::vector<std::string> idsOf(const ScanReport& report) const {
    std::vector<std::string> ids;
    for (const auto& finding : report.findings) ids.push_back(finding.id);
    return ids;
  }

  Skipped skipped(const char* written, const std::string& why) const {
    return {machine_.path(written), why};
  }

  Machine machine_;
  Catalog catalog_ = catalogOfPlaces();
  ScanOptions options_{{}, *parseIso8601("2026-03-01T12:00:00Z"), {}, false, nullptr};
};

TEST_F(ScannerTest, SortsByTierThenBySizeAndKeepsTheOrderOfEquals) {
  const auto add = [this](const std::string& id, Tier tier, std::size_t size) {
    machine_.fileOfSize("~/" + id, size);
    addPlace(id, {"~/" + id}).tier = tier;
  };
  std::vector<std::string> expected = {"small", "large"};
  add("mine", Tier::personal, kilobytes64);
  for (int i = 0; i < 40; ++i) {
    add(expected.emplace_back("e" + std::to_string(i)), Tier::reinstallable, 0);
  }
  add("large", Tier::reinstallable, kilobytes64);
  add("small", Tier::rebuilds, 0);
  expected.push_back("mine");
  EXPECT_EQ(idsOf(scan()), expected);
}

TEST_F(ScannerTest, NeverOffersWhatTouchesAProtectedPath) {
  for (const char* file :
       {"~/a/mail/x", "~/b/x", "~/c/x", "~/d/x", "~/e/x", "~/Library/Mobile Documents/x"}) {
    machine_.file(file);
  }
  catalog_.protectedPaths = {{"~/a/mail", "your mail"}};
  options_.extraProtected = {{"~/d/own", "you said so"}};
  addPlace("above", {"~/a"});
  addPlace("second", {"~/b", "~/a/mail/x"});
  addPlace("own", {"~/d"});
  addPlace("cloud", {"~/Library"}).action = actions::review;
  addPlace("fine", {"~/e", "~/c"});
  const auto report = scan();
  EXPECT_THAT(idsOf(report), ElementsAre("fine"));
  EXPECT_THAT(report.skipped, ElementsAre(skipped("~/a", "never touched: your mail"),
                                          skipped("~/a/mail/x", "never touched: your mail"),
                                          skipped("~/d", "never touched: you said so"),
                                          skipped("~/Library", "never touched: iCloud Drive")));
}

TEST_F(ScannerTest, OffersNothingThroughALinkUnlessNothingIsDoneToIt) {
  machine_.link("~/link", "real");
  using Kind = Action::Kind;
  const std::map<std::string, Kind> kinds = {{"a", Kind::trash},   {"b", Kind::move},
                                             {"c", Kind::command}, {"d", Kind::review},
                                             {"e", Kind::handOff}, {"f", Kind::remove}};
  for (const auto& [folder, kind] : kinds) {
    machine_.file("~/real/" + folder + "/x");
    addPlace(folder, {"~/link/" + folder}).action.kind = kind;
  }
  catalog_.places.back().paths = {"~/real/f", "~/link"};
  const auto report = scan();
  EXPECT_THAT(idsOf(report), ::testing::UnorderedElementsAre("d", "e"));
  EXPECT_THAT(report.skipped,
              ElementsAre(skipped("~/link/a", throughLink), skipped("~/link/b", throughLink),
                          skipped("~/link/c", throughLink), skipped("~/link", throughLink)));
}

TEST_F(ScannerTest, WhatAnEarlierFindingHoldsIsDroppedWithoutAWord) {
  for (const char* file : {"~/a/in/x", "~/ab/x", "~/b/in/x", "~/c/x", "~/d/x"}) machine_.file(file);
  catalog_.protectedPaths = {{"~/d", "your own"}};
  addPlace("a", {"~/a"});
  addPlace("inside", {"~/c", "~/a/in"});
  addPlace("deep", {"~/b/in"});
  addPlace("above", {"~/b"});
  // Neither a dropped finding nor a refused one holds its paths.
  addPlace("refused", {"~/ab", "~/d"});
  addPlace("rest", {"~/c", "~/ab"});
  const auto report = scan();
  EXPECT_THAT(idsOf(report), ::testing::UnorderedElementsAre("a", "deep", "rest"));
  EXPECT_THAT(report.skipped, ElementsAre(skipped("~/d", "never touched: your own")));
}

TEST_F(ScannerTest, AFindingLiesOnTheDeepestDriveAboveItsFirstPath) {
  const auto platform = std::make_shared<RecordingPlatform>();
  const Mac mac("", machine_.path("~"), platform);
  const auto drives = [&] {
    const auto report = Scanner::scan(mac, catalog_, options_);
    return std::pair(report.findings.at(0).drive, report.findings.at(1).drive);
  };
  machine_.fileOfSize("~/E/in/x", kilobytes64);  // the larger goes first
  machine_.file("~/E2");
  addPlace("inner", {"~/E/in"});
  addPlace("alike", {"~/E2"});
  for (const char* written : {"~/first", "~/start", "~/E"}) {
    platform->driveList.push_back({"D", machine_.path(written), false, 9, 1, 1});
  }
  platform->driveList[1].isStartup = true;
  EXPECT_EQ(drives(), std::pair(machine_.path("~/E"), machine_.path("~/start")));
  platform->driveList.push_back({"D", machine_.path("~/E/in"), false, 9, 1, 1});
  EXPECT_EQ(drives(), std::pair(machine_.path("~/E/in"), machine_.path("~/start")));
  for (const char* act : {"trash ", "run ", "admin "}) {
    EXPECT_THAT(platform->touches(),
                Not(Contains(AllOf(StartsWith(act), Not("run /usr/bin/xcode-select -p")))));
  }
}

TEST_F(ScannerTest, KeepsOutOfGuardedFoldersAndTellsWhichAreThere) {
  for (const char* file : {"~/Documents/x", "~/Library/Mail/x", "~/Library/Logs/x"}) {
    machine_.file(file);
  }
  addPlace("documents", {"~/Documents/x", "~/Documents/*"});
  addPlace("logs", {"~/Library/Logs"});
  EXPECT_THAT(idsOf(scan()), ::testing::UnorderedElementsAre("documents", "logs"));

  options_.avoidPrivacyPrompts = true;
  const auto report = scan();
  EXPECT_THAT(idsOf(report), ElementsAre("logs"));
  EXPECT_THAT(report.skipped,
              ElementsAre(skipped("~/Documents", guarded), skipped("~/Library/Mail", guarded)));
}

}  // namespace
}  // namespace volbrin::test
