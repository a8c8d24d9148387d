#include "Cleaner.hpp"

#include <algorithm>
#include <exception>

#include "../Scanner.hpp"
#include "Actions.hpp"
#include "History.hpp"
#include "Ladder.hpp"

namespace volbrin {
namespace {

/// The finding's own action, which nothing keeps from being done.
Outcome act(const Finding& finding, const ActScene& scene) {
  switch (finding.action.kind) {
    case Action::Kind::remove:
      return scene.options.permanentCaches ? removeForGood(finding, scene)
                                           : moveToTrash(finding, scene);
    case Action::Kind::trash:
      return moveToTrash(finding, scene);
    case Action::Kind::command:
      return runCommand(finding, scene);
    case Action::Kind::move:
      return moveToDrive(finding, scene);
    case Action::Kind::handOff:
    case Action::Kind::review:
      break;
  }
  return refused("Not something Volbrin does.");
}

Outcome judgeAndAct(const Finding& finding, const ActScene& scene) {
  if (scene.isStopped()) return refused(std::string(stoppedBefore));
  if (auto why = refusalBeforeDetour(finding)) return refused(std::move(*why));
  switch (detourOf(finding, scene.options)) {
    case Detour::removeCopy:
      return removeCopy(finding, scene);
    case Detour::moveWithLinks:
      return moveWithLinks(finding, scene);
    case Detour::none:
      break;
  }
  if (auto why = refusal(finding, scene)) return refused(std::move(*why));
  return act(finding, scene);
}

CleanResult treat(const Finding& finding, const ActScene& scene) {
  if (scene.options.observer != nullptr) scene.options.observer->beginning(finding);
  Outcome outcome;
  try {
    outcome = judgeAndAct(finding, scene);
  } catch (const std::exception& error) {
    // Whatever moves something answers by itself; this came before anything was tried.
    outcome = failed(wordsOf(error));
  }
  return {finding.id,     finding.title,
          outcome.status, std::move(outcome.detail),
          finding.bytes,  std::move(outcome.relocated)};
}

/// A failure that already moved things stays undoable.
bool isRecorded(const CleanResult& result) {
  return result.status == CleanResult::Status::done ||
         (result.status == CleanResult::Status::failed && !result.relocated.empty());
}

CleanResult notFound(const std::string& id) {
  return {
      id, id, CleanResult::Status::refused, "A fresh scan doesn't find this any more; scan again.",
      0,  {}};
}

}  // namespace

std::vector<CleanResult> Cleaner::clean(const std::vector<std::string>& ids, const Mac& mac,
                                        const Catalog& catalog, const CleanOptions& options) {
  const auto report = Scanner::scan(mac, catalog, options.scan);
  const PathGuard guard(catalog, mac, options.scan.extraProtected);
  const ActScene scene{mac, report, guard, options};
  std::vector<CleanResult> results;
  for (const auto& id : ids) {
    const auto finding = std::find_if(report.findings.begin(), report.findings.end(),
                                      [&](const Finding& each) { return each.id == id; });
    if (finding == report.findings.end()) {
      results.push_back(notFound(id));
      continue;
    }
    results.push_back(treat(*finding, scene));
    const auto& result = results.back();
    if (isRecorded(result)) {
      History::append({presentDate(), result.id, result.title, finding->action.kind, result.bytes,
                       result.relocated, std::nullopt},
                      mac);
    }
  }
  return results;
}

}  // namespace volbrin
