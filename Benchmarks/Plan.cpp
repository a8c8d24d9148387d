#include <fmt/format.h>

#include <cstdio>
#include <cstdlib>

#include "Planner.hpp"

/// Plans once over as many findings as it is told, of all kinds, in the hands of as many apps as
/// there are hand-offs: what takes longer than its share with many of them shows here.
namespace {

using namespace volbrin;

Finding findingOf(std::size_t number) {
  Finding finding;
  finding.id = fmt::format("finding-{}", number);
  finding.drive = "/";
  finding.bytes = static_cast<ByteCount>(1'000'000 + number % 9'973);
  finding.tier = static_cast<Tier>(number % 3);
  switch (number % 5) {
    case 0:
      finding.action.kind = Action::Kind::handOff;
      finding.action.app = fmt::format("App {}", number);
      finding.action.moves = number % 2 == 0;
      break;
    case 1:
      finding.action.kind = Action::Kind::move;
      finding.duplicateOf = number % 2 == 0 ? std::optional<std::string>("/copy") : std::nullopt;
      break;
    default:
      finding.action.kind = Action::Kind::trash;
  }
  if (number % 17 == 0) finding.blockedBy = "open";
  return finding;
}

}  // namespace

int main(int count, char** words) {
  const auto findings = count == 2 ? std::strtoull(words[1], nullptr, 10) : 0;
  if (findings == 0) return 2;
  ScanReport report;
  report.drives = {{"Disk", "/", true, 1'000'000'000'000, 1'000'000'000, 1'000'000'000}};
  for (std::size_t i = 0; i < findings; ++i) report.findings.push_back(findingOf(i));
  const auto plan = Planner::plan(report, *Goal::parse("900GB"), std::nullopt);
  if (!plan) return 1;
  fmt::print("{} routes, {} findings in the last\n", plan->routes.size(),
             plan->routes.back().findingIDs.size());
  return 0;
}
