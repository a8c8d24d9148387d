#pragma once

#include <array>
#include <compare>
#include <cstdint>

namespace volbrin {

/// A universally unique identifier (RFC 4122).
class Uuid {
 public:
  /// A new random one (version 4), from the system's source of randomness.
  [[nodiscard]] static Uuid random();

  auto operator<=>(const Uuid&) const = default;

 private:
  std::array<std::uint8_t, 16> bytes_{};
};

}  // namespace volbrin
