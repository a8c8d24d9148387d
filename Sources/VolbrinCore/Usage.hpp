#pragma once

#include <cstdint>
#include <tuple>

#include "Bytes.hpp"
#include "Json.hpp"

namespace volbrin {

/// What a path takes on disk.
struct Usage {
  ByteCount bytes = 0;          ///< allocated bytes
  std::int64_t unreadable = 0;  ///< entries that couldn't be read: `bytes` is then a lower bound

  bool operator==(const Usage&) const = default;
};

template <>
struct RecordFields<Usage> {
  static constexpr auto list =
      std::tuple{field("bytes", &Usage::bytes), field("unreadable", &Usage::unreadable)};
};

/// Hears how a measurement goes on.
class MeasureObserver {
 public:
  virtual ~MeasureObserver() = default;
  /// So many bytes more have been counted. Called from any of the threads that measure.
  virtual void measured(ByteCount bytes) = 0;
};

}  // namespace volbrin
