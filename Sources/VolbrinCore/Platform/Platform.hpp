#pragma once

#include <optional>
#include <set>
#include <string>
#include <vector>

#include "../Dates.hpp"
#include "../Fixture.hpp"
#include "../Model.hpp"
#include "../TreeCopy.hpp"

namespace volbrin {

/// What a machine must deliver beyond plain files: the one seam between the engine and the
/// computer. Behind it stand a fixture, Linux, and macOS. Absence and empty lists mean "not there";
/// only `trash` raises an error. All operations may be called from several threads at once.
class Platform {
 public:
  virtual ~Platform() = default;

  /// The mounted local drives that a user knows, each once.
  [[nodiscard]] virtual std::vector<DriveInfo> drives() const = 0;

  /// The user's Trash on the startup drive, as an absolute path; it need not exist.
  [[nodiscard]] virtual std::string trashFolder() const = 0;

  /// Moves `path` to the Trash of its drive and returns where it went. Nothing in the Trash is
  /// replaced. Raises std::system_error with the system's own error, `path` untouched.
  virtual std::string trash(const std::string& path) const = 0;

  /// Whether `path` lies in a Trash of this user's, on whatever drive.
  [[nodiscard]] virtual bool isInTrash(const std::string& path) const {
    return path.find("/.Trash/") != std::string::npos ||
           path.find("/.Trashes/") != std::string::npos;
  }

  /// What lay at `path` in the Trash was taken out of it again: lets go of what the system noted
  /// there.
  virtual void forgetTrashed(const std::string& /*path*/) const {}

  /// Copies a tree (TreeCopy.hpp). Absent when the copy is whole and on its drive.
  virtual std::optional<CopyFault> copyTree(const std::string& source, const std::string& target,
                                            CopyObserver* observer) const {
    return volbrin::copyTree(source, target, observer);
  }

  // A cloud's files; where there is no such cloud all contents are here, and stay.

  /// Asks for the contents of a file that is only in the cloud. They come some time later.
  virtual void requestDownload(const std::string& /*path*/) const {}
  /// Whether the file here is the cloud's current version, with all its contents.
  [[nodiscard]] virtual bool isCurrent(const std::string& /*path*/) const { return true; }
  /// Gives the file's contents back to the cloud; it keeps its name here.
  virtual void evict(const std::string& /*path*/) const {}

  /// Runs a program by argument vector, no shell between, and returns what it wrote to standard
  /// output, bad UTF-8 repaired. No input, no time limit. Absent when the list is empty, the
  /// program isn't found or doesn't start, or it ends with a status other than 0.
  [[nodiscard]] virtual std::optional<std::string> run(
      const std::vector<std::string>& arguments) const = 0;

  /// Runs commands, one after the other until one fails, with an administrator's rights, for which
  /// the system asks the user. Whether they went through.
  virtual bool runAsAdmin(const std::vector<std::vector<std::string>>& commands) const = 0;

  /// Where the command-line tool stands.
  [[nodiscard]] virtual std::optional<std::string> which(const std::string& tool) const = 0;

  /// When the app at `path` was last opened by the user; absent when nobody knows, which is not
  /// "never".
  [[nodiscard]] virtual std::optional<Date> lastUsed(const std::string& path) const = 0;

  /// The open apps: bundle identifiers on a Mac, names of executables on Linux.
  [[nodiscard]] virtual std::set<std::string> runningBundleIDs() const = 0;

  /// The simulator runtimes of Xcode; absent without Xcode's tools.
  [[nodiscard]] virtual std::optional<std::vector<SimRuntime>> simulatorRuntimes() const = 0;

  /// Paths of the apps that the system's own index knows (Spotlight), unfiltered and in any order,
  /// beyond those that a look into the usual folders finds.
  [[nodiscard]] virtual std::vector<std::string> indexedApps() const = 0;

  /// Where the system's own database says that the app of this identifier is (Launch Services). The
  /// path may be stale.
  [[nodiscard]] virtual std::optional<std::string> appPath(const std::string& bundleID) const = 0;

  /// The team that signed the app at `path`; the signature is read, not checked.
  [[nodiscard]] virtual std::optional<std::string> teamIdentifier(
      const std::string& path) const = 0;
};

}  // namespace volbrin
