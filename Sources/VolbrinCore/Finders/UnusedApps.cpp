#include "UnusedApps.hpp"

#include <fmt/format.h>

#include "../DateText.hpp"
#include "../Text.hpp"
#include "Shared.hpp"

namespace volbrin {
namespace {

bool isUnused(const InstalledApp& app, Date cutoff, const ScanContext& context) {
  const bool isInAppFolder = isInside(app.path, context.mac.path("/Applications")) ||
                             isInside(app.path, context.mac.path("~/Applications"));
  if (!app.onStartupDisk || !isInAppFolder) return false;
  if (!app.lastUsed || *app.lastUsed >= cutoff) return false;
  if (app.bundleID) {
    // Apple's own come with the system, but for those from the store.
    if (!app.fromAppStore && lowercased(*app.bundleID).starts_with("com.apple.")) return false;
    if (context.running.contains(*app.bundleID)) return false;
  }
  return !context.apps.isPluginHost(app, context.catalog.pluginVendors);
}

}  // namespace

FinderResult UnusedAppsFinder::find(const ScanContext& context) const {
  const auto& thresholds = context.catalog.thresholds;
  const Date cutoff = context.options.now - std::chrono::days(thresholds.unusedAppDays);
  std::vector<const InstalledApp*> unused;
  std::vector<std::string> paths;
  for (const auto& app : context.apps.apps()) {
    if (!isUnused(app, cutoff, context)) continue;
    unused.push_back(&app);
    paths.push_back(app.path);
  }
  const auto usages = context.survey.usageOf(paths);

  FinderResult result;
  for (const auto* app : unused) {
    const ByteCount bytes = usages.at(app->path).bytes;
    if (bytes < limitOr(thresholds.unusedAppBytes, context)) continue;
    Finding finding;
    finding.id = "unused-app-" + normalized(app->name);
    finding.finder = "unused-apps";
    finding.title = app->name;
    finding.reason =
        fmt::format("You last opened {} in {}.", app->name, dateText(*app->lastUsed, "MMMM yyyy"));
    finding.getBack = app->fromAppStore ? "Download it again from the App Store."
                                        : "Download it again from its maker.";
    finding.tier = Tier::reinstallable;
    finding.bytes = bytes;
    finding.paths = {app->path};
    finding.owner = app->name;
    finding.action = actions::trash;
    finding.caution =
        "Its settings stay behind until you remove them too; they show up as leftovers once the "
        "app is gone.";
    result.findings.push_back(std::move(finding));
  }
  return result;
}

}  // namespace volbrin
