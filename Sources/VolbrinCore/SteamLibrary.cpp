#include "SteamLibrary.hpp"

#include <optional>

#include "Files.hpp"
#include "Paths.hpp"
#include "VDF.hpp"

namespace volbrin {
namespace {

struct Listed {
  std::string path;
  std::set<std::string> appIDs;
};

/// The libraries in the order of the file's keys, as texts: "10" comes before "2".
std::vector<Listed> listedLibraries(const std::string& root, const Mac& mac) {
  std::vector<Listed> libraries = {{root, {}}};
  const auto file = VDF::parse(root + "/steamapps/libraryfolders.vdf");
  const auto* entries = file ? file->blockAt("libraryfolders") : nullptr;
  if (entries == nullptr) return libraries;
  for (const auto& [key, entry] : *entries) {
    const auto* path = entry.textAt("path");
    if (path == nullptr) continue;
    Listed library{mac.path(*path), {}};
    if (const auto* apps = entry.blockAt("apps")) {
      for (const auto& [appID, size] : *apps) library.appIDs.insert(appID);
    }
    libraries.push_back(std::move(library));
  }
  return libraries;
}

std::optional<SteamGame> readManifest(const std::string& file) {
  const auto manifest = VDF::parse(file);
  const auto* state = manifest ? manifest->at("appstate") : nullptr;
  const auto* appID = state != nullptr ? state->textAt("appid") : nullptr;
  if (appID == nullptr) return std::nullopt;
  const auto* name = state->textAt("name");
  const auto* folder = state->textAt("installdir");
  return SteamGame{*appID, name != nullptr ? *name : "Steam app " + *appID,
                   folder != nullptr ? *folder : ""};
}

std::map<std::string, SteamGame> readGames(const std::string& steamapps) {
  std::map<std::string, SteamGame> games;
  for (const auto& path : children(steamapps)) {
    const auto name = lastComponent(path);
    if (!name.starts_with("appmanifest_") || !name.ends_with(".acf")) continue;
    if (auto game = readManifest(path)) games.insert_or_assign(game->appID, *game);
  }
  return games;
}

}  // namespace

std::vector<SteamLibrary> SteamLibrary::load(const Mac& mac) {
  std::vector<SteamLibrary> libraries;
  const std::string root = mac.path("~/Library/Application Support/Steam");
  if (!isDirectory(root + "/steamapps")) return libraries;

  std::map<std::string, std::size_t> known;
  for (const auto& listed : listedLibraries(root, mac)) {
    const std::string path = standardized(listed.path);
    const auto [position, isNew] = known.emplace(path, libraries.size());
    if (isNew) libraries.push_back({path, false, {}, {}});
    libraries[position->second].listedAppIDs.insert(listed.appIDs.begin(), listed.appIDs.end());
  }
  for (auto& library : libraries) {
    const std::string steamapps = library.path + "/steamapps";
    library.mounted = isDirectory(steamapps);
    if (library.mounted) library.games = readGames(steamapps);
  }
  return libraries;
}

}  // namespace volbrin
