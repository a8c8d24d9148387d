#include "Places.hpp"

#include <fmt/format.h>

#include <algorithm>
#include <iterator>

#include "../CatalogPaths.hpp"

namespace volbrin {
namespace {

/// The place's paths that are there, and hold its marker if it has one.
std::vector<std::string> pathsOf(const Catalog::Place& place, const Mac& mac) {
  std::vector<std::string> found;
  for (const auto& pattern : place.paths) {
    for (auto& path : expand(pattern, mac)) {
      if (!place.marker || contains(path, *place.marker)) found.push_back(std::move(path));
    }
  }
  return found;
}

/// What can be done here: the place's action, or its other one when the tool isn't there, with a
/// word on an app that isn't there either.
Action actionFor(const Catalog::Place& place, const ScanContext& context) {
  Action action = place.action;
  if (place.tool && place.actionIfToolMissing && !context.mac.which(*place.tool)) {
    action = *place.actionIfToolMissing;
  }
  if (action.kind == Action::Kind::handOff && action.app && *action.app != "Finder" &&
      context.apps.appNamed(*action.app) == nullptr) {
    action.steps = fmt::format("{} {} isn't on this Mac yet; it's free from its maker.",
                               action.steps.value_or(""), *action.app);
  }
  return action;
}

std::optional<std::string> blockedBy(const Catalog::Place& place, const ScanContext& context) {
  auto bundleIDs = place.ownerBundleIDs.value_or(std::vector<std::string>());
  if (place.app) bundleIDs.push_back(*place.app);
  const auto open = context.openApp(bundleIDs);
  return open ? std::optional(*open + " is open. Quit it first.") : std::nullopt;
}

ByteCount limitOf(const Catalog::Place& place, const ScanContext& context) {
  if (context.options.minimumBytes) return *context.options.minimumBytes;
  return place.minBytes.value_or(context.catalog.thresholds.place);
}

void look(const Catalog::Place& place, const ScanContext& context, FinderResult& result) {
  const auto found = pathsOf(place, context.mac);
  if (found.empty()) return;
  if (context.options.observer != nullptr) context.options.observer->looksAt(place.title);

  ByteCount bytes = 0;
  bool isWhole = true;
  for (const auto& [path, usage] : context.survey.usageOf(found)) {
    bytes = addBytes(bytes, usage.bytes, "the bytes of a place");
    isWhole = isWhole && usage.unreadable == 0;
  }
  if (bytes < limitOf(place, context)) return;
  if (!isWhole) {
    result.skipped.push_back(
        {found.front(), "partly unreadable (Full Disk Access would show all of it)"});
  }

  Finding finding;
  finding.reason = place.reason;
  finding.owner = place.owner;
  if (place.app) {
    const bool isInstalled = context.apps.appByBundleID(*place.app) != nullptr;
    if (isInstalled && place.onlyIfUninstalled.value_or(false)) return;
    if (!isInstalled) {
      finding.reason = place.reasonIfUninstalled.value_or(place.reason);
      if (finding.owner) *finding.owner += " (uninstalled)";
    }
  }
  finding.id = place.id;
  finding.finder = "places";
  finding.title = place.title;
  finding.getBack = place.getBack;
  finding.tier = place.tier;
  finding.bytes = bytes;
  finding.paths = found;
  finding.action = actionFor(place, context);
  finding.caution = place.caution;
  finding.blockedBy = blockedBy(place, context);
  result.findings.push_back(std::move(finding));
}

}  // namespace

FinderResult PlacesFinder::find(const ScanContext& context) const {
  FinderResult result;
  for (const auto& place : context.catalog.places) look(place, context, result);
  return result;
}

}  // namespace volbrin
