#pragma once

#include <vector>

#include "Inventory.hpp"
#include "Mac.hpp"
#include "SteamLibrary.hpp"

namespace volbrin {

/// What stands around the folders of a machine and has to be known before any of them is judged:
/// the drives, Steam's libraries, and the apps on both.
struct Surroundings {
  std::vector<DriveInfo> drives;
  std::vector<SteamLibrary> steam;  ///< unmounted ones included
  AppIndex apps;

  /// Looks around on `mac`. The only costly part is the app index.
  [[nodiscard]] static Surroundings of(const Mac& mac);

  /// The games of every mounted library, library after library.
  [[nodiscard]] std::vector<SteamGame> games() const;
};

}  // namespace volbrin
