#include <array>

#include "Personal.hpp"
#include "Piles.hpp"
#include "Rooms.hpp"

namespace volbrin::demo {

namespace {

constexpr auto backup = std::to_array<Pile>({
    weddingIn("/Volumes/Backup/Projects/Wedding 2022"),
    {"/Volumes/Backup/Projects/Kitchen renovation", "{w}-{i2}.pdf", 10, 1100, 800, 1000, "kitchen"},
    {"/Volumes/Backup/Photos 2010-2015", "{w}/IMG_{i4}.jpg", 12, 240, 3300, 5000},
});

constexpr auto files = std::to_array<Single>({
    interviewAt("/Volumes/Backup/Archive/Video/Grandma interview.mov"),
    // What makes this folder more than a copy.
    {"/Volumes/Backup/Projects/Kitchen renovation/invoice, final.pdf", 12, 790},
});

/// Written while the drive "Footage" wasn't plugged in: a plain folder in its place.
constexpr auto stale = std::to_array<Pile>({
    {"/Volumes/Footage/Exports", "export-{i2}.mp4", 6, 1100, 230, 232},
});

}  // namespace

void writeBackup(TreeWriter& writer) {
  writePiles(writer, backup);
  writeSingles(writer, files);
  writePiles(writer, stale);
}

}  // namespace volbrin::demo
