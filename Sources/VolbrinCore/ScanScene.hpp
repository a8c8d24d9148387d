#pragma once

#include "ScanContext.hpp"
#include "Surroundings.hpp"

namespace volbrin {

/// Everything that one scan's context refers to, kept together for as long as the scan lasts. Looks
/// around on the machine when it is made; a fence must stand by then.
class ScanScene {
 public:
  /// Keeps references to `mac` and `catalog`.
  ScanScene(const Mac& mac, const Catalog& catalog, const ScanOptions& options);
  ScanScene(const ScanScene&) = delete;
  ScanScene& operator=(const ScanScene&) = delete;

  [[nodiscard]] const ScanContext& context() const { return context_; }

 private:
  Surroundings around_;
  OwnerResolver owners_;
  Survey survey_;
  ScanContext context_;
};

}  // namespace volbrin
