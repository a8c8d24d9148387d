#include <unistd.h>

#include <algorithm>
#include <iostream>
#include <set>
#include <string>

#include "ActText.hpp"
#include "ActionProgress.hpp"
#include "Commands.hpp"

namespace volbrin::cli {
namespace {

/// What came of a list of ids.
struct Results {
  std::vector<CleanResult> list;
  std::set<std::string> unrecorded;  ///< ids that an undo won't find
};
using Status = CleanResult::Status;

/// How a command that changes the disk goes about it.
enum class Manner { dryRun, ask, act };

Manner mannerOf(const Session& session) {
  if (session.arguments().has("--dry-run")) return Manner::dryRun;
  if (session.arguments().has("--yes")) return Manner::act;
  if (::isatty(STDIN_FILENO) != 0) return Manner::ask;
  throw UsageError(
      "there is nobody to ask: add --yes to go ahead, or --dry-run to see what would happen");
}

/// The user's answer; anything but a yes is a no.
bool isAgreed() {
  std::fputs("Go ahead? [y/N] ", stderr);
  std::string answer;
  if (!std::getline(std::cin, answer)) std::fputs("\n", stderr);
  return answer == "y" || answer == "Y" || answer == "yes";
}

CleanOptions cleanOptions(Session& session) {
  const auto& arguments = session.arguments();
  CleanOptions options;
  options.scan = session.scanOptions(Session::Missing::refuse);
  options.includeCautioned = arguments.has("--agree");
  options.permanentCaches = arguments.has("--permanent-caches");
  options.linkMove = arguments.has("--link-move");
  if (arguments.has("--move-to")) {
    options.moveTo = session.drive("--move-to", session.mac().drives());
  }
  return options;
}

ActionProgress::Display displayFor(Session& session) {
  return session.progress() != nullptr ? ActionProgress::Display::shown
                                       : ActionProgress::Display::hidden;
}

CleanResult runUndo(Session& session, const std::string& id) {
  ActionProgress progress(displayFor(session));
  session.endProgress();
  progress.begin(id);
  return Cleaner::undo(id, session.mac(), false, &progress);
}

Results runClean(Session& session, const std::vector<std::string>& ids, CleanOptions options,
                 bool dryRun) {
  options.dryRun = dryRun;
  options.scan.observer = session.progress();
  ActionProgress progress(displayFor(session));
  if (!dryRun) options.observer = &progress;
  auto list = Cleaner::clean(ids, session.mac(), session.catalog(), options);
  session.endProgress();
  return {std::move(list), progress.unrecordedIDs()};
}

std::string textOf(const Results& results, const Mac& mac) {
  std::string text;
  for (const auto& result : results.list) {
    text += resultText(result);
    if (!results.unrecorded.contains(result.id)) text += undoHint(result, mac);
  }
  return text;
}

/// Shows what would happen, in JSON mode beside the result, and asks.
bool isAgreedAfter(Session& session, const std::string& plan) {
  if (session.wantsJson()) {
    std::fputs(printable(plan).c_str(), stderr);
  } else {
    session.output().text(plan);
  }
  return isAgreed();
}

bool isGood(const CleanResult& result) {
  return result.status == Status::done || result.status == Status::wouldDo;
}

/// Acts on those of the planned results that would go through, in their places in the list.
Results carryOut(Session& session, Results results, const CleanOptions& options) {
  std::vector<std::string> ids;
  for (const auto& result : results.list) {
    if (result.status == Status::wouldDo) ids.push_back(result.id);
  }
  auto outcomes = runClean(session, ids, options, false);
  auto next = outcomes.list.begin();
  for (auto& result : results.list) {
    if (result.status == Status::wouldDo) result = std::move(*next++);
  }
  results.unrecorded = std::move(outcomes.unrecorded);
  return results;
}

}  // namespace

ExitStatus clean(Session& session) {
  const auto manner = mannerOf(session);
  const auto options = cleanOptions(session);
  auto results =
      runClean(session, session.arguments().values("ID"), options, manner != Manner::act);
  const auto& list = results.list;
  const bool isAnyPlanned = std::any_of(list.begin(), list.end(), [](const auto& result) {
    return result.status == Status::wouldDo;
  });
  bool isShown = false;
  if (manner == Manner::ask && isAnyPlanned) {
    if (isAgreedAfter(session, textOf(results, session.mac()))) {
      results = carryOut(session, std::move(results), options);
    } else {
      isShown = true;
    }
  }
  if (session.wantsJson()) {
    session.output().json(toJson(list));
  } else if (!isShown) {
    session.output().text(textOf(results, session.mac()));
  }
  return std::all_of(list.begin(), list.end(), isGood) ? ExitStatus::done : ExitStatus::problem;
}

ExitStatus undo(Session& session) {
  const auto manner = mannerOf(session);
  const auto id = *session.arguments().value("ID");
  auto result =
      manner == Manner::act ? runUndo(session, id) : Cleaner::undo(id, session.mac(), true);
  bool isShown = false;
  if (manner == Manner::ask && result.status == Status::wouldDo) {
    if (isAgreedAfter(session, resultText(result))) {
      result = runUndo(session, id);
    } else {
      isShown = true;
    }
  }
  if (session.wantsJson()) {
    session.output().json(toJson(result));
  } else if (!isShown) {
    session.output().text(resultText(result));
  }
  return isGood(result) ? ExitStatus::done : ExitStatus::problem;
}

ExitStatus history(Session& session) {
  const auto entries = History::load(session.mac());
  if (session.wantsJson()) {
    session.output().json(toJson(entries));
  } else {
    session.output().text(historyText(entries, session.mac()));
  }
  return ExitStatus::done;
}

}  // namespace volbrin::cli
