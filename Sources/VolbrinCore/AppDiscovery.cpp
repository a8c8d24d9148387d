#include <algorithm>
#include <array>
#include <deque>

#include "Files.hpp"
#include "Inventory.hpp"
#include "Parallel.hpp"
#include "Paths.hpp"
#include "PropertyList.hpp"
#include "Text.hpp"
#include "TreeWalk.hpp"

namespace volbrin {
namespace {

/// Levels of folders below a root in which apps are looked for: a walk of a big Applications tree
/// stays cheap.
constexpr std::size_t searchDepth = 4;

class AppVisitor final : public TreeVisitor {
 public:
  Onward visit(const WalkEntry& entry) override {
    if (entry.folder == nullptr) return Onward::into;
    if (entry.stat.kind != EntryKind::folder || entry.name.starts_with('.')) return Onward::around;
    if (entry.name.ends_with(".app")) {
      found.push_back(below(entry.folder->path(), entry.name));
      return Onward::around;
    }
    return entry.depth() < searchDepth ? Onward::into : Onward::around;
  }
  void unreadable(std::size_t /*root*/, const EntryStat* /*closed*/) override {}

  std::vector<std::string> found;
};

std::set<std::string> findApps(const std::vector<std::string>& roots) {
  std::deque<AppVisitor> lanes;
  walkTrees(roots,
            {.detail = WalkOptions::Detail::kind, .rootLinks = WalkOptions::RootLinks::follow},
            [&]() -> TreeVisitor& { return lanes.emplace_back(); });
  std::set<std::string> paths;
  for (const auto& lane : lanes) paths.insert(lane.found.begin(), lane.found.end());
  return paths;
}

/// Whether an app of the system's index is one that a user installed.
bool counts(const std::string& path) {
  return path.find(".app/") == std::string::npos && path.find("/.Trash/") == std::string::npos &&
         !path.starts_with("/System/") && !path.starts_with("/private/");
}

InstalledApp readApp(const std::string& path, const Mac& mac,
                     const std::vector<std::string>& otherDrives) {
  InstalledApp app;
  app.name = stem(path);
  app.bundleID = propertyListString(path + "/Contents/Info.plist", "CFBundleIdentifier");
  app.path = path;
  app.onStartupDisk = std::none_of(otherDrives.begin(), otherDrives.end(),
                                   [&](const auto& drive) { return isInside(path, drive); });
  app.lastUsed = mac.lastUsed(path);
  app.fromAppStore = exists(path + "/Contents/_MASReceipt");
  return app;
}

bool isPlugin(const std::string& path) {
  constexpr std::array<std::string_view, 5> extensions = {"component", "vst", "vst3", "aaxplugin",
                                                          "clap"};
  const std::string extension = lowercased(extensionOf(path));
  return std::find(extensions.begin(), extensions.end(), extension) != extensions.end();
}

/// Plug-ins stand in a folder for each format, or one more level down in a maker's folder.
std::set<std::string> findPluginNames(const Mac& mac) {
  std::set<std::string> names;
  for (const char* written : {"/Library/Audio/Plug-Ins", "~/Library/Audio/Plug-Ins",
                              "/Library/Application Support/Avid/Audio/Plug-Ins"}) {
    for (const auto& child : children(mac.path(written))) {
      for (const auto& path : isPlugin(child) ? std::vector{child} : children(child)) {
        if (isPlugin(path)) names.insert(normalized(stem(path)));
      }
    }
  }
  names.erase("");
  return names;
}

}  // namespace

AppIndex AppIndex::discover(const Mac& mac, const std::vector<DriveInfo>& drives,
                            const std::vector<std::string>& extraRoots) {
  std::vector<std::string> roots = {mac.path("/Applications"), mac.path("~/Applications"),
                                    mac.path("/System/Applications")};
  std::vector<std::string> otherDrives;
  for (const auto& drive : drives) {
    if (drive.isStartup) continue;
    otherDrives.push_back(drive.path);
    roots.push_back(below(drive.path, "Applications"));
  }
  roots.insert(roots.end(), extraRoots.begin(), extraRoots.end());

  auto paths = findApps(roots);
  for (auto& path : mac.platform().indexedApps()) {
    if (counts(path)) paths.insert(std::move(path));
  }
  auto apps = parallelMap(std::vector(paths.begin(), paths.end()),
                          [&](const std::string& path) { return readApp(path, mac, otherDrives); });
  return AppIndex(std::move(apps), findPluginNames(mac));
}

}  // namespace volbrin
