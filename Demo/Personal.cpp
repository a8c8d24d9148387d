#include "Personal.hpp"

#include <array>

#include "Rooms.hpp"

namespace volbrin::demo {

namespace {

constexpr auto desktop = std::to_array<Pile>({
    {"~/Desktop", "Screenshot {i2}.png", 8, 64, 1, 260},
    {"~/Desktop/Tax 2021", "{w}-{i}.pdf", 6, 70, 700, 1100},
});

constexpr auto documents = std::to_array<Pile>({
    // In use.
    {"~/Documents/Harbour House", "Drawings/{w}-{i2}.dwg", 16, 1300, 2, 200},
    // Untouched for years.
    {"~/Documents/Thesis data", "runs/run-{i2}.h5", 18, 2400, 1900, 2300},
    // The drive has this too, but not quite the same.
    {"~/Documents/Kitchen renovation", "{w}-{i2}.pdf", 10, 1100, 800, 1000, "kitchen"},
    {"~/Documents/Letters", "{w} {i2}.pages", 10, 80, 20, 1600},
});

constexpr auto movies = std::to_array<Pile>({
    // The same, file by file, as on the drive.
    weddingIn("~/Movies/Wedding 2022"),
    // Worked on within days.
    {"~/Movies/Documentary rough cut", "Footage/A{i4}.mov", 10, 2600, 1.5, 75},
    {"~/Movies/Documentary rough cut/Project", "cut-{i}.prproj", 4, 60, 0.4, 30},
    // Old, with no second copy.
    {"~/Movies/Road trip 2018", "GX{i4}.mp4", 10, 1500, 1700, 1720},
    {"~/Movies/Holiday.fcpbundle/Holiday", "Original Media/clip-{i2}.mov", 5, 700, 520, 560},
    {"~/Movies/Holiday.fcpbundle/Holiday/Render Files", "High Quality Media/{h16}.mov", 6, 560, 500,
     520},
    {"~/Movies/CacheClip", "{h16}.dvcc", 6, 380, 600, 640},
});

constexpr auto music = std::to_array<Pile>({
    {"~/Music/Music/Media.localized/Music", "{w}/{w} {i2}.m4a", 16, 1150, 90, 2400},
    {"~/Music/GarageBand/Autumn demo.band", "Media/Audio Files/take-{i}.aif", 6, 340, 95, 130},
    {"~/Music/Logic/Album 2021.logicx", "Media/Audio Files/{w}-{i}.wav", 10, 1250, 1100, 1250},
    {"~/Music/Ableton/User Library", "Presets/{w}-{i}.adg", 5, 50, 410, 700},
});

constexpr auto pictures = std::to_array<Pile>({
    {"~/Pictures/Photos Library.photoslibrary", "originals/{b8}/{u}.heic", 60, 2300, 1, 1500},
    {"~/Pictures/Photos Library.photoslibrary/resources", "derivatives/{b4}/{u}.jpeg", 16, 260, 1,
     1500},
    {"~/Pictures/Old family photos.photoslibrary", "originals/{b4}/{u}.jpg", 24, 1200, 2100, 3300},
    {"~/Pictures/Lightroom/Catalog Previews.lrdata", "{b4}/{u}.lrprev", 12, 460, 300, 900},
    // Accents in two parts, as an old Mac writes them, and a picture for a name.
    {"~/Pictures/Cafe\u0301 Fotos Ma\u0301laga", "IMG_{i4}.heic", 8, 90, 640, 645},
    {"~/Pictures/\U0001F392 Rucksack", "DSC{i4}.jpg", 6, 70, 400, 410},
});

constexpr auto files = std::to_array<Single>({
    {"~/Desktop/Screen recording of the talk.mov", 1250, 520},
    {"~/Documents/Lease.pdf", 8, 900},
    interviewAt("~/Movies/Grandma interview.mov"),
    {"~/Movies/CacheClip/.gallery", 8, 600},
    {"~/Pictures/Photos Library.photoslibrary/database/Photos.sqlite", 90, 0.6},
    {"~/Pictures/Photos Library.photoslibrary/database/search/psi.sqlite", 30, 0.6},
    {"~/Pictures/Lightroom/Catalog.lrcat", 90, 300},

    // Old installers, new ones, and files that only look like installers.
    {"~/Downloads/Xcode_14.3.1.xip", 1500, 390},
    {"~/Downloads/Docker.dmg", 560, 310},
    {"~/Downloads/blender-3.4.1-macos-arm64.dmg", 290, 905},
    {"~/Downloads/Install Native Access.pkg", 240, 600},
    {"~/Downloads/Audacity-3.4.2.zip", 230, 500},
    {"~/Downloads/holiday-photos-2019.zip", 420, 1500},
    {"~/Downloads/zoomusInstallerFull.pkg", 180, 3},
    {"~/Downloads/receipt-88210.pdf", 8, 14},
    {"~/Downloads/dataset.csv", 110, 260},
});

}  // namespace

void writePersonal(TreeWriter& writer) {
  writePiles(writer, desktop);
  writePiles(writer, documents);
  writePiles(writer, movies);
  writePiles(writer, music);
  writePiles(writer, pictures);
  writeSingles(writer, files);
}

}  // namespace volbrin::demo
