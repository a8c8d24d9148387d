#include "ActFlow.hpp"

#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <iostream>

#include "ActText.hpp"

namespace volbrin::cli {
namespace {

using Status = CleanResult::Status;

/// The user's answer; anything but a yes is a no.
bool isAgreed() {
  std::fputs("Go ahead? [y/N] ", stderr);
  std::string answer;
  if (!std::getline(std::cin, answer)) std::fputs("\n", stderr);
  return answer == "y" || answer == "Y" || answer == "yes";
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

bool isPlanned(const CleanResult& result) { return result.status == Status::wouldDo; }

std::string textOf(const Acted& acted, const Mac& mac) {
  std::string text;
  for (const auto& result : acted.list) {
    text += resultText(result);
    if (!acted.unrecorded.contains(result.id)) text += undoHint(result, mac);
  }
  return text;
}

/// Acts on those of the planned results that would go through, in their places in the list.
void carryOut(Acted& planned, const ActOnIds& run) {
  std::vector<std::string> ids;
  for (const auto& result : planned.list) {
    if (isPlanned(result)) ids.push_back(result.id);
  }
  auto acted = run(ids, false);
  auto next = acted.list.begin();
  for (auto& result : planned.list) {
    if (isPlanned(result)) result = std::move(*next++);
  }
  planned.unrecorded = std::move(acted.unrecorded);
}

}  // namespace

Manner mannerOf(const Session& session) {
  if (session.arguments().has("--dry-run")) return Manner::dryRun;
  if (session.arguments().has("--yes")) return Manner::act;
  if (::isatty(STDIN_FILENO) != 0) return Manner::ask;
  throw UsageError(
      "there is nobody to ask: add --yes to go ahead, or --dry-run to see what would happen");
}

ExitStatus actOnIds(Session& session, Manner manner, const ActOnIds& run) {
  auto acted = run(session.arguments().values("ID"), manner != Manner::act);
  auto& list = acted.list;
  bool isShown = false;
  if (manner == Manner::ask && std::any_of(list.begin(), list.end(), isPlanned)) {
    if (isAgreedAfter(session, textOf(acted, session.mac()))) {
      carryOut(acted, run);
    } else {
      isShown = true;
    }
  }
  if (session.wantsJson()) {
    session.output().json(toJson(list));
  } else if (!isShown) {
    session.output().text(textOf(acted, session.mac()));
  }
  return std::all_of(list.begin(), list.end(), isGood) ? ExitStatus::done : ExitStatus::problem;
}

ExitStatus actOnce(Session& session, Manner manner, const ActOnce& run) {
  auto result = run(manner != Manner::act);
  bool isShown = false;
  if (manner == Manner::ask && isPlanned(result)) {
    if (isAgreedAfter(session, resultText(result))) {
      result = run(false);
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

ActionProgress::Display displayFor(Session& session) {
  return session.progress() != nullptr ? ActionProgress::Display::shown
                                       : ActionProgress::Display::hidden;
}

}  // namespace volbrin::cli
