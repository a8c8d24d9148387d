#pragma once

#include "../ScanContext.hpp"

namespace volbrin {

/// Gathers the per-app folders of ~/Library/Caches into one finding that rebuilds itself. The cache
/// of an app that is open is left alone, and a note says so.
class AppCachesFinder final : public SpaceFinder {
 public:
  [[nodiscard]] FinderResult find(const ScanContext& context) const override;
};

}  // namespace volbrin
