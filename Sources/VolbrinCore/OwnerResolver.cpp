#include "OwnerResolver.hpp"

#include <algorithm>

#include "Files.hpp"
#include "Parallel.hpp"
#include "Text.hpp"

namespace volbrin {
namespace {

using Verdict = OwnerResolver::Verdict;
using Form = OwnerResolver::Verdict::Form;

Verdict installed(std::string_view name) { return {Form::installed, std::string(name)}; }

/// Apple's team identifiers: ten upper-case letters or digits.
bool isTeamID(std::string_view text) {
  return text.size() == 10 && std::all_of(text.begin(), text.end(), [](char c) {
           return (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9');
         });
}

/// The form of a container of an app made for iPhone or iPad: a UUID (RFC 4122) and no identifier,
/// so its name tells nothing of the owner.
bool isUuid(std::string_view text) {
  constexpr std::string_view form = "xxxxxxxx-xxxx-xxxx-xxxx-xxxxxxxxxxxx";
  return std::equal(text.begin(), text.end(), form.begin(), form.end(), [](char c, char wanted) {
    return wanted == '-'
               ? c == '-'
               : std::string_view("0123456789abcdefABCDEF").find(c) != std::string_view::npos;
  });
}

const InstalledApp* byIDOrPrefix(const AppIndex& apps, std::string_view bundleID) {
  const auto* app = apps.appByBundleID(bundleID);
  return app != nullptr ? app : apps.appByBundlePrefix(bundleID);
}

}  // namespace

bool looksLikeBundleID(std::string_view name) {
  const auto parts = split(name, '.', EmptyPieces::keep);
  return parts.size() > 2 && std::all_of(parts.begin(), parts.end(), [](std::string_view part) {
           return !part.empty() && part.find(' ') == std::string_view::npos;
         });
}

OwnerResolver::OwnerResolver(const AppIndex& apps, const Catalog& catalog,
                             std::vector<SteamGame> steamGames, const Mac& mac)
    : apps_(apps), mac_(mac), steamGames_(std::move(steamGames)) {
  for (const auto& game : steamGames_) {
    steamNames_.insert(normalized(game.name));
    steamNames_.insert(normalized(game.installDir));
  }
  for (const auto& owner : catalog.owners) {
    OwnerKeys keys{&owner, {}, {}};
    for (const auto& name : owner.names) keys.names.push_back(normalized(name));
    for (const auto& bundleID : owner.bundleIDs.value_or(std::vector<std::string>())) {
      keys.bundleIDs.push_back(lowercased(bundleID));
    }
    owners_.push_back(std::move(keys));
  }
  for (const auto& name : catalog.systemNames) systemNames_.insert(lowercased(name));
  for (const auto& prefix : catalog.systemPrefixes) systemPrefixes_.push_back(lowercased(prefix));
}

Verdict OwnerResolver::resolve(std::string_view name, Kind kind) const {
  if (isSystem(name)) return {Form::system, {}};
  if (auto known = fromCatalog(name)) return *known;
  switch (kind) {
    case Kind::container:
      return isUuid(name) ? Verdict{} : bundleVerdict(name);
    case Kind::groupContainer:
      return groupVerdict(name);
    case Kind::supportFolder:
      return supportVerdict(name);
  }
  return {};
}

bool OwnerResolver::isSystem(std::string_view name) const {
  const std::string lower = lowercased(name);
  return systemNames_.contains(lower) ||
         std::any_of(systemPrefixes_.begin(), systemPrefixes_.end(),
                     [&](const auto& prefix) { return lower.starts_with(prefix); });
}

std::optional<Verdict> OwnerResolver::fromCatalog(std::string_view name) const {
  const std::string wanted = normalized(name);
  for (const auto& keys : owners_) {
    const bool isNamed =
        std::find(keys.names.begin(), keys.names.end(), wanted) != keys.names.end();
    if (isNamed) return verdictOf(*keys.owner);
  }
  const std::string lower = lowercased(name);
  for (const auto& keys : owners_) {
    for (const auto& bundleID : keys.bundleIDs) {
      if (lower == bundleID || lower.starts_with(bundleID + ".")) return verdictOf(*keys.owner);
    }
  }
  return std::nullopt;
}

Verdict OwnerResolver::verdictOf(const Catalog::Owner& owner) const {
  return {isInstalled(owner) ? Form::installed : Form::removed, owner.app};
}

Verdict OwnerResolver::groupVerdict(std::string_view name) const {
  constexpr std::string_view groupPrefix = "group.";
  if (lowercased(name).starts_with(groupPrefix)) name.remove_prefix(groupPrefix.size());
  if (isSystem(name)) return {Form::system, {}};
  if (auto verdict = teamVerdict(name)) return *verdict;
  if (const auto* app = byIDOrPrefix(apps_, name)) return installed(app->name);
  if (looksLikeBundleID(name)) return bundleVerdict(name);
  return {};
}

std::optional<Verdict> OwnerResolver::teamVerdict(std::string_view name) const {
  const auto dot = name.find('.');
  if (dot == std::string_view::npos || !isTeamID(name.substr(0, dot))) return std::nullopt;
  const auto rest = name.substr(dot + 1);
  if (const auto* app = byIDOrPrefix(apps_, rest)) return installed(app->name);
  // The maker still has an app here: the folder may be shared with it, and stays.
  if (teamIDs().contains(std::string(name.substr(0, dot)))) return installed(rest);
  return Verdict{Form::removed, std::string(rest)};
}

Verdict OwnerResolver::supportVerdict(std::string_view name) const {
  if (looksLikeBundleID(name)) return bundleVerdict(name);
  const auto* app = apps_.appNamed(name);
  if (app == nullptr) app = apps_.appFromMaker(name);
  if (app != nullptr) return installed(app->name);
  const std::string wanted = normalized(name);
  if (!steamNames_.contains(wanted)) return {};
  for (const auto& game : steamGames_) {
    if (normalized(game.name) == wanted || normalized(game.installDir) == wanted) {
      return installed(game.name);
    }
  }
  return {};
}

Verdict OwnerResolver::bundleVerdict(std::string_view bundleID) const {
  if (const auto* app = apps_.appByBundleID(bundleID)) return installed(app->name);
  if (launchServicesKnows(std::string(bundleID))) return installed(bundleID);
  return {Form::removed, {}};
}

bool OwnerResolver::isInstalled(const Catalog::Owner& owner) const {
  for (const auto& bundleID : owner.bundleIDs.value_or(std::vector<std::string>())) {
    if (apps_.appByBundleID(bundleID) != nullptr || launchServicesKnows(bundleID)) return true;
  }
  if (owner.bundlePrefix && apps_.appByBundlePrefix(*owner.bundlePrefix) != nullptr) return true;
  const bool isGame = owner.steamAppID &&
                      std::any_of(steamGames_.begin(), steamGames_.end(), [&](const auto& game) {
                        return game.appID == *owner.steamAppID;
                      });
  return isGame || std::any_of(owner.names.begin(), owner.names.end(),
                               [&](const auto& name) { return apps_.appNamed(name) != nullptr; });
}

bool OwnerResolver::launchServicesKnows(const std::string& bundleID) const {
  const auto path = mac_.platform().appPath(bundleID);
  // The database may name an app that is gone, or that lies in the Trash and counts no more.
  return path && exists(*path) && path->find("/.Trash/") == std::string::npos;
}

const std::set<std::string>& OwnerResolver::teamIDs() const {
  const std::lock_guard guard(lock_);
  if (!teams_) {
    const auto found = parallelMap(apps_.apps(), [this](const InstalledApp& app) {
      return mac_.platform().teamIdentifier(app.path);
    });
    teams_.emplace();
    for (const auto& team : found) {
      if (team) teams_->insert(*team);
    }
  }
  return *teams_;
}

}  // namespace volbrin
