#include "Sha256.hpp"

#include <openssl/evp.h>

#include <array>

namespace volbrin {
namespace {

std::string hexadecimal(std::span<const unsigned char> bytes) {
  constexpr const char* digits = "0123456789abcdef";
  std::string text;
  for (const unsigned char byte : bytes) {
    text += digits[byte >> 4];
    text += digits[byte & 15];
  }
  return text;
}

}  // namespace

struct Sha256::State {
  std::unique_ptr<EVP_MD_CTX, void (*)(EVP_MD_CTX*)> context{EVP_MD_CTX_new(), EVP_MD_CTX_free};
};

Sha256::Sha256() : state_(std::make_unique<State>()) {
  EVP_DigestInit_ex(state_->context.get(), EVP_sha256(), nullptr);
}

Sha256::~Sha256() = default;

void Sha256::add(std::span<const std::byte> bytes) {
  EVP_DigestUpdate(state_->context.get(), bytes.data(), bytes.size());
}

std::string Sha256::digest() {
  std::array<unsigned char, 32> bytes{};
  EVP_DigestFinal_ex(state_->context.get(), bytes.data(), nullptr);
  return hexadecimal(bytes);
}

std::string sha256Text(std::span<const std::uint32_t, 8> words) {
  std::array<unsigned char, 32> bytes{};
  for (std::size_t i = 0; i < bytes.size(); ++i) {
    bytes[i] = static_cast<unsigned char>(words[i / 4] >> (24 - 8 * (i % 4)));
  }
  return hexadecimal(bytes);
}

std::string sha256OfText(std::string_view text) {
  Sha256 hash;
  hash.add(std::as_bytes(std::span(text)));
  return hash.digest();
}

}  // namespace volbrin
