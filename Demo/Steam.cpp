#include <fmt/format.h>

#include <array>
#include <string>

#include "Apps.hpp"
#include "Piles.hpp"
#include "Rooms.hpp"
#include "SteamTable.hpp"
#include "TreeWriter.hpp"

namespace volbrin::demo {

namespace {

struct Listed {
  Library library;
  std::string_view folder;   ///< where the machine has it
  std::string_view written;  ///< as Steam writes it
};

constexpr auto libraries = std::to_array<Listed>({
    {Library::mac, steamFolder, "/Users/me/Library/Application Support/Steam"},
    {Library::backup, backupLibrary, backupLibrary},
    {Library::absent, absentLibrary, absentLibrary},
});

std::string_view folderOf(Library library) {
  for (const Listed& listed : libraries) {
    if (listed.library == library) return listed.folder;
  }
  return steamFolder;
}

/// One line of Valve's text format: a key and a value, indented by tabs. None of the machine's
/// texts has a quote or a backslash, so nothing needs escaping.
std::string pair(int depth, std::string_view key, std::string_view value) {
  return fmt::format("{:\t>{}}\"{}\"\t\t\"{}\"\n", "", depth, key, value);
}

std::string opened(int depth, std::string_view key) {
  return fmt::format("{0:\t>{1}}\"{2}\"\n{0:\t>{1}}{{\n", "", depth, key);
}

std::string closed(int depth) { return fmt::format("{:\t>{}}}}\n", "", depth); }

std::int64_t bytesOf(double megabytes) { return static_cast<std::int64_t>(megabytes * 1e6); }

/// What Steam lists as a library's games, whether or not the library is there.
std::string libraryFolders() {
  std::string text = opened(0, "libraryfolders");
  for (std::size_t i = 0; i < libraries.size(); ++i) {
    text += opened(1, fmt::format("{}", i));
    text += pair(2, "path", libraries[i].written);
    text += pair(2, "label", "");
    text += opened(2, "apps");
    for (const Game& game : steamGames()) {
      if (game.library != libraries[i].library) continue;
      text += pair(3, game.appId, fmt::format("{}", bytesOf(game.megabytes)));
    }
    text += closed(2) + closed(1);
  }
  return text + closed(0);
}

std::string manifest(const Game& game, Seconds now) {
  std::string text = opened(0, "AppState");
  text += pair(1, "appid", game.appId);
  text += pair(1, "Universe", "1");
  text += pair(1, "name", game.name);
  text += pair(1, "StateFlags", "4");
  text += pair(1, "installdir", game.installDir);
  text += pair(1, "LastUpdated", fmt::format("{}", daysBefore(now, game.lastUsedDays)));
  text += pair(1, "SizeOnDisk", fmt::format("{}", bytesOf(game.megabytes)));
  return text + closed(0);
}

void writeGame(TreeWriter& writer, const Game& game) {
  const std::string apps = fmt::format("{}/steamapps", folderOf(game.library));
  writer.text(fmt::format("{}/appmanifest_{}.acf", apps, game.appId), manifest(game, writer.now()),
              game.lastUsedDays);
  const std::string folder = fmt::format("{}/common/{}", apps, game.installDir);
  double data = game.megabytes;
  if (!game.bundleId.empty()) {
    const std::string bundle = fmt::format("{}/{}.app", folder, game.name);
    const double size = game.megabytes / 2;
    writeApp(writer, {bundle, game.bundleId, "1.6", "", size, game.lastUsedDays, neverNoted});
    data -= size;
  }
  writePile(writer, {folder, "Data/{w}-{i2}.pak", 12, data, game.lastUsedDays, 700});
}

void writeWorkshop(TreeWriter& writer, const Workshop& workshop) {
  const std::string folder = fmt::format("{}/steamapps/workshop", folderOf(workshop.library));
  const std::string content = fmt::format("{}/content/{}", folder, workshop.appId);
  writePile(writer, {content, workshop.pattern, workshop.files, workshop.megabytes,
                     workshop.newestDays, workshop.oldestDays, workshop.content});
  std::string text = opened(0, "AppWorkshop");
  text += pair(1, "appid", workshop.appId);
  text += pair(1, "SizeOnDisk", fmt::format("{}", bytesOf(workshop.megabytes)));
  text += opened(1, "WorkshopItemsInstalled") + closed(1) + closed(0);
  writer.text(fmt::format("{}/appworkshop_{}.acf", folder, workshop.appId), text,
              workshop.newestDays);
}

constexpr auto rest = std::to_array<Pile>({
    {"~/Library/Application Support/Steam/steamapps/shadercache/1145360", "fozmediav1/{w}-{h8}.foz",
     8, 420, 400, 500},
    {"~/Library/Application Support/Steam/steamapps/shadercache/289070", "fozmediav1/{w}-{h8}.foz",
     6, 260, 140, 400},
    {"~/Library/Application Support/Steam/steamapps/downloading/570", "{w}-{i}.chunk", 6, 240, 260,
     260},
    {"~/Library/Application Support/Steam/userdata/48210577/413150/remote", "{w}_{i}.save", 4, 30,
     17, 400},
    {"~/Library/Application Support/Steam/appcache/httpcache", "{b4}/{h16}", 10, 120, 17, 120},
});

}  // namespace

void writeSteam(TreeWriter& writer) {
  writer.text(fmt::format("{}/steamapps/libraryfolders.vdf", steamFolder), libraryFolders(), 17);
  for (const Game& game : steamGames()) {
    if (game.library != Library::absent) writeGame(writer, game);
  }
  for (const Workshop& workshop : workshops()) writeWorkshop(writer, workshop);
  writePiles(writer, rest);
}

}  // namespace volbrin::demo
