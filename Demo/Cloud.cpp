#include <fmt/format.h>

#include <array>
#include <cstdint>
#include <string>

#include "Piles.hpp"
#include "Rooms.hpp"
#include "Scale.hpp"
#include "TreeWriter.hpp"

namespace volbrin::demo {

namespace {

constexpr std::string_view drive = "~/Library/Mobile Documents/com~apple~CloudDocs";

constexpr std::int64_t megabyte = 1'000'000;

/// A file by its full size, which is what counts for a file that isn't on this Mac: such a file
/// takes no space. Sizes here aren't scaled.
struct Remote {
  std::string_view name;  ///< below the top of iCloud Drive
  std::int64_t bytes;
  double daysAgo;
};

constexpr std::int64_t budgetBytes = 20'180'344;
constexpr std::int64_t interviewBytes = 46'250'112;
constexpr std::int64_t talkBytes = 412'345'678;

constexpr auto onlyInCloud = std::to_array<Remote>({
    {"Finance/Budget copy.pdf", budgetBytes, 260},
    {"Scans/Scan.pdf", 24'117'248, 900},
    {"Scans/Scan (1).pdf", 24'117'248, 896},
    {"Desk/Scan copy 2.pdf", 24'117'248, 610},
    {"Interview.wav", interviewBytes, 720},
    {"Talks/Keynote recording.mov", talkBytes, 480},
    {"Music/Mixdown 3.aif", 131'072'044, 540},
    {"Music/Mixdown final.aif", 131'072'044, 538},
    {"Video/Drone over the fjord.mov", 1'640 * megabyte, 1010},
    {"Archive/Thesis archive.zip", 2'310 * megabyte, 1900},
    {"Archive/Old laptop.dmg", 1'205 * megabyte, 2300},
    {"Video/Trip.mov", 640 * megabyte, 1005},
    {"Garden plan.key/Data/video-1.mov", 88 * megabyte, 300},
    {"Garden plan.key/Data/video-1 copy.mov", 88 * megabyte, 300},
});

constexpr auto small = std::to_array<Single>({
    {"~/Library/Mobile Documents/com~apple~CloudDocs/Shopping.txt", 5, 12},
    {"~/Library/Mobile Documents/com~apple~CloudDocs/Finance/Rent.numbers", 40, 40},
    {"~/Library/Mobile Documents/com~apple~CloudDocs/Finance/Rent 2.numbers", 40, 35},
    {"~/Library/Mobile Documents/com~apple~CloudDocs/Garden plan.key/Index.zip", 60, 300},
    {"~/Library/Mobile Documents/com~apple~CloudDocs/Garden plan.key/preview.jpg", 10, 300},
    {"~/Library/Mobile Documents/com~apple~CloudDocs/.DS_Store", 5, 2},
    {"~/Library/Mobile Documents/com~apple~Pages/Documents/CV.pages", 30, 130},
    {"~/Library/CloudStorage/Dropbox/Team notes.md", 5, 8},
});

void writeRemote(TreeWriter& writer) {
  for (const Remote& remote : onlyInCloud) {
    writer.hollow(fmt::format("{}/{}", drive, remote.name), remote.bytes, remote.daysAgo);
  }
  writer.hollow("~/Library/CloudStorage/Dropbox/Team assets.zip", 740 * megabyte, 400);
}

/// Copies of iCloud files in other places.
void writeTwins(TreeWriter& writer) {
  // On this Mac by more than half, and alike to its copy that isn't, which has no contents here.
  writer.partly(fmt::format("{}/Finance/Budget.pdf", drive), budgetBytes,
                budgetBytes / 2 + blockBytes, TreeWriter::Fill::zeros, 300);
  writer.hollow("/Volumes/Backup/Archive/Talk, uncut.mov", talkBytes, 481);
  writer.hollow("~/Movies/Trip copy.mov", 640 * megabyte, 1004);
  // Of one name and size, yet another recording: what a comparison of contents is there to find.
  writer.partly("/Volumes/Backup/Archive/Interview.wav", interviewBytes, blockBytes,
                TreeWriter::Fill::random, 730);
}

}  // namespace

void writeCloud(TreeWriter& writer) {
  writeRemote(writer);
  writeTwins(writer);
  writeSingles(writer, small);
}

}  // namespace volbrin::demo
