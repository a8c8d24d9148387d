#include "Fixture.hpp"

#include <array>
#include <cstdint>
#include <nlohmann/json.hpp>
#include <string>
#include <string_view>

#include "AppTable.hpp"
#include "Dates.hpp"
#include "Scale.hpp"
#include "TreeWriter.hpp"

namespace volbrin::demo {

namespace {

using Json = nlohmann::ordered_json;

struct Drive {
  std::string_view name;
  std::string_view path;
  std::int64_t total;  ///< bytes, not scaled
  std::int64_t free;
};

constexpr auto drives = std::to_array<Drive>({
    {"Macintosh HD", "/", 494'384'795'648, 21'733'609'472},
    {"Backup", "/Volumes/Backup", 2'000'189'177'856, 1'412'605'366'272},
});

constexpr auto running = std::to_array<std::string_view>({
    "com.apple.finder",
    "com.apple.dock",
    "com.google.Chrome",
    "com.tinyspeck.slackmacgap",
    "com.spotify.client",
    "com.1password.1password",
});

/// Not every tool whose cache is on the machine is still installed.
constexpr auto tools = std::to_array<std::string_view>(
    {"brew", "npm", "docker", "xcrun", "pip3", "go", "cargo", "uv"});

struct Runtime {
  std::string_view id;
  std::string_view name;
  std::int64_t bytes;  ///< not scaled
};

constexpr auto runtimes = std::to_array<Runtime>({
    {"6B2B1D3E-0C1F-4B0E-9E57-2D9B8E1F4A70", "iOS 16.4", 6'812'004'352},
    {"E0F5A9C4-7D21-4C5B-8A36-51C2D7B90E18", "iOS 17.5", 7'344'218'112},
    {"2F8C4D17-93AB-4E60-B1D5-7A0E6C3F52B9", "watchOS 10.5", 3'901'255'680},
});

Json driveList() {
  Json list = Json::array();
  for (const Drive& drive : drives) {
    list.push_back(
        {{"name", drive.name}, {"path", drive.path}, {"total", drive.total}, {"free", drive.free}});
  }
  return list;
}

Json lastUsedMap(Seconds now) {
  Json map = Json::object();
  for (const App& app : allApps()) {
    map[std::string(app.path)] =
        app.lastUsedDays < 0 ? Json() : Json(isoMoment(daysBefore(now, app.lastUsedDays)));
  }
  return map;
}

Json runtimeList() {
  Json list = Json::array();
  for (const Runtime& runtime : runtimes) {
    list.push_back({{"id", runtime.id}, {"name", runtime.name}, {"bytes", runtime.bytes}});
  }
  return list;
}

}  // namespace

void writeFixture(TreeWriter& writer) {
  const Json fixture = {
      {"drives", driveList()},
      {"running", running},
      {"lastUsed", lastUsedMap(writer.now())},
      {"tools", tools},
      {"simRuntimes", runtimeList()},
      {"scale", sizeScale},
  };
  writer.text("/volbrin-fixture.json", fixture.dump(2) + "\n", 0);
}

}  // namespace volbrin::demo
