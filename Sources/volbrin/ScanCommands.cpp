#include <algorithm>

#include "Commands.hpp"
#include "Planner.hpp"
#include "Report.hpp"
#include "Scanner.hpp"

namespace volbrin::cli {
namespace {

ScanReport runScan(Session& session) {
  // The command line first: a wrong one is told before a machine or rules are looked at.
  const auto options = session.scanOptions();
  auto report = Scanner::scan(session.mac(), session.catalog(), options);
  session.endProgress();
  return report;
}

void keepOnOneLine(std::string& text) { std::replace(text.begin(), text.end(), '\n', '?'); }

/// The report with every text on one line: a file's name with a line end in it must not look like a
/// line of the report.
ScanReport forShowing(ScanReport report) {
  for (auto& drive : report.drives) keepOnOneLine(drive.name);
  for (auto& finding : report.findings) {
    for (auto* text : {&finding.id, &finding.title, &finding.reason, &finding.getBack}) {
      keepOnOneLine(*text);
    }
    for (auto* text : {&finding.caution, &finding.blockedBy, &finding.action.steps}) {
      if (*text) keepOnOneLine(**text);
    }
  }
  for (auto& skipped : report.skipped) keepOnOneLine(skipped.path);
  for (auto& note : report.notes) keepOnOneLine(note);
  return report;
}

}  // namespace

ExitStatus status(Session& session) {
  const auto report = statusOf(session.mac());
  if (session.wantsJson()) {
    session.output().json(toJson(report));
  } else {
    session.output().text(Report::drives(report, std::nullopt) + "\n");
  }
  return ExitStatus::done;
}

ExitStatus scan(Session& session) {
  const auto goal = session.goal();
  const auto report = runScan(session);
  if (session.wantsJson()) {
    session.output().json(toJson(report));
  } else {
    session.output().text(Report::text(forShowing(report), session.mac(), goal));
  }
  return ExitStatus::done;
}

ExitStatus plan(Session& session) {
  const auto goal = session.goal().value_or(Goal::ofBytes(50'000'000'000));
  const auto report = runScan(session);
  const auto drive = session.drive("--drive", report.drives);
  const auto plan = Planner::plan(report, goal, drive);
  if (session.wantsJson()) {
    session.output().json(plan ? toJson(*plan) : Json(nullptr));
  } else if (plan) {
    session.output().text(Report::text(*plan, forShowing(report)));
  } else {
    printError("there is no such drive, and no startup drive to plan for instead");
  }
  return plan ? ExitStatus::done : ExitStatus::problem;
}

}  // namespace volbrin::cli
