#include "Surroundings.hpp"

namespace volbrin {

Surroundings Surroundings::of(const Mac& mac) {
  Surroundings found;
  found.drives = mac.drives();
  found.steam = SteamLibrary::load(mac);
  std::vector<std::string> gameFolders;
  for (const auto& library : found.steam) {
    if (library.mounted) gameFolders.push_back(library.path + "/steamapps/common");
  }
  found.apps = AppIndex::discover(mac, found.drives, gameFolders);
  return found;
}

std::vector<SteamGame> Surroundings::games() const {
  std::vector<SteamGame> games;
  for (const auto& library : steam) {
    if (!library.mounted) continue;
    for (const auto& [appID, game] : library.games) games.push_back(game);
  }
  return games;
}

}  // namespace volbrin
