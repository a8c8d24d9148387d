#include "Inventory.hpp"

#include <algorithm>
#include <array>

#include "Text.hpp"

namespace volbrin {
namespace {

/// Shorter names are equal to too many things by chance.
constexpr std::size_t shortestExactName = 3;
constexpr std::size_t shortestPrefix = 4;

/// Words that name no product when they stand last in a bundle identifier.
constexpr std::array<std::string_view, 14> genericBundleWords = {
    "steam",    "app",    "mac",  "macos", "osx",    "client", "desktop",
    "launcher", "helper", "main", "game",  "player", "full",   "release"};

bool beginAlike(std::string_view a, std::string_view b) {
  return a.starts_with(b) || b.starts_with(a);
}

}  // namespace

AppIndex::AppIndex(std::vector<InstalledApp> apps, std::set<std::string> pluginNames)
    : apps_(std::move(apps)), pluginNames_(std::move(pluginNames)) {
  for (const auto& app : apps_) {
    Keys keys;
    keys.name = normalized(app.name);
    keys.nameLength = characterCount(keys.name);
    if (app.bundleID) keys.bundleID = lowercased(*app.bundleID);
    const auto parts = split(keys.bundleID, '.');
    if (parts.size() >= 3) {
      for (std::size_t i = 0; i + 1 < parts.size(); ++i) {
        keys.makerParts.push_back(normalized(parts[i]));
      }
    }
    const std::size_t position = keys_.size();
    if (app.bundleID) byID_.emplace(keys.bundleID, position);
    byName_.emplace(keys.name, position);
    keys_.push_back(std::move(keys));
  }
}

const InstalledApp* AppIndex::appByBundleID(std::string_view bundleID) const {
  const std::string lower = lowercased(bundleID);
  auto parts = split(lower, '.');
  while (parts.size() >= 2) {
    if (const auto found = byID_.find(joined(parts, ".")); found != byID_.end()) {
      return &apps_[found->second];
    }
    parts.pop_back();
  }
  return nullptr;
}

const InstalledApp* AppIndex::appNamed(std::string_view name) const {
  const std::string wanted = normalized(name);
  const std::size_t length = characterCount(wanted);
  if (length < shortestExactName) return nullptr;
  if (const auto found = byName_.find(wanted); found != byName_.end()) {
    return &apps_[found->second];
  }
  if (length < shortestPrefix) return nullptr;
  for (std::size_t i = 0; i < apps_.size(); ++i) {
    if (keys_[i].nameLength >= shortestPrefix && beginAlike(keys_[i].name, wanted)) {
      return &apps_[i];
    }
  }
  return nullptr;
}

const InstalledApp* AppIndex::appFromMaker(std::string_view name) const {
  const std::string wanted = normalized(name);
  if (characterCount(wanted) < shortestPrefix) return nullptr;
  for (std::size_t i = 0; i < apps_.size(); ++i) {
    const auto& parts = keys_[i].makerParts;
    if (std::find(parts.begin(), parts.end(), wanted) != parts.end()) return &apps_[i];
  }
  return nullptr;
}

const InstalledApp* AppIndex::appByBundlePrefix(std::string_view prefix) const {
  const std::string lower = lowercased(prefix);
  for (std::size_t i = 0; i < apps_.size(); ++i) {
    if (apps_[i].bundleID && keys_[i].bundleID.starts_with(lower)) return &apps_[i];
  }
  return nullptr;
}

bool AppIndex::isPluginHost(const InstalledApp& app,
                            const std::vector<std::string>& vendors) const {
  const std::string bundleID = lowercased(app.bundleID.value_or(""));
  const bool isVendors = std::any_of(vendors.begin(), vendors.end(), [&](const auto& vendor) {
    return app.bundleID && bundleID.starts_with(lowercased(vendor));
  });
  if (isVendors) return true;
  const std::string name = normalized(app.name);
  if (characterCount(name) < shortestPrefix) return false;
  return std::any_of(pluginNames_.begin(), pluginNames_.end(),
                     [&](const auto& plugin) { return beginAlike(plugin, name); });
}

bool isGenericBundleWord(std::string_view word) {
  return std::find(genericBundleWords.begin(), genericBundleWords.end(), normalized(word)) !=
         genericBundleWords.end();
}

std::string displayName(std::string_view bundleID) {
  const auto parts = split(bundleID, '.');
  if (parts.empty()) return std::string(bundleID);
  auto word = parts.back();
  if (parts.size() >= 3 && isGenericBundleWord(word)) word = parts[parts.size() - 2];
  return uppercasedFirst(word);
}

}  // namespace volbrin
