#include <unistd.h>

#include <algorithm>
#include <iostream>
#include <string>

#include "ActText.hpp"
#include "ActionProgress.hpp"
#include "Commands.hpp"

namespace volbrin::cli {
namespace {

using Results = std::vector<CleanResult>;
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
  options.scan = session.scanOptions();
  options.includeCautioned = arguments.has("--agree");
  options.permanentCaches = arguments.has("--permanent-caches");
  options.linkMove = arguments.has("--link-move");
  if (arguments.has("--move-to")) {
    options.moveTo = session.drive("--move-to", session.mac().drives());
  }
  return options;
}

Results runClean(Session& session, const std::vector<std::string>& ids, CleanOptions options,
                 bool dryRun) {
  options.dryRun = dryRun;
  options.scan.observer = session.progress();
  using Display = ActionProgress::Display;
  ActionProgress progress(session.progress() != nullptr ? Display::shown : Display::hidden);
  if (!dryRun) options.observer = &progress;
  auto results = Cleaner::clean(ids, session.mac(), session.catalog(), options);
  session.endProgress();
  return results;
}

std::string textOf(const Results& results, const Mac& mac) {
  std::string text;
  for (const auto& result : results) text += resultText(result, mac);
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
  for (const auto& result : results) {
    if (result.status == Status::wouldDo) ids.push_back(result.id);
  }
  auto outcomes = runClean(session, ids, options, false);
  auto next = outcomes.begin();
  for (auto& result : results) {
    if (result.status == Status::wouldDo) result = std::move(*next++);
  }
  return results;
}

}  // namespace

ExitStatus clean(Session& session) {
  const auto manner = mannerOf(session);
  const auto options = cleanOptions(session);
  auto results =
      runClean(session, session.arguments().values("ID"), options, manner != Manner::act);
  const bool isAnyPlanned = std::any_of(results.begin(), results.end(), [](const auto& result) {
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
    session.output().json(toJson(results));
  } else if (!isShown) {
    session.output().text(textOf(results, session.mac()));
  }
  return std::all_of(results.begin(), results.end(), isGood) ? ExitStatus::done
                                                             : ExitStatus::problem;
}

ExitStatus undo(Session& session) {
  const auto manner = mannerOf(session);
  const auto id = *session.arguments().value("ID");
  auto result = Cleaner::undo(id, session.mac(), manner != Manner::act);
  bool isShown = false;
  if (manner == Manner::ask && result.status == Status::wouldDo) {
    if (isAgreedAfter(session, undoText(result))) {
      result = Cleaner::undo(id, session.mac(), false);
    } else {
      isShown = true;
    }
  }
  if (session.wantsJson()) {
    session.output().json(toJson(result));
  } else if (!isShown) {
    session.output().text(undoText(result));
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
