#include "Model.hpp"

#include <algorithm>

#include "Paths.hpp"
#include "Text.hpp"

namespace volbrin {

std::string_view title(Tier tier) {
  switch (tier) {
    case Tier::rebuilds:
      return "Rebuilds itself";
    case Tier::reinstallable:
      return "Can be downloaded or installed again";
    case Tier::personal:
      return "Your files";
  }
  return "";
}

std::int64_t order(Tier tier) {
  return std::find(allTiers.begin(), allTiers.end(), tier) - allTiers.begin();
}

const DriveInfo* ScanReport::startup() const {
  const auto found = std::find_if(drives.begin(), drives.end(),
                                  [](const DriveInfo& drive) { return drive.isStartup; });
  return found == drives.end() ? nullptr : &*found;
}

const DriveInfo* deepestDrive(const std::vector<DriveInfo>& drives, std::string_view path) {
  const DriveInfo* best = nullptr;
  for (const auto& drive : drives) {
    if (!isAtOrInside(path, drive.path)) continue;
    if (best == nullptr || characterCount(drive.path) > characterCount(best->path)) best = &drive;
  }
  return best;
}

}  // namespace volbrin
