#include "Explain.hpp"

#include <fmt/format.h>

#include <algorithm>
#include <array>

#include "CatalogPaths.hpp"
#include "Files.hpp"
#include "OwnerResolver.hpp"
#include "PathGuard.hpp"
#include "Paths.hpp"
#include "PrivacyFence.hpp"
#include "Surroundings.hpp"
#include "Text.hpp"

namespace volbrin {
namespace {

using Kind = OwnerResolver::Kind;
using Form = OwnerResolver::Verdict::Form;

constexpr std::size_t mostChildren = 12;

std::optional<std::string> driveHolding(const std::string& path,
                                        const std::vector<DriveInfo>& drives) {
  const auto* drive = deepestDrive(drives, path);
  return drive == nullptr ? std::nullopt : std::optional(drive->name);
}

std::optional<std::string> placeHolding(const std::string& path, const Mac& mac,
                                        const Catalog& catalog) {
  for (const auto& place : catalog.places) {
    for (const auto& pattern : place.paths) {
      for (const auto& found : expand(pattern, mac)) {
        if (isAtOrInside(path, found)) return fmt::format("{} [{}]", place.title, place.id);
      }
    }
  }
  return std::nullopt;
}

/// A folder of a place where folders have owners, and how its name is to be read.
struct OwnedFolder {
  std::string name;
  Kind kind;
};

std::optional<OwnedFolder> ownedFolder(const std::string& path, const Mac& mac) {
  constexpr std::array<std::pair<const char*, Kind>, 4> places = {
      {{"~/Library/Containers", Kind::container},
       {"~/Library/Group Containers", Kind::groupContainer},
       {"~/Library/Application Support", Kind::supportFolder},
       {"~/Library/Caches", Kind::supportFolder}}};
  for (const auto& [written, kind] : places) {
    const std::string place = mac.path(written);
    if (!isInside(path, place)) continue;
    auto name = path.substr(place.size() + 1);
    name.resize(std::min(name.size(), name.find('/')));
    return name.empty() ? std::nullopt : std::optional(OwnedFolder{std::move(name), kind});
  }
  return std::nullopt;
}

std::optional<std::string> ownerOf(const std::string& path, const Mac& mac,
                                   const Catalog& catalog) {
  const auto folder = ownedFolder(path, mac);
  if (!folder) return std::nullopt;
  const auto around = Surroundings::of(mac);
  const OwnerResolver owners(around.apps, catalog, around.games(), mac);
  const auto verdict = owners.resolve(folder->name, folder->kind);
  switch (verdict.form) {
    case Form::installed:
      return "installed: " + verdict.name.value_or("");
    case Form::removed:
      return "uninstalled: " + (verdict.name ? *verdict.name : displayName(folder->name));
    case Form::system:
      return "macOS";
    case Form::unknown:
      break;
  }
  return "unknown";
}

std::vector<Explanation::Child> biggestChildren(const std::string& path, const Mac& mac,
                                                MeasureObserver* observer) {
  if (!isDirectory(path)) return {};
  std::vector<std::string> paths;
  for (const auto& name : listNames(path)) {
    auto child = below(path, name);
    if (!mac.cloudFolderOf(child)) paths.push_back(std::move(child));
  }
  std::sort(paths.begin(), paths.end());
  const auto usages = mac.usageOf(paths, observer);
  std::vector<Explanation::Child> biggest;
  for (const auto& child : paths) {
    biggest.push_back({std::string(lastComponent(child)), usages.at(child).bytes});
  }
  std::stable_sort(biggest.begin(), biggest.end(),
                   [](const auto& a, const auto& b) { return a.bytes > b.bytes; });
  if (biggest.size() > mostChildren) biggest.resize(mostChildren);
  return biggest;
}

std::vector<std::string> cloudFoldersIn(const std::string& path, const Mac& mac) {
  std::vector<std::string> shown;
  for (const auto& folder : mac.cloud()) {
    if (isInside(folder.path, path) && exists(folder.path)) {
      shown.push_back(mac.display(folder.path));
    }
  }
  return shown;
}

}  // namespace

Explanation Explainer::explain(const std::string& path, const Mac& mac, const Catalog& catalog,
                               MeasureObserver* observer) {
  Explanation found;
  found.path = path;
  found.drive = driveHolding(path, mac.drives());
  found.throughLink = PathGuard::throughLink(path);
  if (mac.cloudFolderOf(path)) {
    found.notLookedInto = {mac.display(path)};
    return found;
  }
  const auto usage = mac.usage(path, observer);
  found.bytes = usage.bytes;
  found.unreadable = usage.unreadable;
  const PathGuard guard(catalog, mac, {});
  found.neverTouch = guard.protection(path, PathGuard::Contents::leaveOut);
  found.holdsNeverTouch = guard.protectedInside(path);
  found.knownAs = placeHolding(path, mac, catalog);
  found.owner = ownerOf(path, mac, catalog);
  found.biggest = biggestChildren(path, mac, observer);
  found.notLookedInto = cloudFoldersIn(path, mac);
  return found;
}

}  // namespace volbrin
