#include "SteamTable.hpp"

#include <array>

namespace volbrin::demo {

namespace {

constexpr auto games = std::to_array<Game>({
    {"413150", "Stardew Valley", "Stardew Valley", Library::mac, 620, 17,
     "com.concernedape.stardewvalley"},
    {"289070", "Sid Meier's Civilization VI", "Sid Meier's Civilization VI", Library::mac, 2900,
     140},
    {"294100", "RimWorld", "RimWorld", Library::mac, 540, 60, "com.ludeon.rimworld"},
    {"1145360", "Hades", "Hades", Library::mac, 1700, 400},
    {"255710", "Cities: Skylines", "Cities_Skylines", Library::backup, 420, 90},
    {"4000", "Garry's Mod", "GarrysMod", Library::backup, 300, 210},
    {"108600", "Project Zomboid", "ProjectZomboid", Library::backup, 280, 45},
    {"227300", "Euro Truck Simulator 2", "Euro Truck Simulator 2", Library::absent, 0, 500},
    {"427520", "Factorio", "Factorio", Library::absent, 0, 320},
});

constexpr auto folders = std::to_array<Workshop>({
    // Beside its own game: in order.
    {"294100", Library::mac, "8187{i4}/{w}.xml", 10, 180, 60, 300, "rimworld"},
    // The game moved to the drive and left a second, identical copy behind.
    {"255710", Library::mac, "5062{i4}/asset.crp", 18, 760, 120, 700, "skylines"},
    {"255710", Library::backup, "5062{i4}/asset.crp", 18, 760, 120, 700, "skylines"},
    // The same, but the two copies went different ways.
    {"4000", Library::mac, "1046{i4}/addon.gma", 12, 520, 640, 900, "gmod before the move"},
    {"4000", Library::backup, "1046{i4}/addon.gma", 12, 470, 210, 500, "gmod after the move"},
    // The game moved without its mods.
    {"108600", Library::mac, "2713{i4}/mod.pack", 14, 480, 45, 300, "zomboid"},
    // The game is in no library.
    {"550", Library::mac, "1214{i4}/campaign.vpk", 12, 640, 800, 1300, "left behind"},
    // The game is in the library that isn't plugged in.
    {"227300", Library::mac, "6462{i4}/truck.scs", 10, 420, 500, 800, "trucks"},
});

}  // namespace

std::span<const Game> steamGames() { return games; }

std::span<const Workshop> workshops() { return folders; }

}  // namespace volbrin::demo
