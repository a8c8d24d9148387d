#pragma once

#include <optional>
#include <string>

#include "Goal.hpp"
#include "Mac.hpp"
#include "Planner.hpp"

namespace volbrin {

/// Reports as plain text for a terminal. Pure: no input or output, no clock.
struct Report {
  Report() = delete;

  /// The engine's one form of a byte count for people (ByteText.hpp).
  [[nodiscard]] static std::string bytes(ByteCount count);

  /// A line for each drive, on the startup drive with the goal, and one for the Trash when it holds
  /// anything. No final line end.
  [[nodiscard]] static std::string drives(const ScanReport& report,
                                          const std::optional<Goal>& goal);

  /// The whole scan report; ends with a line end.
  [[nodiscard]] static std::string text(const ScanReport& report, const Mac& mac,
                                        const std::optional<Goal>& goal);

  /// A plan, with the titles of its findings from the report that it came from.
  [[nodiscard]] static std::string text(const Plan& plan, const ScanReport& report);
};

}  // namespace volbrin
