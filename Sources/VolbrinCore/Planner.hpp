#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "Goal.hpp"
#include "Model.hpp"

namespace volbrin {

/// One way to free space: how far a drive gets when all of its findings are done and the Trash is
/// emptied.
struct Route {
  std::string id;
  std::string title;
  std::vector<std::string> findingIDs;
  ByteCount bytes = 0;      ///< sum of the findings' bytes; never includes the Trash
  ByteCount freeAfter = 0;  ///< free bytes now, plus the Trash, plus `bytes`
  bool reachesGoal = false;

  bool operator==(const Route&) const = default;
};

/// The routes to a goal on one drive.
struct Plan {
  DriveInfo drive;
  std::string goal;  ///< the goal's description
  ByteCount goalBytes = 0;
  ByteCount freeNow = 0;
  ByteCount trashBytes = 0;   ///< 0 but for the startup drive, on which the Trash lies
  std::vector<Route> routes;  ///< a ladder: each rung holds the ones before; "safe" is always there
  /// The fewest findings of low risk that reach the goal; absent when they can't.
  std::optional<Route> fewest;
  std::vector<std::string> notes;

  bool operator==(const Plan&) const = default;
};

/// Turns a report and a goal into routes. Pure: touches neither disk nor machine.
struct Planner {
  Planner() = delete;

  /// The plan for the drive of this path or name, or for the startup drive when there is no such
  /// drive or none is named. Absent when the report has no startup drive to fall back on.
  [[nodiscard]] static std::optional<Plan> plan(const ScanReport& report, const Goal& goal,
                                                std::optional<std::string_view> drive);
};

template <>
struct RecordFields<Route> {
  static constexpr auto list = std::tuple{field("id", &Route::id),
                                          field("title", &Route::title),
                                          field("findingIDs", &Route::findingIDs),
                                          field("bytes", &Route::bytes),
                                          field("freeAfter", &Route::freeAfter),
                                          field("reachesGoal", &Route::reachesGoal)};
};

template <>
struct RecordFields<Plan> {
  static constexpr auto list =
      std::tuple{field("drive", &Plan::drive),           field("goal", &Plan::goal),
                 field("goalBytes", &Plan::goalBytes),   field("freeNow", &Plan::freeNow),
                 field("trashBytes", &Plan::trashBytes), field("routes", &Plan::routes),
                 field("fewest", &Plan::fewest),         field("notes", &Plan::notes)};
};

}  // namespace volbrin
