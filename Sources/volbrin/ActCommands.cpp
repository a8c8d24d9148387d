#include "ActFlow.hpp"
#include "ActText.hpp"
#include "Acting/History.hpp"
#include "Commands.hpp"

namespace volbrin::cli {
namespace {

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

Acted runClean(Session& session, const std::vector<std::string>& ids, CleanOptions options,
               bool dryRun) {
  options.dryRun = dryRun;
  options.scan.observer = session.progress();
  ActionProgress progress(displayFor(session));
  if (!dryRun) options.observer = &progress;
  auto list = Cleaner::clean(ids, session.mac(), session.catalog(), options);
  session.endProgress();
  return {std::move(list), progress.unrecordedIDs()};
}

CleanResult runUndo(Session& session, const std::string& id, bool dryRun) {
  if (dryRun) return Cleaner::undo(id, session.mac(), true);
  ActionProgress progress(displayFor(session));
  session.endProgress();
  progress.begin(id);
  return Cleaner::undo(id, session.mac(), false, &progress);
}

}  // namespace

ExitStatus clean(Session& session) {
  const auto manner = mannerOf(session);
  const auto options = cleanOptions(session);
  return actOnIds(session, manner, [&](const std::vector<std::string>& ids, bool dryRun) {
    return runClean(session, ids, options, dryRun);
  });
}

ExitStatus undo(Session& session) {
  const auto manner = mannerOf(session);
  const auto id = *session.arguments().value("ID");
  return actOnce(session, manner, [&](bool dryRun) { return runUndo(session, id, dryRun); });
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
