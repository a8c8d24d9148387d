#include "Steam.hpp"

#include <fmt/format.h>

#include <algorithm>

#include "../ByteText.hpp"
#include "../Compare.hpp"
#include "Shared.hpp"

namespace volbrin {
namespace {

std::string gameName(const std::string& appID, const ScanContext& context) {
  for (const auto& owner : context.catalog.owners) {
    if (owner.steamAppID == appID) return owner.app;
  }
  return "Steam app " + appID;
}

/// The search through the libraries of one scan.
class Search {
 public:
  explicit Search(const ScanContext& context)
      : context_(context),
        blockedBy_(blockedWhileOpen(context.openApp({"com.valvesoftware.steam"}))) {
    for (const auto& library : context.steam) {
      if (library.mounted) mounted_.push_back(&library);
    }
  }

  void run() {
    for (const auto& library : context_.steam) {
      if (!library.mounted) tellUnmounted(library);
    }
    for (const auto* library : mounted_) {
      if (externalDriveOf(*library) != nullptr) continue;
      for (const auto& folder : children(library->path + "/steamapps/workshop/content")) {
        if (isDirectory(folder)) lookAtWorkshop(*library, folder);
      }
      lookAtGames(*library);
    }
  }

  FinderResult result;

 private:
  /// The drive that the library is on; null when it is the startup drive or none.
  [[nodiscard]] const DriveInfo* externalDriveOf(const SteamLibrary& library) const {
    const auto* drive = context_.driveOf(library.path);
    return drive == nullptr || drive->isStartup ? nullptr : drive;
  }

  void tellUnmounted(const SteamLibrary& library) {
    const auto shown = context_.mac.display(library.path);
    const bool isOnDrive = std::any_of(
        context_.drives.begin(), context_.drives.end(),
        [&](const auto& drive) { return !drive.isStartup && isInside(library.path, drive.path); });
    result.notes.push_back(
        isOnDrive
            ? fmt::format("Steam still lists a library at {}, but that folder is gone.", shown)
            : fmt::format("Steam has a library at {} whose drive isn't plugged in, so it "
                          "wasn't checked.",
                          shown));
  }

  /// A finding of what all have in common.
  [[nodiscard]] static Finding steamFinding(std::string id, std::string title, ByteCount bytes) {
    Finding finding;
    finding.id = std::move(id);
    finding.finder = "steam";
    finding.title = std::move(title);
    finding.tier = Tier::reinstallable;
    finding.bytes = bytes;
    finding.owner = "Steam";
    return finding;
  }

  void lookAtWorkshop(const SteamLibrary& library, const std::string& folder) {
    const std::string appID(lastComponent(folder));
    if (library.games.contains(appID)) return;
    const ByteCount bytes = context_.survey.usage(folder).bytes;
    if (bytes < limitOr(context_.catalog.thresholds.workshop, context_)) return;

    const auto home = std::find_if(mounted_.begin(), mounted_.end(),
                                   [&](const auto* each) { return each->games.contains(appID); });
    const bool isInstalled = home != mounted_.end();
    if (!isInstalled && hasManifest(appID)) return;  // it is here, though nothing is known of it
    const auto name = isInstalled ? (*home)->games.at(appID).name : gameName(appID, context_);
    if (!isInstalled && noteUnplugged(appID, name, bytes)) return;

    auto finding = steamFinding("steam-workshop-" + appID, name + " workshop mods", bytes);
    finding.paths = {folder};
    auto manifest = fmt::format("{}/steamapps/workshop/appworkshop_{}.acf", library.path, appID);
    if (exists(manifest)) finding.paths.push_back(std::move(manifest));
    finding.blockedBy = blockedBy_;
    if (isInstalled) {
      if (!besideItsGame(finding, name, **home, appID)) return;
    } else {
      finding.reason = fmt::format("Workshop mods for {}, which isn't installed anymore.", name);
      finding.getBack =
          "Steam downloads them again if you reinstall the game while still subscribed to them.";
      finding.action = actions::trash;
    }
    result.findings.push_back(std::move(finding));
  }

  /// Whether a game's manifest stands in a library, be it one that can't be read.
  [[nodiscard]] bool hasManifest(const std::string& appID) const {
    return std::any_of(mounted_.begin(), mounted_.end(), [&](const auto* library) {
      return exists(fmt::format("{}/steamapps/appmanifest_{}.acf", library->path, appID));
    });
  }

  /// Tells of mods whose game may come back with an unplugged drive; false when there is no such
  /// game.
  bool noteUnplugged(const std::string& appID, const std::string& name, ByteCount bytes) {
    for (const auto& library : context_.steam) {
      if (library.mounted || !library.listedAppIDs.contains(appID)) continue;
      result.notes.push_back(fmt::format(
          "{}'s workshop mods ({}) are on the Mac, and the game is in the Steam library at {}, "
          "which isn't plugged in. Plug it in to compare.",
          name, byteText(bytes), context_.mac.display(library.path)));
      return true;
    }
    return false;
  }

  /// The game is in another library: what becomes of the mods depends on what lies beside it. False
  /// when these are the very mods that the game uses, by way of a link.
  bool besideItsGame(Finding& finding, const std::string& name, const SteamLibrary& home,
                     const std::string& appID) const {
    const auto* drive = context_.driveOf(home.path);
    const std::string driveName = drive == nullptr ? "another drive" : drive->name;
    const auto other = fmt::format("{}/steamapps/workshop/content/{}", home.path, appID);
    if (!exists(other)) {
      finding.reason = fmt::format("Steam left {}'s workshop mods here when the game moved to {}.",
                                   name, driveName);
      finding.getBack =
          fmt::format("Moved, not removed: they go next to the game on {}.", driveName);
      finding.action.kind = Action::Kind::move;
      finding.action.destination = other;
      return true;
    }
    const auto diff = compareCopies(finding.paths.front(), other, CompareBy::size);
    if (!diff) return false;
    if (diff->isProof()) {
      finding.title += " (second copy)";
      finding.reason = fmt::format(
          "Steam keeps a second copy of {}'s workshop mods here; the game and an identical copy "
          "are on {}.",
          name, driveName);
      finding.getBack =
          fmt::format("The copy on {} stays, and it's the one the game uses.", driveName);
      finding.action = actions::trash;
      return true;
    }
    finding.title += " (two different copies)";
    finding.reason = fmt::format(
        "Steam left {0}'s workshop mods here when the game moved to {1}; {1} has its own copy, and "
        "{2} files differ.",
        name, driveName, diff->differing + diff->onlyHere);
    finding.getBack = "Keep whichever copy is newer; the other can go.";
    finding.action = actions::review;
    finding.caution = "The copies differ: compare dates before removing either.";
    return true;
  }

  void lookAtGames(const SteamLibrary& library) {
    const auto external = std::find_if(mounted_.begin(), mounted_.end(), [&](const auto* each) {
      return externalDriveOf(*each) != nullptr;
    });
    if (external == mounted_.end()) return;
    const auto& driveName = externalDriveOf(**external)->name;

    std::vector<const SteamGame*> games;
    for (const auto& [appID, game] : library.games) {
      if (isFileName(game.installDir)) games.push_back(&game);
    }
    std::stable_sort(games.begin(), games.end(),
                     [](const auto* a, const auto* b) { return a->name < b->name; });
    for (const auto* game : games) {
      const auto path = library.path + "/steamapps/common/" + game->installDir;
      const ByteCount bytes = context_.survey.usage(path).bytes;
      if (bytes < limitOr(context_.catalog.thresholds.personalFolder, context_)) continue;
      auto finding = steamFinding("steam-game-" + game->appID, game->name, bytes);
      finding.reason =
          fmt::format("{} is installed on your Mac, and you have a Steam library on {}.",
                      game->name, driveName);
      finding.getBack =
          fmt::format("Moved, not removed: it plays from {} whenever it's plugged in.", driveName);
      finding.paths = {path};
      finding.action.kind = Action::Kind::handOff;
      finding.action.app = "Steam";
      finding.action.steps = fmt::format(
          "In Steam: Settings → Storage → pick {} → Move, and choose {}.", game->name, driveName);
      finding.action.moves = true;
      result.findings.push_back(std::move(finding));
    }
  }

  const ScanContext& context_;
  std::optional<std::string> blockedBy_;  ///< of what is in Steam's hands while it runs
  std::vector<const SteamLibrary*> mounted_;
};

}  // namespace

FinderResult SteamFinder::find(const ScanContext& context) const {
  Search search(context);
  search.run();
  return std::move(search.result);
}

}  // namespace volbrin
