#pragma once

#include "../ScanContext.hpp"

namespace volbrin {

/// Offers Xcode's simulator runtimes, which only Xcode's own tool can remove.
class SimulatorsFinder final : public SpaceFinder {
 public:
  [[nodiscard]] FinderResult find(const ScanContext& context) const override;
};

}  // namespace volbrin
