#include "ScanGate.hpp"

#include <algorithm>

namespace volbrin {
namespace {

/// Hand-offs and reviews do nothing to the path, so a link on the way doesn't matter to them.
bool actsOnPath(const Action& action) {
  return action.kind != Action::Kind::handOff && action.kind != Action::Kind::review;
}

}  // namespace

void ScanGate::pass(Finding finding, ScanReport& report) {
  if (auto skipped = refusal(finding)) {
    report.skipped.push_back(std::move(*skipped));
    return;
  }
  if (isTaken(finding)) return;
  for (const auto& path : finding.paths) taken_.insert(path);
  const auto* drive = context_.driveOf(finding.paths.empty() ? "/" : finding.paths.front());
  finding.drive = (drive != nullptr ? *drive : context_.startup()).path;
  report.findings.push_back(std::move(finding));
}

std::optional<Skipped> ScanGate::refusal(const Finding& finding) const {
  for (const auto& path : finding.paths) {
    if (const auto why = guard_.protection(path, PathGuard::Contents::include)) {
      return Skipped{path, "never touched: " + *why};
    }
  }
  if (!actsOnPath(finding.action)) return std::nullopt;
  const auto linked =
      std::find_if(finding.paths.begin(), finding.paths.end(), PathGuard::throughLink);
  if (linked == finding.paths.end()) return std::nullopt;
  return Skipped{*linked, "reached through a link; acting on it could reach somewhere else"};
}

bool ScanGate::isTaken(const Finding& finding) const {
  return std::any_of(finding.paths.begin(), finding.paths.end(),
                     [&](const auto& path) { return taken_.touches(path); });
}

}  // namespace volbrin
