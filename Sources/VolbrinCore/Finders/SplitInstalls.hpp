#pragma once

#include "../ScanContext.hpp"

namespace volbrin {

/// Tells of the data that an app on another drive keeps on this Mac: whoever moved the app there
/// thinks that the space is free. Nothing is proposed for removal.
class SplitInstallsFinder final : public SpaceFinder {
 public:
  [[nodiscard]] FinderResult find(const ScanContext& context) const override;
};

}  // namespace volbrin
