#pragma once

#include <optional>
#include <vector>

#include "PathGuard.hpp"
#include "Paths.hpp"
#include "ScanContext.hpp"

namespace volbrin {

/// What every proposed finding must pass, whoever proposed it: nothing that touches a never-touch
/// path, nothing reached through a link, nothing that overlaps what was offered before.
class ScanGate {
 public:
  ScanGate(const ScanContext& context, PathGuard guard)
      : context_(context), guard_(std::move(guard)) {}

  /// Puts the finding into the report, on its drive; or the reason against it into `skipped`; or,
  /// for what an earlier finding already offers, nothing at all.
  void pass(Finding finding, ScanReport& report);

 private:
  [[nodiscard]] std::optional<Skipped> refusal(const Finding& finding) const;
  [[nodiscard]] bool isTaken(const Finding& finding) const;

  const ScanContext& context_;
  PathGuard guard_;
  PathSet taken_;
};

}  // namespace volbrin
