#include "Scanner.hpp"

#include <algorithm>

#include "Files.hpp"
#include "Finders/AppCaches.hpp"
#include "Finders/Installers.hpp"
#include "Finders/Leftovers.hpp"
#include "Finders/Personal.hpp"
#include "Finders/Places.hpp"
#include "Finders/Simulators.hpp"
#include "Finders/SplitInstalls.hpp"
#include "Finders/StaleMounts.hpp"
#include "Finders/Steam.hpp"
#include "Finders/UnusedApps.hpp"
#include "PrivacyFence.hpp"
#include "ScanGate.hpp"
#include "ScanScene.hpp"

namespace volbrin {
namespace {

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
    finders.push_back({"steam", std::make_unique<SteamFinder>()});
    finders.push_back({"simulators", std::make_unique<SimulatorsFinder>()});
    finders.push_back({"split-installs", std::make_unique<SplitInstallsFinder>()});
    finders.push_back({"leftovers", std::make_unique<LeftoversFinder>()});
    finders.push_back({"app-caches", std::make_unique<AppCachesFinder>()});
    finders.push_back({"installers", std::make_unique<InstallersFinder>()});
    finders.push_back({"unused-apps", std::make_unique<UnusedAppsFinder>()});
    finders.push_back({"stale-mounts", std::make_unique<StaleMountsFinder>()});
    finders.push_back({"personal", std::make_unique<PersonalFinder>()});
    return finders;
  }();
  return list;
}

ScanReport Scanner::scan(const Mac& mac, const Catalog& catalog, const ScanOptions& options) {
  const auto fenced = options.avoidPrivacyPrompts ? PrivacyFence::guardedRoots(mac.home())
                                                  : std::vector<std::string>();
  const FenceGuard fence(fenced);

  const ScanScene scene(mac, catalog, options);
  const auto& context = scene.context();

  ScanReport report;
  report.scannedAt = options.now;
  report.drives = context.drives;
  report.trashBytes = mac.trashBytes();
  ScanGate gate(context, PathGuard(catalog, mac, options.extraProtected));
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
