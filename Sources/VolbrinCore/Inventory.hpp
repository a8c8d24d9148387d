#pragma once

#include <map>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "Mac.hpp"

namespace volbrin {

/// One application bundle found on disk.
struct InstalledApp {
  std::string name;                     ///< the bundle's file name without its extension
  std::optional<std::string> bundleID;  ///< CFBundleIdentifier as written; absent when unreadable
  std::string path;
  bool onStartupDisk = true;
  std::optional<Date> lastUsed;  ///< absent when nobody knows, which is not "never"
  bool fromAppStore = false;     ///< it has a receipt of the App Store

  bool operator==(const InstalledApp&) const = default;
};

template <>
struct RecordFields<InstalledApp> {
  using App = InstalledApp;
  static constexpr auto list =
      std::tuple{field("name", &App::name),         field("bundleID", &App::bundleID),
                 field("path", &App::path),         field("onStartupDisk", &App::onStartupDisk),
                 field("lastUsed", &App::lastUsed), field("fromAppStore", &App::fromAppStore)};
};

/// What is installed, and which app a name or a bundle identifier stands for. Built once for a
/// scan; immutable after that.
class AppIndex {
 public:
  AppIndex() = default;
  /// `apps` in ascending order of path: of two with one key the first stays in the maps.
  AppIndex(std::vector<InstalledApp> apps, std::set<std::string> pluginNames);

  /// Looks for apps in the usual folders (four levels deep, never inside a bundle), the
  /// Applications folders of the other drives, `extraRoots` (full paths), and the system's own
  /// index.
  [[nodiscard]] static AppIndex discover(const Mac& mac, const std::vector<DriveInfo>& drives,
                                         const std::vector<std::string>& extraRoots);

  [[nodiscard]] const std::vector<InstalledApp>& apps() const { return apps_; }
  /// `normalized` names of the audio plug-ins; never the empty text.
  [[nodiscard]] const std::set<std::string>& pluginNames() const { return pluginNames_; }

  // Each lookup gives null when nothing fits. Pointers live as long as the index.

  /// The app with this identifier, or else with it shortened part by part from the right, so that
  /// "com.maker.app.helper" finds "com.maker.app"; never with fewer than two parts. Case is
  /// ignored.
  [[nodiscard]] const InstalledApp* appByBundleID(std::string_view bundleID) const;
  /// The app whose name is `name` (`normalized`, at least 3 characters), or else the first of which
  /// one name begins with the other, both of at least 4 characters.
  [[nodiscard]] const InstalledApp* appNamed(std::string_view name) const;
  /// The first app that has `name` (at least 4 characters) as a part of its identifier, the last
  /// part left out: a folder named after a company. Identifiers of three parts and more.
  [[nodiscard]] const InstalledApp* appFromMaker(std::string_view name) const;
  /// The first app whose identifier begins with `prefix`, case ignored.
  [[nodiscard]] const InstalledApp* appByBundlePrefix(std::string_view prefix) const;

  /// Whether the app hosts or belongs to installed plug-ins: its identifier begins with one of
  /// `vendors`, or its name and a plug-in's begin alike.
  [[nodiscard]] bool isPluginHost(const InstalledApp& app,
                                  const std::vector<std::string>& vendors) const;

 private:
  /// What the lookups compare, worked out once for each app.
  struct Keys {
    std::string name;                     ///< `normalized`
    std::size_t nameLength = 0;           ///< in characters
    std::string bundleID;                 ///< lower-cased; empty when absent
    std::vector<std::string> makerParts;  ///< `normalized` parts of the identifier but the last
  };

  std::vector<InstalledApp> apps_;
  std::vector<Keys> keys_;
  std::map<std::string, std::size_t, std::less<>> byID_;
  std::map<std::string, std::size_t, std::less<>> byName_;
  std::set<std::string> pluginNames_;
};

/// Whether a word, compared `normalized`, names no product when it stands last in a bundle
/// identifier: "app", "helper", ...
[[nodiscard]] bool isGenericBundleWord(std::string_view word);

/// A name for people, made from a bundle identifier: its last part, or the one before if the last
/// names no product ("app", "helper", ...), with a capital.
[[nodiscard]] std::string displayName(std::string_view bundleID);

}  // namespace volbrin
