#pragma once

#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "DiskUsage.hpp"
#include "Fixture.hpp"
#include "Model.hpp"
#include "Platform/Platform.hpp"
#include "TreeFacts.hpp"

namespace volbrin {

/// The computer that the engine works on: the real one, or a fake one made of a folder tree and a
/// fixture. An immutable value, used from many threads at once. Files are files on both; all else
/// is asked through the Platform behind it.
class Mac {
 public:
  /// This computer. A process that has asked for it never pulls a cloud file down by reading.
  [[nodiscard]] static Mac real();

  /// The fake machine in `folder`. Raises the error of its fixture file: std::system_error when it
  /// can't be read, DecodingError when it is wrong.
  [[nodiscard]] static Mac fake(const std::string& folder);

  /// A machine on any platform, for tests: `scale` as in a fixture.
  Mac(std::string root, std::string home, std::shared_ptr<const Platform> platform,
      std::optional<Fixture> fixture = std::nullopt);

  /// Prefix of the machine's file system: empty on a real machine.
  [[nodiscard]] const std::string& root() const { return root_; }
  /// The user's home, absolute, links resolved.
  [[nodiscard]] const std::string& home() const { return home_; }
  /// Present exactly on a fake machine.
  [[nodiscard]] const std::optional<Fixture>& fixture() const { return fixture_; }
  [[nodiscard]] bool isFake() const { return fixture_.has_value(); }
  /// The folders that a cloud keeps, whether or not they exist.
  [[nodiscard]] const std::vector<CloudFolder>& cloud() const { return cloud_; }

  /// The one way from a written path ("~/x", "/Applications") to an absolute one.
  [[nodiscard]] std::string path(std::string_view written) const;
  /// The way back, for showing.
  [[nodiscard]] std::string display(std::string_view path) const;

  /// The first cloud folder that is `path` or lies above it.
  [[nodiscard]] std::optional<CloudFolder> cloudFolderOf(std::string_view path) const;

  /// What `path` takes on disk, cloud folders passed over (DiskUsage.hpp), scaled on a fake
  /// machine.
  [[nodiscard]] Usage usage(const std::string& path, MeasureObserver* observer = nullptr) const;
  /// What one pass tells of each tree, its usage as `usageOf` gives it, in the order of `paths`.
  [[nodiscard]] std::vector<TreeFacts> treeFactsOf(const std::vector<std::string>& paths,
                                                   const FileMarkers& markers,
                                                   MeasureObserver* observer = nullptr) const;
  /// The same for many paths, measured side by side.
  [[nodiscard]] std::map<std::string, Usage> usageOf(const std::vector<std::string>& paths,
                                                     MeasureObserver* observer = nullptr) const;
  /// What the user's Trash holds, in bytes.
  [[nodiscard]] ByteCount trashBytes() const;

  // The platform's operations; Platform.hpp tells each.
  [[nodiscard]] std::vector<DriveInfo> drives() const { return platform_->drives(); }
  [[nodiscard]] std::optional<std::string> run(const std::vector<std::string>& arguments) const {
    return platform_->run(arguments);
  }
  bool runAsAdmin(const std::vector<std::vector<std::string>>& commands) const {
    return platform_->runAsAdmin(commands);
  }
  std::string trash(const std::string& path) const { return platform_->trash(path); }
  [[nodiscard]] std::optional<std::string> which(const std::string& tool) const {
    return platform_->which(tool);
  }
  [[nodiscard]] std::optional<Date> lastUsed(const std::string& app) const {
    return platform_->lastUsed(app);
  }
  [[nodiscard]] std::set<std::string> runningBundleIDs() const {
    return platform_->runningBundleIDs();
  }
  [[nodiscard]] std::optional<std::vector<SimRuntime>> simulatorRuntimes() const {
    return platform_->simulatorRuntimes();
  }
  [[nodiscard]] const Platform& platform() const { return *platform_; }

 private:
  [[nodiscard]] std::vector<CloudFolder> findCloudFolders() const;
  class ScaledObserver;

  [[nodiscard]] Usage scaled(Usage usage) const;
  /// `observer` itself, or `own`, which stands before it and scales what it is told.
  MeasureObserver* scaled(MeasureObserver* observer, std::optional<ScaledObserver>& own) const;
  [[nodiscard]] std::unordered_set<std::string> cloudPaths() const;

  std::string root_;
  std::string home_;
  std::shared_ptr<const Platform> platform_;
  std::optional<Fixture> fixture_;
  std::vector<CloudFolder> cloud_;
};

/// A report that costs no scan: drives and Trash as they are now, nothing found.
[[nodiscard]] ScanReport statusOf(const Mac& mac);

}  // namespace volbrin
