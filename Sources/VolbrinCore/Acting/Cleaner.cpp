#include "Cleaner.hpp"

#include <algorithm>

#include "../Scanner.hpp"
#include "Dispatch.hpp"
#include "History.hpp"

namespace volbrin {
namespace {

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
    if (!isRecorded(result)) continue;
    const bool isWritten =
        History::append({presentDate(), result.id, result.title, finding->action.kind, result.bytes,
                         result.relocated, std::nullopt},
                        mac);
    if (!isWritten && options.observer != nullptr) options.observer->unrecorded(result);
  }
  return results;
}

}  // namespace volbrin
