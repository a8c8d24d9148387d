#include <array>

#include "Piles.hpp"
#include "Rooms.hpp"

namespace volbrin::demo {

namespace {

constexpr auto browsers = std::to_array<Pile>({
    {"~/Library/Caches/Google/Chrome/Default/Cache/Cache_Data", "{h16}_0", 60, 820, 0.1, 60},
    {"~/Library/Caches/Google/Chrome/Default/Code Cache/js", "{h16}_0", 20, 210, 0.1, 40},
    {"~/Library/Application Support/Google/Chrome/Default", "{w}-{i}.sqlite", 8, 260, 0.1, 300},
    {"~/Library/Caches/Firefox/Profiles/k3x9w1ab.default-release/cache2/entries", "{h40}", 40, 640,
     9, 120},
    {"~/Library/Application Support/Firefox/Profiles/k3x9w1ab.default-release", "{w}-{i}.sqlite", 6,
     140, 9, 500},
    {"~/Library/Containers/com.apple.Safari/Data/Library/Caches/com.apple.Safari",
     "WebKitCache/{h16}", 10, 150, 1, 60},
});

constexpr auto media = std::to_array<Pile>({
    {"~/Library/Application Support/Adobe/Common/Media Cache Files", "{w}-{h8}.cfa", 24, 2100, 27,
     400},
    {"~/Library/Application Support/Adobe/Common/Media Cache", "{h16}.mcdb", 8, 90, 27, 400},
    {"~/Library/Application Support/Adobe/Common/Peak Files", "{w}-{h8}.pek", 8, 120, 27, 400},
    {"~/Library/Caches/Adobe/After Effects/24.0", "{h16}.aecache", 10, 640, 230, 300},
    {"~/Library/Application Support/Spotify/PersistentCache/Storage", "{b8}/{h40}.file", 50, 1700,
     0.3, 200},
    {"~/Library/Caches/com.spotify.client/Data", "{h40}.file", 24, 520, 0.3, 90},
    {"~/Music/Music/Media.localized/Podcasts", "{w} {i}.m4a", 4, 90, 300, 700},
});

/// What apps built on a browser engine keep beside their settings.
constexpr auto electron = std::to_array<Pile>({
    {"~/Library/Application Support/Code/CachedData/dc96b837cf6bb4af9cd736aa3af08cf8279f7685",
     "{w}-{h8}.code", 8, 150, 15, 40},
    {"~/Library/Application Support/Code/CachedExtensionVSIXs", "{w}.{h8}.vsix", 6, 330, 15, 200},
    {"~/Library/Application Support/Code/Cache/Cache_Data", "{h16}_0", 10, 160, 0.6, 60},
    {"~/Library/Application Support/Code/User/workspaceStorage", "{h16}.vscdb", 8, 140, 0.6, 600},
    {"~/Library/Application Support/Slack/Cache/Cache_Data", "{h16}_0", 24, 320, 0.05, 40},
    {"~/Library/Application Support/Slack/Service Worker/CacheStorage", "{h16}_0", 14, 280, 0.05,
     90},
    {"~/Library/Application Support/Notion/Partitions/notion/Cache", "{h16}_0", 10, 180, 1, 60},
    {"~/Library/Application Support/obsidian", "{w}-{i}.log", 4, 40, 1, 90},
});

/// Plain caches, named after their apps: open ones, closed ones, one of an app that is gone.
constexpr auto plain = std::to_array<Pile>({
    {"~/Library/Caches/com.tinyspeck.slackmacgap", "{h16}.db", 6, 170, 0.05, 20},
    {"~/Library/Caches/com.tinyspeck.slackmacgap.ShipIt", "update.{h8}/Slack-{i}.zip", 1, 190, 18,
     18},
    {"~/Library/Caches/us.zoom.xos", "{w}-{h8}.tmp", 8, 310, 11, 150},
    {"~/Library/Caches/com.figma.Desktop", "{h16}_0", 8, 260, 6, 80},
    {"~/Library/Caches/com.microsoft.VSCode.ShipIt", "update.{h8}/Code-{i}.zip", 2, 420, 15, 90},
    {"~/Library/Caches/net.ankiweb.dtop", "{w}-{h8}.tmp", 4, 120, 14, 300},
    {"~/Library/Caches/org.videolan.vlc", "{w}-{h8}.png", 5, 60, 130, 400},
    {"~/Library/Caches/com.bohemiancoding.sketch3", "{h16}.cache", 8, 230, 700, 1200},
    {"~/Library/Caches/com.hnc.Discord", "{h16}.db", 6, 150, 350, 500},
    {"~/Library/Caches/com.apple.Music", "{w}-{h8}.jpg", 6, 110, 20, 200},
    {"~/Library/Caches/com.apple.Safari", "{h16}.db", 4, 90, 1, 20},
    {"~/Library/Caches/GeoServices", "{w}-{h8}.tile", 5, 60, 3, 60},
    {"~/Library/Caches/PlexMediaServer", "{w}-{h8}.tmp", 5, 130, 8, 60},
    {"~/Library/Logs/DiagnosticReports", "{w}-{i}.ips", 8, 50, 3, 240},
});

}  // namespace

void writeAppCaches(TreeWriter& writer) {
  writePiles(writer, browsers);
  writePiles(writer, media);
  writePiles(writer, electron);
  writePiles(writer, plain);
}

}  // namespace volbrin::demo
