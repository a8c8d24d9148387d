#pragma once

#include "../ScanContext.hpp"

namespace volbrin {

/// Turns each of the catalog's places that is there and big enough into a finding. It knows nothing
/// by itself: a new place needs no code. Runs first, so where it overlaps with another, it wins.
class PlacesFinder final : public SpaceFinder {
 public:
  [[nodiscard]] FinderResult find(const ScanContext& context) const override;
};

}  // namespace volbrin
