#pragma once

#include <map>
#include <mutex>
#include <set>
#include <string>
#include <system_error>
#include <vector>

#include "Platform/Platform.hpp"

namespace volbrin::test {

/// A machine made of answers. Records every touch, in order, and can fail one that may fail. Stands
/// for a real computer in tests: what it isn't told about is not there.
class RecordingPlatform : public Platform {
 public:
  std::vector<DriveInfo> driveList;
  std::set<std::string> running;
  std::map<std::string, std::string> tools;     ///< path by name
  std::map<std::string, std::string> outputs;   ///< of `run`, by the words joined by blanks
  std::vector<std::string> index;               ///< of the system's own search
  std::map<std::string, std::string> appPaths;  ///< by bundle identifier
  std::map<std::string, std::string> teams;     ///< by app path
  std::map<std::string, Date> useDates;         ///< by app path
  std::string trashPath = "/nowhere/Trash";
  std::size_t failingTrash = 0;  ///< the n-th call of `trash` fails, from 1; 0 for none
  std::error_code failure = std::make_error_code(std::errc::io_error);

  /// "trash /path", "run tool word", ... Asking alone is recorded too.
  [[nodiscard]] std::vector<std::string> touches() const;

  [[nodiscard]] std::vector<DriveInfo> drives() const override;
  [[nodiscard]] std::string trashFolder() const override;
  std::string trash(const std::string& path) const override;
  [[nodiscard]] std::optional<std::string> run(
      const std::vector<std::string>& arguments) const override;
  bool runAsAdmin(const std::vector<std::vector<std::string>>& commands) const override;
  [[nodiscard]] std::optional<std::string> which(const std::string& tool) const override;
  [[nodiscard]] std::optional<Date> lastUsed(const std::string& path) const override;
  [[nodiscard]] std::set<std::string> runningBundleIDs() const override;
  [[nodiscard]] std::optional<std::vector<SimRuntime>> simulatorRuntimes() const override;
  [[nodiscard]] std::vector<std::string> indexedApps() const override;
  [[nodiscard]] std::optional<std::string> appPath(const std::string& bundleID) const override;
  [[nodiscard]] std::optional<std::string> teamIdentifier(const std::string& path) const override;

 private:
  void record(std::string touch) const;

  mutable std::mutex lock_;
  mutable std::vector<std::string> touches_;
  mutable std::size_t trashCalls_ = 0;
};

}  // namespace volbrin::test
