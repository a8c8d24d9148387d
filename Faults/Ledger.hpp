#pragma once

#include <map>
#include <set>
#include <string>

#include "Bytes.hpp"

namespace volbrin::faults {

/// The contents of all regular files in some trees, by their SHA-256, with their sizes.
class Ledger {
 public:
  /// What is there now; files at or below `leftOut` don't count.
  explicit Ledger(const std::set<std::string>& tops, const std::set<std::string>& leftOut = {});

  /// Bytes of the contents that `later` no longer has anywhere.
  [[nodiscard]] ByteCount lostIn(const Ledger& later) const;

 private:
  std::map<std::string, ByteCount> contents_;
};

}  // namespace volbrin::faults
