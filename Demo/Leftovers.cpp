#include <array>

#include "Piles.hpp"
#include "Rooms.hpp"
#include "TreeWriter.hpp"

namespace volbrin::demo {

namespace {

/// The apps of these are gone.
constexpr auto removed = std::to_array<Pile>({
    {"~/Library/Application Support/com.bohemiancoding.sketch3", "Plugins/{w}-{i}.sketchplugin", 14,
     780, 700, 1500},
    {"~/Library/Application Support/discord/Cache/Cache_Data", "f_{h6}", 30, 900, 350, 520},
    {"~/Library/Application Support/discord/0.0.280/modules", "{w}-{i}.node", 6, 210, 350, 500},
    {"~/Library/Application Support/Cisco Spark/media", "{w}-{h8}.bin", 10, 520, 600, 900},
    {"~/Library/Application Support/Skype", "{w}-{i}.db", 5, 160, 1300, 1700},
    {"~/Library/Containers/com.evernote.Evernote/Data/Library", "{w}-{h8}.exb", 12, 980, 800, 1600},
    {"~/Library/Application Support/com.evernote.Evernote", "accounts/{w}-{i}.sql", 6, 240, 800,
     1600},
    {"~/Library/Containers/ru.keepcoder.Telegram/Data", "{w}-{i}.db", 5, 110, 290, 600},
    {"~/Library/Group Containers/6N38VWS5BX.ru.keepcoder.Telegram/appstore", "media/{h16}", 24,
     1500, 290, 900},
    {"~/Library/Group Containers/group.net.whatsapp.WhatsApp.shared", "Message/Media/{h16}.jpg", 22,
     860, 240, 800},
});

/// This one matches no app that was ever known.
constexpr auto unknown = std::to_array<Pile>({
    {"~/Library/Application Support/Brightwater Studio", "Library {i}/{w}-{h8}.bwd", 8, 1200, 900,
     1700},
    {"~/Library/Application Support/Fjord", "{w}-{i}.dat", 3, 60, 1000, 1300},
});

/// Removed too, but the user's own writing lies inside.
constexpr auto ownWork = std::to_array<Single>({
    {"~/Library/Application Support/com.literatureandlatte.scrivener3/Projects/Salt Road/"
     "Chapter 01.docx",
     60, 980},
    {"~/Library/Application Support/com.literatureandlatte.scrivener3/Projects/Salt Road/"
     "Chapter 02.docx",
     70, 960},
    {"~/Library/Application Support/com.literatureandlatte.scrivener3/Projects/Salt Road/Map.psd",
     240, 950},
    {"~/Library/Application Support/com.literatureandlatte.scrivener3/Projects/Salt Road/"
     "Submission.pdf",
     50, 930},
    {"~/Library/Application Support/com.literatureandlatte.scrivener3/Backups/backup-0412.zip", 320,
     930},
});

/// Their apps, or other apps of their makers, are still there.
constexpr auto installed = std::to_array<Pile>({
    {"~/Library/Containers/com.microsoft.Excel/Data/Library/Caches", "{w}-{h8}.tmp", 8, 160, 5, 90},
    {"~/Library/Containers/com.microsoft.Word/Data/Library/Caches", "{w}-{h8}.tmp", 6, 140, 2, 90},
    {"~/Library/Group Containers/UBF8T346G9.Office", "{w}-{i}.dat", 6, 220, 2, 400},
    {"~/Library/Group Containers/UBF8T346G9.com.microsoft.oneauth", "{w}-{i}.bin", 3, 40, 5, 200},
    {"~/Library/Group Containers/2BUA8C4S2C.com.1password", "{w}-{i}.sqlite", 3, 70, 0.1, 60},
    {"~/Library/Group Containers/group.com.docker", "{w}-{i}.json", 2, 40, 3, 60},
    {"~/Library/Application Support/Anki2/addons21", "{w}-{i}.py", 5, 60, 14, 500},
    {"~/Library/Application Support/Native Instruments/Kontakt", "{w}-{i}.nkx", 6, 380, 520, 900},
    {"~/Library/Application Support/Microsoft/EdgeUpdater", "{w}-{i}.bin", 2, 50, 500, 500},
    {"~/Library/Containers/com.apple.Notes/Data", "{w}-{i}.db", 2, 40, 2, 100},
    {"~/Library/Group Containers/group.com.apple.notes", "Media/{h16}.heic", 6, 190, 2, 400},
    {"~/Library/Application Support/CrashReporter", "{w}-{i}.plist", 4, 30, 3, 300},
    // Its app now lives on the drive.
    {"~/Library/Application Support/Plex Media Server/Metadata", "{b4}/{h16}.jpg", 30, 900, 8, 500},
    {"~/Library/Application Support/Plex Media Server/Media", "localhost/{w}-{h8}.ts", 12, 1500, 8,
     60},
});

constexpr auto trash = std::to_array<Pile>({
    {"~/.Trash/Skype.app/Contents", "Resources/{w}-{i}.pak", 4, 420, 60, 1700},
    {"~/.Trash/Old website", "images/{w}-{i}.png", 10, 240, 45, 1900},
});

constexpr auto trashedFiles = std::to_array<Single>({
    {"~/.Trash/Untitled 7.mov", 640, 12},
    {"~/.Trash/Figma-116.dmg", 290, 30},
    {"~/.Trash/Screenshot at 10.12.44.png", 8, 6},
});

}  // namespace

void writeLeftovers(TreeWriter& writer) {
  writePiles(writer, removed);
  writePiles(writer, unknown);
  writeSingles(writer, ownWork);
  writePiles(writer, installed);
  writePiles(writer, trash);
  writeSingles(writer, trashedFiles);
}

}  // namespace volbrin::demo
