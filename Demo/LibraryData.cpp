#include <array>

#include "Piles.hpp"
#include "Rooms.hpp"

namespace volbrin::demo {

namespace {

constexpr auto untouchable = std::to_array<Pile>({
    {"~/Library/Mail/V10", "{u}.mbox", 16, 620, 0.2, 1900},
    {"~/Library/Messages/Attachments", "{b4}/{u}.heic", 16, 480, 0.4, 1500},
    {"~/Library/Safari", "{w}-{i}.db", 4, 60, 1, 800},
    {"~/Library/Calendars", "{w}-{i}.ics", 4, 30, 3, 900},
    {"~/Library/Reminders", "{w}-{i}.sqlite", 2, 20, 3, 600},
    {"~/Library/HomeKit", "{w}-{i}.sqlite", 2, 20, 5, 600},
    {"~/Library/Application Support/AddressBook/Sources", "{u}.abcddb", 3, 40, 10, 900},
    {"~/Library/Preferences", "com.{w}.{w}-{i}.plist", 14, 90, 0.3, 1500},
    {"~/Library/Application Support/MobileSync/Backup/00008101-001A2D8E3C41001E", "{b8}/{h40}", 36,
     1900, 150, 700},
});

/// Sound libraries, which are big, and which only their apps or an administrator can move.
constexpr auto sounds = std::to_array<Pile>({
    {"/Library/Audio/Apple Loops/Apple/01 Hip Hop", "{w} {i2}.caf", 12, 520, 900, 900},
    {"/Library/Audio/Apple Loops/Apple/05 Jam Pack", "{w} {i2}.caf", 12, 480, 900, 900},
    {"/Library/Application Support/GarageBand/Instrument Library/Sampler", "{w} {i2}.exs", 12, 640,
     900, 900},
    {"/Library/Application Support/Logic/Alchemy Samples", "{w} {i2}.aaz", 10, 700, 900, 900},
});

constexpr auto secrets = std::to_array<Single>({
    {"~/Library/Keychains/login.keychain-db", 20, 0.5},
    {"~/Library/Keychains/metadata.keychain-db", 10, 60},
    {"~/.ssh/id_ed25519", 1, 1500},
    {"~/.ssh/known_hosts", 1, 30},
});

constexpr auto notes = std::to_array<Note>({
    {"~/Library/Application Support/MobileSync/Backup/00008101-001A2D8E3C41001E/Manifest.db",
     "SQLite format 3\n", 150},
    {"~/.zshrc", "export PATH=\"$HOME/.cargo/bin:$PATH\"\n", 400},
    {"~/.gitconfig", "[user]\n\tname = Me\n", 900},
});

}  // namespace

void writeLibraryData(TreeWriter& writer) {
  writePiles(writer, untouchable);
  writeSingles(writer, secrets);
  writePiles(writer, sounds);
  writeNotes(writer, notes);
}

}  // namespace volbrin::demo
