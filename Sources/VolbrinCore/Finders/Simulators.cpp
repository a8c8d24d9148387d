#include "Simulators.hpp"

#include <fmt/format.h>

#include "../Text.hpp"
#include "Shared.hpp"

namespace volbrin {
namespace {

/// Why there are no runtimes to tell of, where Xcode should be there and isn't.
std::optional<std::string> noteOnXcode(const ScanContext& context) {
  if (context.mac.isFake()) return std::nullopt;
  const auto output = context.mac.run({"/usr/bin/xcode-select", "-p"});
  if (!output || output->empty()) return std::nullopt;
  const std::string path(trimmed(*output));
  if (exists(path)) return std::nullopt;
  return fmt::format(
      "Xcode isn't reachable at {} (its drive may be unplugged), so simulators weren't checked.",
      path);
}

}  // namespace

FinderResult SimulatorsFinder::find(const ScanContext& context) const {
  FinderResult result;
  const auto runtimes = context.mac.simulatorRuntimes();
  if (!runtimes) {
    if (auto note = noteOnXcode(context)) result.notes.push_back(std::move(*note));
    return result;
  }
  const auto blockedBy =
      blockedWhileOpen(context.openApp({"com.apple.dt.Xcode", "com.apple.iphonesimulator"}));
  for (const auto& runtime : *runtimes) {
    if (runtime.bytes < limitOr(context.catalog.thresholds.place, context)) continue;
    Finding finding;
    finding.id = "sim-runtime-" + runtime.id;
    finding.finder = "simulators";
    finding.title = runtime.name + " simulator";
    finding.reason =
        fmt::format("The {} simulator Xcode uses to run apps on a pretend device.", runtime.name);
    finding.getBack = "Xcode downloads it again (Settings → Components) when you need it.";
    finding.tier = Tier::reinstallable;
    finding.bytes = runtime.bytes;
    finding.owner = "Xcode";
    finding.action.kind = Action::Kind::command;
    finding.action.command = {"xcrun", "simctl", "runtime", "delete", runtime.id};
    finding.blockedBy = blockedBy;
    result.findings.push_back(std::move(finding));
  }
  return result;
}

}  // namespace volbrin
