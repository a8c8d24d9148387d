#pragma once

#include <span>
#include <string_view>

namespace volbrin::demo {

/// The libraries that the machine's libraryfolders.vdf lists, in its order. The last one's drive
/// isn't plugged in, so nothing of it is written.
enum class Library { mac, backup, absent };

inline constexpr std::string_view steamFolder = "~/Library/Application Support/Steam";
inline constexpr std::string_view backupLibrary = "/Volumes/Backup/SteamLibrary";
inline constexpr std::string_view absentLibrary = "/Volumes/Games/SteamLibrary";

/// An installed game: a manifest, and a folder in "common" unless its library is absent.
struct Game {
  std::string_view appId;
  std::string_view name;
  std::string_view installDir;
  Library library;
  double megabytes;  ///< as measured on the machine
  double lastUsedDays;
  std::string_view bundleId = {};  ///< the game is an app bundle of this identifier
};

std::span<const Game> steamGames();

/// A game's workshop folder in one library.
struct Workshop {
  std::string_view appId;
  Library library;  ///< mac or backup
  std::string_view pattern;
  int files;
  double megabytes;
  double newestDays;
  double oldestDays;
  std::string_view content;  ///< two folders of equal content and size are identical
};

std::span<const Workshop> workshops();

}  // namespace volbrin::demo
