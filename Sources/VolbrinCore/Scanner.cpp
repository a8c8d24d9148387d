#include "Scanner.hpp"

#include <algorithm>

#include "CatalogPaths.hpp"
#include "Files.hpp"
#include "Finders/Places.hpp"
#include "Paths.hpp"
#include "PrivacyFence.hpp"
#include "ScanGate.hpp"
#include "Surroundings.hpp"

namespace volbrin {
namespace {

PathSet claimedPaths(const Catalog& catalog, const Mac& mac) {
  PathSet claimed;
  for (const auto& place : catalog.places) {
    for (const auto& pattern : place.paths) {
      for (auto& path : expand(pattern, mac)) claimed.insert(std::move(path));
    }
  }
  return claimed;
}

PathGuard guardFor(const Catalog& catalog, const Mac& mac, const ScanOptions& options) {
  std::vector<PathGuard::Rule> extra;
  for (const auto& added : options.extraProtected) {
    extra.push_back({withoutRepeatedSlashes(mac.path(added.path)), added.why});
  }
  return {catalog, mac, extra};
}

void runFinders(const ScanContext& context, ScanGate& gate, ScanReport& report) {
  for (const auto& [name, finder] : Scanner::finders()) {
    if (context.options.observer != nullptr) context.options.observer->finderBegins(name);
    auto result = finder->find(context);
    std::move(result.skipped.begin(), result.skipped.end(), std::back_inserter(report.skipped));
    std::move(result.notes.begin(), result.notes.end(), std::back_inserter(report.notes));
    for (auto& finding : result.findings) gate.pass(std::move(finding), report);
  }
}

void sortFindings(std::vector<Finding>& findings) {
  std::stable_sort(findings.begin(), findings.end(), [](const Finding& a, const Finding& b) {
    if (a.tier != b.tier) return order(a.tier) < order(b.tier);
    return a.bytes > b.bytes;
  });
}

}  // namespace

const std::vector<Scanner::NamedFinder>& Scanner::finders() {
  static const auto list = [] {
    std::vector<NamedFinder> finders;
    finders.push_back({"places", std::make_unique<PlacesFinder>()});
    return finders;
  }();
  return list;
}

ScanReport Scanner::scan(const Mac& mac, const Catalog& catalog, const ScanOptions& options) {
  const auto fenced = options.avoidPrivacyPrompts ? PrivacyFence::guardedRoots(mac.home())
                                                  : std::vector<std::string>();
  const FenceGuard fence(fenced);

  const auto around = Surroundings::of(mac);
  const OwnerResolver owners(around.apps, catalog, around.games(), mac);
  auto claimed = claimedPaths(catalog, mac);
  const ScanContext context{mac,
                            catalog,
                            around.drives,
                            around.apps,
                            owners,
                            around.steam,
                            mac.runningBundleIDs(),
                            options,
                            std::move(claimed)};

  ScanReport report;
  report.scannedAt = options.now;
  report.drives = context.drives;
  report.trashBytes = mac.trashBytes();
  ScanGate gate(context, guardFor(catalog, mac, options));
  runFinders(context, gate, report);
  sortFindings(report.findings);

  for (const auto& folder : fenced) {
    if (!isDirectory(folder)) continue;
    report.skipped.push_back({folder,
                              "macOS asks before any app looks inside; give Osmerly Full Disk "
                              "Access to include it"});
  }
  return report;
}

}  // namespace volbrin
