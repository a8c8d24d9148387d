#include "Chance.hpp"

#include <fmt/format.h>

#include <algorithm>

namespace volbrin::demo {

namespace {

std::uint64_t hashOf(std::string_view text) {
  std::uint64_t hash = 0xcbf29ce484222325U;  // FNV-1a, 64 bits
  for (const char c : text) {
    hash ^= static_cast<unsigned char>(c);
    hash *= 0x100000001b3U;
  }
  return hash;
}

}  // namespace

Chance::Chance(std::string_view seed) : state_(hashOf(seed)) {
  if (state_ == 0) state_ = 1;  // xorshift never leaves zero
  // Seeds that differ in their last letter start out alike; a few steps part them.
  for (int step = 0; step < 4; ++step) next();
}

std::uint64_t Chance::next() {
  state_ ^= state_ >> 12U;
  state_ ^= state_ << 25U;
  state_ ^= state_ >> 27U;
  return state_ * 0x2545f4914f6cdd1dU;
}

std::uint64_t Chance::below(std::uint64_t limit) { return next() % limit; }

double Chance::unit() { return static_cast<double>(next() >> 11U) * 0x1.0p-53; }

std::string Chance::hex(std::size_t digits) {
  std::string text;
  while (text.size() < digits) text += fmt::format("{:016x}", next());
  text.resize(digits);
  return text;
}

std::string Chance::uuid() {
  const std::uint64_t high = next();
  const std::uint64_t low = next();
  return fmt::format("{:08X}-{:04X}-{:04X}-{:04X}-{:012X}", high >> 32U, (high >> 16U) & 0xffffU,
                     high & 0xffffU, low >> 48U, low & 0xffffffffffffU);
}

void Chance::fill(std::span<char> bytes) {
  while (!bytes.empty()) {
    std::uint64_t word = next();
    const std::size_t count = std::min(bytes.size(), sizeof word);
    // Byte by byte from the low end, so that the contents don't depend on the machine's order.
    for (std::size_t i = 0; i < count; ++i, word >>= 8U) bytes[i] = static_cast<char>(word & 0xffU);
    bytes = bytes.subspan(count);
  }
}

}  // namespace volbrin::demo
