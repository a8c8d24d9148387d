#pragma once

#include <map>
#include <set>
#include <string>
#include <vector>

#include "Mac.hpp"

namespace volbrin {

struct SteamGame {
  std::string appID;
  std::string name;        ///< "Steam app <appID>" when the manifest has none
  std::string installDir;  ///< the folder's name in "common"; empty when the manifest has none
};

/// One of Steam's library folders, as its own files tell. Read only.
struct SteamLibrary {
  std::string path;
  bool mounted = false;                    ///< `<path>/steamapps` is there now
  std::map<std::string, SteamGame> games;  ///< by app id; empty when not mounted
  /// What the list of libraries says of it: all that is known of a library on an unplugged drive.
  std::set<std::string> listedAppIDs;

  /// All the libraries that the user's Steam knows, its own folder first; empty without Steam on
  /// this machine.
  [[nodiscard]] static std::vector<SteamLibrary> load(const Mac& mac);
};

}  // namespace volbrin
