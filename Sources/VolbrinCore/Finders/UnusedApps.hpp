#pragma once

#include "../ScanContext.hpp"

namespace volbrin {

/// Finds big apps that nobody has opened for a long time. No date of use is no proof of that.
class UnusedAppsFinder final : public SpaceFinder {
 public:
  [[nodiscard]] FinderResult find(const ScanContext& context) const override;
};

}  // namespace volbrin
