#pragma once

#include "../Platform.hpp"

namespace volbrin {

/// A Linux computer: drives from the mount table, the Trash of freedesktop.org, programs by
/// executable name. What only a Mac has is not there.
class LinuxPlatform final : public Platform {
 public:
  explicit LinuxPlatform(std::string home) : home_(std::move(home)) {}

  [[nodiscard]] std::vector<DriveInfo> drives() const override;
  [[nodiscard]] std::string trashFolder() const override;
  std::string trash(const std::string& path) const override;
  [[nodiscard]] bool isInTrash(const std::string& path) const override;
  void forgetTrashed(const std::string& path) const override;
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
  std::string home_;
};

}  // namespace volbrin
