#include "JsonBytes.hpp"

#include <fmt/format.h>

#include <charconv>
#include <optional>

#include "Text.hpp"

namespace volbrin {
namespace {

constexpr const char* key = "percent";

std::string escaped(const std::string& text) {
  std::string result;
  for (const char c : text) {
    const auto byte = static_cast<unsigned char>(c);
    if (byte > 0x20 && byte < 0x7F && c != '%') {
      result += c;
    } else {
      result += fmt::format("%{:02X}", byte);
    }
  }
  return result;
}

std::optional<std::string> restored(const std::string& text) {
  std::string result;
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text[i] != '%') {
      result += text[i];
      continue;
    }
    unsigned byte = 0;
    const char* digits = text.data() + i + 1;
    if (text.size() - i < 3) return std::nullopt;
    const auto [end, error] = std::from_chars(digits, digits + 2, byte, 16);
    if (error != std::errc() || end != digits + 2 || byte == 0) return std::nullopt;
    result += static_cast<char>(byte);
    i += 2;
  }
  return result;
}

}  // namespace

void escapeBytes(Json& value) {
  if (value.is_string()) {
    const auto& text = value.get_ref<const std::string&>();
    if (!isValidUtf8(text)) value = Json{{key, escaped(text)}};
  } else if (value.is_structured()) {
    for (auto& each : value) escapeBytes(each);
  }
}

void restoreBytes(Json& value) {
  if (value.is_object() && value.size() == 1 && value.contains(key) && value[key].is_string()) {
    if (auto text = restored(value[key].get_ref<const std::string&>())) value = std::move(*text);
  } else if (value.is_structured()) {
    for (auto& each : value) restoreBytes(each);
  }
}

}  // namespace volbrin
