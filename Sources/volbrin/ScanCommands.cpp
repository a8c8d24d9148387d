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
    session.output().text(Report::text(report, session.mac(), goal));
  }
  return ExitStatus::done;
}

ExitStatus plan(Session& session) {
  const auto goal = session.goal().value_or(Goal::ofBytes(50'000'000'000));
  const auto report = runScan(session);
  const auto drive = session.drive(report.drives);
  const auto plan = Planner::plan(report, goal, drive);
  if (session.wantsJson()) {
    session.output().json(plan ? toJson(*plan) : Json(nullptr));
  } else if (plan) {
    session.output().text(Report::text(*plan, report));
  } else {
    printError("there is no such drive, and no startup drive to plan for instead");
  }
  return plan ? ExitStatus::done : ExitStatus::problem;
}

}  // namespace volbrin::cli
