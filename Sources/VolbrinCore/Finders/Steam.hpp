#pragma once

#include "../ScanContext.hpp"

namespace volbrin {

/// Finds games that could live in a library on a drive, and workshop content that Steam left
/// behind. Games are only moved by Steam itself. External libraries aren't searched: what is on
/// them takes no space here.
class SteamFinder final : public SpaceFinder {
 public:
  [[nodiscard]] FinderResult find(const ScanContext& context) const override;
};

}  // namespace volbrin
