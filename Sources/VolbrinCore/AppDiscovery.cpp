#include <algorithm>
#include <array>

#include "Files.hpp"
#include "Inventory.hpp"
#include "Parallel.hpp"
#include "Paths.hpp"
#include "PrivacyFence.hpp"
#include "PropertyList.hpp"
#include "Text.hpp"

namespace volbrin {
namespace {

/// Levels of folders below a root in which apps are looked for: a walk of a big Applications tree
/// stays cheap.
constexpr int searchDepth = 4;

void findApps(const std::string& folder, int depth, std::set<std::string>& found) {
  if (depth < 1) return;
  for (const auto& path : children(folder)) {
    if (PrivacyFence::shared().blocks(path) || !isDirectory(path) || isSymlink(path)) continue;
    if (path.ends_with(".app")) {
      found.insert(path);
    } else {
      findApps(path, depth - 1, found);
    }
  }
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

  std::set<std::string> paths;
  for (const auto& root : roots) findApps(root, searchDepth, paths);
  for (auto& path : mac.platform().indexedApps()) {
    if (counts(path)) paths.insert(std::move(path));
  }
  auto apps = parallelMap(std::vector(paths.begin(), paths.end()),
                          [&](const std::string& path) { return readApp(path, mac, otherDrives); });
  return AppIndex(std::move(apps), findPluginNames(mac));
}

}  // namespace volbrin
