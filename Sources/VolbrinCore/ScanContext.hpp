#pragma once

#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "Catalog.hpp"
#include "DiskUsage.hpp"
#include "Inventory.hpp"
#include "Mac.hpp"
#include "OwnerResolver.hpp"
#include "Paths.hpp"
#include "SteamLibrary.hpp"
#include "Survey.hpp"

namespace volbrin {

/// Hears how a scan goes on, for a progress display; changes nothing of its result.
class ScanObserver : public MeasureObserver {
 public:
  /// A finder begins; `name` as in `Finding::finder`. Called on the scanning thread.
  virtual void finderBegins(std::string_view name) = 0;
  /// A finder turns to one place. Called on the scanning thread.
  virtual void looksAt(std::string_view title) = 0;
};

struct ScanOptions {
  /// In place of every size threshold of the catalog.
  std::optional<ByteCount> minimumBytes;
  /// The moment of the scan: all ages are measured from it.
  Date now;
  /// The user's own never-touch paths.
  std::vector<ProtectedPath> extraProtected;
  /// Keep out of the folders for which macOS asks the user.
  bool avoidPrivacyPrompts = false;
  /// Null for none; must outlive the scan.
  ScanObserver* observer = nullptr;
};

/// What every finder is given: the machine as it was at the start of one scan. Never changed.
struct ScanContext {
  const Mac& mac;
  const Catalog& catalog;
  std::vector<DriveInfo> drives;
  const AppIndex& apps;
  const OwnerResolver& owners;
  std::vector<SteamLibrary> steam;  ///< unmounted ones included
  std::set<std::string> running;    ///< bundle identifiers of open apps
  ScanOptions options;
  const Survey& survey;  ///< what this scan has seen of the trees it looks at
  PathSet claimed;  ///< every path that the catalog's places name, whether or not it was offered

  /// The startup drive, or else the first; a machine without any drive is a fatal fault.
  [[nodiscard]] const DriveInfo& startup() const;
  /// The drive that holds `path`: of all mounted at or above it the deepest. Null when none is.
  [[nodiscard]] const DriveInfo* driveOf(std::string_view path) const {
    return deepestDrive(drives, path);
  }
  /// Whether a claimed path is `path`, lies above it or inside it.
  [[nodiscard]] bool isClaimed(std::string_view path) const { return claimed.touches(path); }
  /// The display name of the first of these that is running, case ignored; absent when none is.
  [[nodiscard]] std::optional<std::string> openApp(const std::vector<std::string>& bundleIDs) const;
};

/// What one finder returns.
struct FinderResult {
  std::vector<Finding> findings;
  std::vector<Skipped> skipped;
  std::vector<std::string> notes;
};

/// A finder only proposes: what keeps a finding away from protected data is the scan's gate. It
/// can't fail; it reports trouble through `skipped` and `notes`.
class SpaceFinder {
 public:
  virtual ~SpaceFinder() = default;
  [[nodiscard]] virtual FinderResult find(const ScanContext& context) const = 0;
};

}  // namespace volbrin
