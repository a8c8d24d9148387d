#include "Model.hpp"

#include <algorithm>

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

}  // namespace volbrin
