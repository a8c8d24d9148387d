#pragma once

#include <cstdint>
#include <string_view>

namespace volbrin {

/// A count of bytes. Signed, so that differences are plain subtractions; a gigabyte is 10^9.
using ByteCount = std::int64_t;

/// Size in bytes of the unit in which `st_blocks` counts (stat(2), sys/stat.h).
inline constexpr ByteCount statBlockBytes = 512;

/// Ends the process with one line on standard error, "volbrin: overflow ...: <what>", and status
/// 134 (abort): a byte count that no longer fits 64 bits can only come from a fault, and no figure
/// that follows from it could be trusted.
[[noreturn]] void overflowFault(std::string_view what);

/// `a + b`; a sum that leaves the 64-bit range is an `overflowFault`. `what` names the sum.
[[nodiscard]] inline ByteCount addBytes(ByteCount a, ByteCount b, std::string_view what) {
  ByteCount sum = 0;
  if (__builtin_add_overflow(a, b, &sum)) overflowFault(what);
  return sum;
}

/// `a - b`, as `addBytes`.
[[nodiscard]] inline ByteCount subtractBytes(ByteCount a, ByteCount b, std::string_view what) {
  ByteCount difference = 0;
  if (__builtin_sub_overflow(a, b, &difference)) overflowFault(what);
  return difference;
}

/// `bytes * factor` cut towards zero; a product outside the 64-bit range, or one that is no number,
/// is an `overflowFault`. `what` names the product.
[[nodiscard]] ByteCount scaledBytes(ByteCount bytes, double factor, std::string_view what);

/// Whether `value`, cut towards zero, fits a ByteCount.
[[nodiscard]] bool fitsByteCount(double value);

}  // namespace volbrin
