#pragma once

#include "../ScanContext.hpp"

namespace volbrin {

/// Says what big things stand at the top of the user's own folders, and which of four stories is
/// true of each: an app's library, a copy of what is on a drive, free to move to a drive, or bound
/// to stay. Never proposes to remove the only one of anything.
class PersonalFinder final : public SpaceFinder {
 public:
  [[nodiscard]] FinderResult find(const ScanContext& context) const override;
};

}  // namespace volbrin
