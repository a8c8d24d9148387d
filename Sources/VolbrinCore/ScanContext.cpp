#include "ScanContext.hpp"

#include <unistd.h>

#include <algorithm>
#include <cstdlib>

#include "Text.hpp"

namespace volbrin {
namespace {

bool holdsIgnoringCase(const std::vector<std::string>& list, const std::string& lower) {
  return std::any_of(list.begin(), list.end(),
                     [&](const auto& each) { return lowercased(each) == lower; });
}

}  // namespace

const DriveInfo& ScanContext::startup() const {
  const auto found =
      std::find_if(drives.begin(), drives.end(), [](const auto& drive) { return drive.isStartup; });
  if (found != drives.end()) return *found;
  if (drives.empty()) {
    constexpr std::string_view line = "volbrin: the machine has no drive at all\n";
    [[maybe_unused]] const auto written = ::write(STDERR_FILENO, line.data(), line.size());
    std::abort();
  }
  return drives.front();
}

std::optional<std::string> ScanContext::openApp(const std::vector<std::string>& bundleIDs) const {
  for (const auto& bundleID : bundleIDs) {
    const std::string lower = lowercased(bundleID);
    const bool isRunning = std::any_of(running.begin(), running.end(),
                                       [&](const auto& each) { return lowercased(each) == lower; });
    if (!isRunning) continue;
    if (const auto* app = apps.appByBundleID(bundleID)) return app->name;
    for (const auto& owner : catalog.owners) {
      if (owner.bundleIDs && holdsIgnoringCase(*owner.bundleIDs, lower)) return owner.app;
    }
    return displayName(bundleID);
  }
  return std::nullopt;
}

}  // namespace volbrin
