#pragma once

#include "../ScanContext.hpp"

namespace volbrin {

/// Looks where apps keep their data for what no installed app owns: folders whose owner is surely
/// gone, all of one owner together, and folders that match nothing, each by itself and only to be
/// looked at.
class LeftoversFinder final : public SpaceFinder {
 public:
  [[nodiscard]] FinderResult find(const ScanContext& context) const override;
};

}  // namespace volbrin
