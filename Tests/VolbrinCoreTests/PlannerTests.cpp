#include "Planner.hpp"

#include <fmt/format.h>
#include <gmock/gmock.h>

#include <algorithm>

namespace volbrin::test {
namespace {

using ::testing::ElementsAre;
using Kind = Action::Kind;

Finding finding(std::string id, Tier tier, Kind kind, ByteCount bytes) {
  Finding result;
  result.id = std::move(id);
  result.tier = tier;
  result.action.kind = kind;
  result.bytes = bytes;
  result.drive = "/";
  return result;
}

Finding handOff(std::string id, ByteCount bytes, std::string app, bool moves,
                Tier tier = Tier::personal) {
  auto result = finding(std::move(id), tier, Kind::handOff, bytes);
  result.action.app = std::move(app);
  result.action.moves = moves;
  return result;
}

Finding copyOf(Finding finding) {
  finding.duplicateOf = "/x";
  return finding;
}

/// 1000 bytes, 100 of them free and 50 in the Trash; and an external drive without Trash.
ScanReport reportOf(std::vector<Finding> findings) {
  ScanReport report;
  report.drives = {{"Disk", "/", true, 1000, 100, 7}, {"Ext", "/Volumes/Ext", false, 500, 20, 20}};
  report.trashBytes = 50;
  report.findings = std::move(findings);
  return report;
}

Plan planOf(std::vector<Finding> findings, ByteCount goal) {
  return Planner::plan(reportOf(std::move(findings)), Goal::ofBytes(goal), std::nullopt).value();
}

/// "id: finding ids = bytes > free after", with "!" when the goal is reached.
std::string described(const Route& route) {
  return fmt::format("{}: {} = {} > {}{}", route.id, fmt::join(route.findingIDs, " "), route.bytes,
                     route.freeAfter, route.reachesGoal ? "!" : "");
}

std::vector<std::string> ladderOf(const Plan& plan) {
  std::vector<std::string> lines(plan.routes.size());
  std::transform(plan.routes.begin(), plan.routes.end(), lines.begin(), described);
  return lines;
}

TEST(PlannerTest, PlansForTheDriveAskedForOrElseForTheStartupDrive) {
  auto external = finding("e", Tier::rebuilds, Kind::remove, 30);
  external.drive = "/Volumes/Ext";
  auto report = reportOf({finding("a", Tier::rebuilds, Kind::remove, 5), external});
  report.drives.push_back({"/", "/Volumes/Ext2", false, 1, 0, 0});
  const auto planFor = [&](std::optional<std::string_view> drive) {
    return Planner::plan(report, Goal::ofShare(0.1), drive);
  };
  EXPECT_THAT(ladderOf(*planFor("Ext")), ElementsAre("safe: e = 30 > 50!"));
  EXPECT_EQ(planFor("/Volumes/Ext")->drive.path, "/Volumes/Ext");
  for (const char* wanted : {"/", "disk"}) EXPECT_EQ(planFor(wanted)->drive.path, "/");
  EXPECT_THAT(ladderOf(*planFor({})), ElementsAre("safe: a = 5 > 155!"));
  report.drives[0].isStartup = false;
  EXPECT_FALSE(planFor({}) || planFor("nowhere"));
}

TEST(PlannerTest, EachRungHoldsTheOnesBefore) {
  const auto plan = planOf(
      {copyOf(finding("copy", Tier::personal, Kind::trash, 64)),
       handOff("app1", 16, "Photos", true), finding("move", Tier::personal, Kind::move, 8),
       handOff("app2", 32, "Music", true), finding("again", Tier::reinstallable, Kind::trash, 4),
       finding("safe", Tier::rebuilds, Kind::move, 1)},
      150 + 13);
  EXPECT_THAT(ladderOf(plan),
              ElementsAre("safe: safe = 1 > 151", "can-come-back: safe again = 5 > 155",
                          "with-moves: safe again move = 13 > 163!",
                          "with-apps: safe again move app1 app2 = 61 > 211!",
                          "with-copies: safe again move app1 app2 copy = 125 > 275!"));
  EXPECT_EQ(plan.routes[3].title, "Plus what other apps can move to a drive (Photos, Music)");
}

TEST(PlannerTest, TierAndActionDecideTheClass) {
  const auto expect = [](const Finding& finding, const std::string& lastRung) {
    EXPECT_EQ(ladderOf(planOf({finding}, 1000)).back(), lastRung);
  };
  for (const Kind kind : {Kind::remove, Kind::trash, Kind::command, Kind::move}) {
    expect(finding("f", Tier::rebuilds, kind, 9), "safe: f = 9 > 159");
    expect(finding("f", Tier::reinstallable, kind, 9), "can-come-back: f = 9 > 159");
  }
  for (const Tier tier : allTiers) {
    expect(finding("f", tier, Kind::review, 9), "safe:  = 0 > 150");
    expect(handOff("f", 9, "A", true, tier), "with-apps: f = 9 > 159");
    expect(handOff("f", 9, "A", false, tier), "safe:  = 0 > 150");
  }
  expect(finding("f", Tier::personal, Kind::trash, 9), "safe:  = 0 > 150");
  expect(copyOf(finding("f", Tier::personal, Kind::review, 9)), "with-copies: f = 9 > 159");
  expect(copyOf(finding("f", Tier::rebuilds, Kind::review, 9)), "safe:  = 0 > 150");
  // In both classes, and counted in both.
  expect(copyOf(finding("f", Tier::personal, Kind::move, 9)), "with-copies: f f = 18 > 168");
}

TEST(PlannerTest, TheFewestStepsTakeTheLargestOfTheLeastRiskFirst) {
  const std::vector<Finding> findings = {finding("big", Tier::reinstallable, Kind::trash, 500),
                                         finding("a", Tier::rebuilds, Kind::remove, 5),
                                         finding("b", Tier::rebuilds, Kind::remove, 9),
                                         finding("huge", Tier::reinstallable, Kind::trash, 900),
                                         finding("mine", Tier::personal, Kind::move, 9000),
                                         handOff("app", 9000, "A", true)};
  const std::map<ByteCount, const char*> routes = {{150, "fewest:  = 0 > 150!"},
                                                   {165, "fewest: b a huge = 914 > 1064!"},
                                                   {1564, "fewest: b a huge big = 1414 > 1564!"},
                                                   {1565, ":  = 0 > 0"}};
  for (const auto& [goal, route] : routes) {
    EXPECT_EQ(described(planOf(findings, goal).fewest.value_or(Route())), route);
  }
}

TEST(PlannerTest, WhatIsUnsureOrBlockedIsInNoRoute) {
  constexpr ByteCount gigabyte = 1'000'000'000;
  const auto safe = finding("safe", Tier::rebuilds, Kind::remove, 2 * gigabyte);
  const auto prune = handOff("prune", gigabyte, "B", false);
  std::vector<Finding> findings = {safe, safe, safe, prune, prune, prune, prune};
  findings.back().action.app = "A";
  findings.back().action.moves.reset();
  for (const std::size_t unsure : {0U, 1U, 3U}) findings[unsure].unsure = true;
  for (const std::size_t blocked : {1U, 2U, 4U}) findings[blocked].blockedBy = "X is open.";
  const auto plan = planOf(findings, 1000);
  EXPECT_THAT(ladderOf(plan), ElementsAre("safe:  = 0 > 150"));
  EXPECT_THAT(plan.notes, ElementsAre("Up to 2 GB more is yours to prune inside other apps (B, A).",
                                      "5 GB waits for open apps to be quit."));
}

}  // namespace
}  // namespace volbrin::test
