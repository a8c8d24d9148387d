#pragma once

#include "Platform.hpp"

namespace volbrin {

/// A fake machine: a folder tree, and a fixture for all that a tree can't tell. It never runs
/// anything and asks nothing of the system but plain file operations below its root.
class FixturePlatform final : public Platform {
 public:
  /// `root` and `home` are absolute, links resolved.
  FixturePlatform(std::string root, std::string home, Fixture fixture);

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
  /// The string under "VolbrinTeamID" in the app's Info.plist, a key that only fixtures have.
  [[nodiscard]] std::optional<std::string> teamIdentifier(const std::string& path) const override;

 private:
  std::string root_;
  std::string home_;
  Fixture fixture_;
};

}  // namespace volbrin
