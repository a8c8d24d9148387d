#pragma once

#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

#include "Bytes.hpp"
#include "Model.hpp"
#include "OwnFiles.hpp"

namespace volbrin {

/// What the engine knows of the world, kept out of the code in one JSON file: what is never
/// touched, which places can be cleared and how, whose folders are whose, every threshold. There
/// are no defaults: a file with one bad record doesn't load.
struct Catalog {
  /// In `protectedPaths` a path in `Mac::path` form; in `protectedSuffixes` the ending of a name.
  struct Protected {
    std::string path;
    std::string why;  ///< shown to the user
  };

  /// One named place, which becomes a finding when it is there and big enough.
  struct Place {
    std::string id;  ///< unique and stable: selections and the history name it
    std::string title;
    std::vector<std::string> paths;  ///< patterns in the form of `expand`
    Tier tier = Tier::personal;
    std::optional<std::string> owner;                        ///< display name of whose it is
    std::optional<std::vector<std::string>> ownerBundleIDs;  ///< block the finding while they run
    std::optional<std::string> tool;  ///< command-line tool that the action needs
    std::optional<std::string> app;   ///< bundle identifier of the app it belongs to
    Action action;
    std::optional<Action> actionIfToolMissing;
    std::string reason;
    std::optional<std::string> reasonIfUninstalled;  ///< when `app` isn't installed
    std::optional<bool> onlyIfUninstalled;  ///< the place counts only if `app` isn't installed
    std::string getBack;
    std::optional<std::string> marker;  ///< a path counts only if `contains` finds this in it
    std::optional<ByteCount> minBytes;  ///< in place of `thresholds.place`
    std::optional<std::string> caution;
  };

  /// Who owns which folder names.
  struct Owner {
    std::vector<std::string> names;
    std::string app;  ///< display name
    std::optional<std::vector<std::string>> bundleIDs;
    std::optional<std::string> bundlePrefix;
    std::optional<std::string> steamAppID;
  };

  /// What marks a file as the user's own work.
  using Markers = FileMarkers;

  /// A big folder that only its app can move.
  struct AppLibrary {
    std::string match;  ///< a path that begins with "~" or "/", else an ending of a folder's name
    std::string app;
    std::string how;  ///< the steps, inside that app
  };

  /// Sizes in bytes, ages in days.
  struct Thresholds {
    ByteCount leftover = 0;
    ByteCount unknownLeftover = 0;
    ByteCount appCaches = 0;
    ByteCount appCacheEach = 0;
    ByteCount splitInstall = 0;
    ByteCount workshop = 0;
    ByteCount installerBytes = 0;
    std::int64_t installerDays = 0;
    ByteCount unusedAppBytes = 0;
    std::int64_t unusedAppDays = 0;
    ByteCount personalFolder = 0;
    ByteCount staleMount = 0;
    ByteCount place = 0;
  };

  std::int64_t version = 0;
  std::vector<Protected> protectedPaths;  ///< the key "protected"
  std::vector<Protected> protectedSuffixes;
  std::vector<Place> places;
  std::vector<Owner> owners;
  std::vector<std::string> pluginVendors;
  std::vector<std::string> systemNames;
  std::vector<std::string> systemPrefixes;
  Markers personalMarkers;
  std::vector<AppLibrary> appLibraries;
  Thresholds thresholds;

  /// Reads the rule file at `path` (relative to the working directory), or at `defaultPath()`.
  /// Raises CatalogNotFound, std::system_error when it can't be read, DecodingError when it is
  /// wrong.
  [[nodiscard]] static Catalog load(const std::optional<std::string>& path = std::nullopt);

  /// Where the rule file is, the first that exists: what the environment variable VOLBRIN_CATALOG
  /// names; beside the program ("../rules", "../Resources/engine/rules"); in the source tree that
  /// the program was built from. Absent when there is none.
  [[nodiscard]] static std::optional<std::string> defaultPath();
};

/// No rule file was given and none was found.
class CatalogNotFound : public std::runtime_error {
 public:
  CatalogNotFound();
};

template <>
struct RecordFields<Catalog::Protected> {
  static constexpr auto list =
      std::tuple{field("path", &Catalog::Protected::path), field("why", &Catalog::Protected::why)};
};

template <>
struct RecordFields<Catalog::Place> {
  using Place = Catalog::Place;
  static constexpr auto list = std::tuple{field("id", &Place::id),
                                          field("title", &Place::title),
                                          field("paths", &Place::paths),
                                          field("tier", &Place::tier),
                                          field("owner", &Place::owner),
                                          field("ownerBundleIDs", &Place::ownerBundleIDs),
                                          field("tool", &Place::tool),
                                          field("app", &Place::app),
                                          field("action", &Place::action),
                                          field("actionIfToolMissing", &Place::actionIfToolMissing),
                                          field("reason", &Place::reason),
                                          field("reasonIfUninstalled", &Place::reasonIfUninstalled),
                                          field("onlyIfUninstalled", &Place::onlyIfUninstalled),
                                          field("getBack", &Place::getBack),
                                          field("marker", &Place::marker),
                                          field("minBytes", &Place::minBytes),
                                          field("caution", &Place::caution)};
};

template <>
struct RecordFields<Catalog::Owner> {
  using Owner = Catalog::Owner;
  static constexpr auto list =
      std::tuple{field("names", &Owner::names), field("app", &Owner::app),
                 field("bundleIDs", &Owner::bundleIDs), field("bundlePrefix", &Owner::bundlePrefix),
                 field("steamAppID", &Owner::steamAppID)};
};

template <>
struct RecordFields<Catalog::Markers> {
  static constexpr auto list = std::tuple{field("folders", &Catalog::Markers::folders),
                                          field("extensions", &Catalog::Markers::extensions)};
};

template <>
struct RecordFields<Catalog::AppLibrary> {
  using Library = Catalog::AppLibrary;
  static constexpr auto list = std::tuple{field("match", &Library::match),
                                          field("app", &Library::app), field("how", &Library::how)};
};

template <>
struct RecordFields<Catalog::Thresholds> {
  using Limits = Catalog::Thresholds;
  static constexpr auto list = std::tuple{field("leftover", &Limits::leftover),
                                          field("unknownLeftover", &Limits::unknownLeftover),
                                          field("appCaches", &Limits::appCaches),
                                          field("appCacheEach", &Limits::appCacheEach),
                                          field("splitInstall", &Limits::splitInstall),
                                          field("workshop", &Limits::workshop),
                                          field("installerBytes", &Limits::installerBytes),
                                          field("installerDays", &Limits::installerDays),
                                          field("unusedAppBytes", &Limits::unusedAppBytes),
                                          field("unusedAppDays", &Limits::unusedAppDays),
                                          field("personalFolder", &Limits::personalFolder),
                                          field("staleMount", &Limits::staleMount),
                                          field("place", &Limits::place)};
};

template <>
struct RecordFields<Catalog> {
  static constexpr auto list = std::tuple{field("version", &Catalog::version),
                                          field("protected", &Catalog::protectedPaths),
                                          field("protectedSuffixes", &Catalog::protectedSuffixes),
                                          field("places", &Catalog::places),
                                          field("owners", &Catalog::owners),
                                          field("pluginVendors", &Catalog::pluginVendors),
                                          field("systemNames", &Catalog::systemNames),
                                          field("systemPrefixes", &Catalog::systemPrefixes),
                                          field("personalMarkers", &Catalog::personalMarkers),
                                          field("appLibraries", &Catalog::appLibraries),
                                          field("thresholds", &Catalog::thresholds)};
};

}  // namespace volbrin
