#include "Dispatch.hpp"

#include <exception>

#include "Actions.hpp"
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

}  // namespace

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

}  // namespace volbrin
