#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>

namespace volbrin::demo {

/// Pseudo-random numbers that depend on a seed text alone: the same text gives the same numbers on
/// every machine, so that two demo machines are alike to the last byte. Not for secrets.
class Chance {
 public:
  explicit Chance(std::string_view seed);

  std::uint64_t next();

  /// From 0 up to, but not including, `limit`, which must be above 0.
  std::uint64_t below(std::uint64_t limit);

  /// From 0 up to, but not including, 1.
  double unit();

  /// `digits` lowercase hexadecimal digits.
  std::string hex(std::size_t digits);

  /// In the usual form of 36 characters, uppercase.
  std::string uuid();

  void fill(std::span<char> bytes);

 private:
  std::uint64_t state_;
};

}  // namespace volbrin::demo
