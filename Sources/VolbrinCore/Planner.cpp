#include "Planner.hpp"

#include <fmt/format.h>

#include <algorithm>
#include <unordered_set>

#include "ByteText.hpp"
#include "Text.hpp"

namespace volbrin {
namespace {

using Findings = std::vector<const Finding*>;

/// What one drive has to offer, sorted by what it costs the user. Each list in report order.
struct Classes {
  Findings safe, reinstallable, moves, apps, copies, prune;
  Findings blocked;  ///< of any kind, waiting for an app to be quit
};

bool isDoneHere(const Action& action) {
  using Kind = Action::Kind;
  return action.kind == Kind::remove || action.kind == Kind::trash ||
         action.kind == Kind::command || action.kind == Kind::move;
}

void classify(const Finding& finding, Classes& classes) {
  const Action& action = finding.action;
  if (finding.tier == Tier::rebuilds && isDoneHere(action)) classes.safe.push_back(&finding);
  if (finding.tier == Tier::reinstallable && isDoneHere(action)) {
    classes.reinstallable.push_back(&finding);
  }
  if (finding.tier == Tier::personal && action.kind == Action::Kind::move) {
    classes.moves.push_back(&finding);
  }
  if (action.kind == Action::Kind::handOff) {
    (action.moves.value_or(false) ? classes.apps : classes.prune).push_back(&finding);
  }
  // A copy that could also move stands in both classes, and its bytes count in both.
  if (finding.tier == Tier::personal && finding.duplicateOf) classes.copies.push_back(&finding);
}

Classes classesOf(const ScanReport& report, const DriveInfo& drive) {
  Classes classes;
  for (const auto& finding : report.findings) {
    if (finding.drive != drive.path) continue;
    if (finding.blockedBy) {
      classes.blocked.push_back(&finding);
    } else if (!finding.unsure) {
      classify(finding, classes);
    }
  }
  return classes;
}

ByteCount sum(const Findings& findings) {
  ByteCount bytes = 0;
  for (const auto* finding : findings) bytes = addBytes(bytes, finding->bytes, "a route");
  return bytes;
}

/// The apps that do the work, each once, in the order met.
std::string appNames(const Findings& findings) {
  std::vector<std::string> names;
  std::unordered_set<std::string_view> seen;
  for (const auto* finding : findings) {
    const auto& app = finding->action.app;
    if (app && seen.insert(*app).second) names.push_back(*app);
  }
  return joined(names, ", ");
}

/// Makes the routes of one plan: all start from the same free space and aim at the same goal.
class RouteMaker {
 public:
  RouteMaker(ByteCount base, ByteCount goal) : base_(base), goal_(goal) {}

  [[nodiscard]] bool isReached(ByteCount bytes) const {
    return addBytes(base_, bytes, "the free space after a route") >= goal_;
  }

  [[nodiscard]] Route route(std::string id, std::string title, const Findings& findings) const {
    Route route;
    route.id = std::move(id);
    route.title = std::move(title);
    for (const auto* finding : findings) route.findingIDs.push_back(finding->id);
    route.bytes = sum(findings);
    route.freeAfter = addBytes(base_, route.bytes, "the free space after a route");
    route.reachesGoal = isReached(route.bytes);
    return route;
  }

 private:
  ByteCount base_;
  ByteCount goal_;
};

std::vector<Route> ladder(const Classes& classes, const RouteMaker& maker) {
  struct Rung {
    const char* id;
    std::string title;
    const Findings& findings;
  };
  const Rung rungs[] = {
      {"safe", "Only what rebuilds itself", classes.safe},
      {"can-come-back", "Plus what can be downloaded again", classes.reinstallable},
      {"with-moves", "Plus moving your own files to a drive", classes.moves},
      {"with-apps",
       fmt::format("Plus what other apps can move to a drive ({})", appNames(classes.apps)),
       classes.apps},
      {"with-copies", "Plus removing your copies that already exist on a drive", classes.copies},
  };
  std::vector<Route> routes;
  Findings upToHere;
  for (const auto& rung : rungs) {
    upToHere.insert(upToHere.end(), rung.findings.begin(), rung.findings.end());
    if (routes.empty() || !rung.findings.empty()) {
      routes.push_back(maker.route(rung.id, rung.title, upToHere));
    }
  }
  return routes;
}

Findings largestFirst(Findings findings) {
  std::stable_sort(findings.begin(), findings.end(),
                   [](const Finding* a, const Finding* b) { return a->bytes > b->bytes; });
  return findings;
}

/// Greedy, and risk before size: a small thing that rebuilds itself goes before a huge download.
std::optional<Route> fewestSteps(const Classes& classes, const RouteMaker& maker) {
  Findings queue = largestFirst(classes.safe);
  const Findings later = largestFirst(classes.reinstallable);
  queue.insert(queue.end(), later.begin(), later.end());

  Findings taken;
  ByteCount bytes = 0;
  for (const auto* finding : queue) {
    if (maker.isReached(bytes)) break;
    taken.push_back(finding);
    bytes = addBytes(bytes, finding->bytes, "a route");
  }
  if (!maker.isReached(bytes)) return std::nullopt;
  return maker.route("fewest", "Fewest steps to the goal", taken);
}

std::vector<std::string> notesOn(const Classes& classes) {
  std::vector<std::string> notes;
  if (!classes.prune.empty()) {
    notes.push_back(fmt::format("Up to {} more is yours to prune inside other apps ({}).",
                                byteText(sum(classes.prune)), appNames(classes.prune)));
  }
  if (!classes.blocked.empty()) {
    notes.push_back(byteText(sum(classes.blocked)) + " waits for open apps to be quit.");
  }
  return notes;
}

const DriveInfo* chooseDrive(const ScanReport& report, std::optional<std::string_view> wanted) {
  if (wanted) {
    for (const auto& drive : report.drives) {
      if (drive.path == *wanted || drive.name == *wanted) return &drive;
    }
  }
  return report.startup();
}

}  // namespace

std::optional<Plan> Planner::plan(const ScanReport& report, const Goal& goal,
                                  std::optional<std::string_view> drive) {
  const auto* chosen = chooseDrive(report, drive);
  if (chosen == nullptr) return std::nullopt;

  Plan plan;
  plan.drive = *chosen;
  plan.goal = goal.description();
  plan.goalBytes = goal.bytesOf(chosen->totalBytes);
  plan.freeNow = chosen->freeBytes;
  plan.trashBytes = chosen->isStartup ? report.trashBytes : 0;

  const ByteCount base = addBytes(plan.freeNow, plan.trashBytes, "free space and Trash");
  const RouteMaker maker(base, plan.goalBytes);
  const Classes classes = classesOf(report, *chosen);
  plan.routes = ladder(classes, maker);
  plan.fewest = fewestSteps(classes, maker);
  plan.notes = notesOn(classes);
  return plan;
}

}  // namespace volbrin
