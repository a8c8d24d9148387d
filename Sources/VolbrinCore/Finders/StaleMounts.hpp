#pragma once

#include "../ScanContext.hpp"

namespace volbrin {

/// Finds folders in /Volumes that look like a drive and are none: they came into being when
/// something wrote to the path of an unplugged drive, and take space on the startup drive.
class StaleMountsFinder final : public SpaceFinder {
 public:
  [[nodiscard]] FinderResult find(const ScanContext& context) const override;
};

}  // namespace volbrin
