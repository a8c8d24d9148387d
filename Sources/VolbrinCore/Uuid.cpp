#include "Uuid.hpp"

#include <random>

namespace volbrin {

Uuid Uuid::random() {
  Uuid uuid;
  std::random_device source;
  for (auto& byte : uuid.bytes_) byte = static_cast<std::uint8_t>(source() & 0xFFU);
  uuid.bytes_[6] = static_cast<std::uint8_t>((uuid.bytes_[6] & 0x0FU) | 0x40U);
  uuid.bytes_[8] = static_cast<std::uint8_t>((uuid.bytes_[8] & 0x3FU) | 0x80U);
  return uuid;
}

}  // namespace volbrin
