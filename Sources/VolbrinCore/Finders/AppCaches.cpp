#include "AppCaches.hpp"

#include <fmt/format.h>

#include <algorithm>

#include "../Text.hpp"
#include "Shared.hpp"

namespace volbrin {
namespace {

std::vector<std::string> candidates(const ScanContext& context) {
  std::vector<std::string> found;
  for (auto& path : children(context.mac.path("~/Library/Caches"))) {
    if (!isPlainFolder(path) || context.isClaimed(path)) continue;
    if (!context.owners.isSystem(lastComponent(path))) found.push_back(std::move(path));
  }
  return found;
}

/// Whether a running app is the cache's own app or the one that it is a part of.
bool isHeldByIdentifier(const std::string& name, const ScanContext& context) {
  const std::string lower = lowercased(name);
  return std::any_of(context.running.begin(), context.running.end(), [&](const auto& running) {
    return lower.starts_with(lowercased(running) + ".");
  });
}

/// The name of the open app that the cache folder belongs to; absent when it isn't open.
std::optional<std::string> openOwner(const std::string& name, const ScanContext& context) {
  const auto* app =
      looksLikeBundleID(name) ? context.apps.appByBundleID(name) : context.apps.appNamed(name);
  std::vector<std::string> identifiers = {name};
  if (app != nullptr && app->bundleID) identifiers.push_back(*app->bundleID);
  if (!context.openApp(identifiers) && !isHeldByIdentifier(name, context)) return std::nullopt;
  return app != nullptr ? app->name : name;
}

std::string titleFor(std::size_t count) {
  return count == 1 ? "Cache of an app that isn't open"
                    : fmt::format("Caches of {} apps that aren't open", count);
}

}  // namespace

FinderResult AppCachesFinder::find(const ScanContext& context) const {
  const auto folders = candidates(context);
  const auto usages = context.survey.usageOf(folders);
  const auto& thresholds = context.catalog.thresholds;

  ByteCount total = 0;
  std::vector<std::string> kept;
  std::vector<std::string> openApps;
  for (const auto& path : folders) {
    const ByteCount bytes = usages.at(path).bytes;
    if (bytes < limitOr(thresholds.appCacheEach, context)) continue;
    if (auto app = openOwner(std::string(lastComponent(path)), context)) {
      openApps.push_back(std::move(*app));
    } else {
      kept.push_back(path);
      total = addBytes(total, bytes, "the bytes of the app caches");
    }
  }

  FinderResult result;
  if (!openApps.empty()) {
    std::sort(openApps.begin(), openApps.end());
    result.notes.push_back(
        fmt::format("Left the caches of open apps alone: {}.", joined(openApps, ", ")));
  }
  if (total < limitOr(thresholds.appCaches, context)) return result;

  Finding finding;
  finding.id = "app-caches";
  finding.finder = "app-caches";
  finding.title = titleFor(kept.size());
  finding.reason =
      "Files apps keep so they start faster; each app makes them again when it needs them.";
  finding.getBack = "Rebuilds itself: the apps recreate what they need.";
  finding.tier = Tier::rebuilds;
  finding.bytes = total;
  finding.paths = std::move(kept);
  finding.action = actions::remove;
  result.findings.push_back(std::move(finding));
  return result;
}

}  // namespace volbrin
