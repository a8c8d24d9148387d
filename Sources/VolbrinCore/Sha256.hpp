#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <string_view>

namespace volbrin {

/// SHA-256 (FIPS 180-4) of bytes that come piece by piece.
class Sha256 {
 public:
  Sha256();
  ~Sha256();
  Sha256(const Sha256&) = delete;
  Sha256& operator=(const Sha256&) = delete;

  void add(std::span<const std::byte> bytes);

  /// The digest in 64 lower-case hexadecimal digits; once, at the end.
  [[nodiscard]] std::string digest();

 private:
  struct State;
  std::unique_ptr<State> state_;
};

/// The eight words of a digest as its 64 lower-case hexadecimal digits.
[[nodiscard]] std::string sha256Text(std::span<const std::uint32_t, 8> words);

/// The digest of a text's bytes.
[[nodiscard]] std::string sha256OfText(std::string_view text);

}  // namespace volbrin
