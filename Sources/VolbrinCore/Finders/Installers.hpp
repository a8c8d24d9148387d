#pragma once

#include "../ScanContext.hpp"

namespace volbrin {

/// Finds old disk images and installers in Downloads. A "zip" counts only when its name tells that
/// it is the download of an installed app.
class InstallersFinder final : public SpaceFinder {
 public:
  [[nodiscard]] FinderResult find(const ScanContext& context) const override;
};

}  // namespace volbrin
