#pragma once

#include <memory>
#include <string_view>
#include <vector>

#include "Catalog.hpp"
#include "Mac.hpp"
#include "ScanContext.hpp"

namespace volbrin {

/// The scan: every finder in a fixed order, and one gate for all that they propose.
struct Scanner {
  Scanner() = delete;

  struct NamedFinder {
    std::string_view name;  ///< the value of `Finding::finder`
    std::unique_ptr<SpaceFinder> finder;
  };

  /// The finders in running order. Where two findings overlap, the earlier finder keeps the space.
  [[nodiscard]] static const std::vector<NamedFinder>& finders();

  /// Looks at the whole machine. It can't fail; what couldn't be looked at or may not be offered is
  /// in the report's `skipped`. Keeps nothing, writes nothing.
  [[nodiscard]] static ScanReport scan(const Mac& mac, const Catalog& catalog,
                                       const ScanOptions& options);
};

}  // namespace volbrin
