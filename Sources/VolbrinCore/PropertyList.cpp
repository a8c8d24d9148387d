#include "PropertyList.hpp"

#include <plist/plist.h>

#include <cstdint>
#include <cstdlib>
#include <memory>

#include "Files.hpp"

namespace volbrin {
namespace {

/// Far beyond any app's Info.plist; what is larger is no such file.
constexpr std::size_t maximumBytes = 16'000'000;

}  // namespace

std::optional<std::string> propertyListString(const std::string& path, const std::string& key) {
  const auto bytes = readFileIfPossible(path);
  return bytes ? stringInPropertyList(*bytes, key) : std::nullopt;
}

std::optional<std::string> stringInPropertyList(std::string_view bytes, const std::string& key) {
  constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";
  if (bytes.starts_with(byteOrderMark)) bytes.remove_prefix(byteOrderMark.size());
  if (bytes.empty() || bytes.size() > maximumBytes) return std::nullopt;
  plist_t parsed = nullptr;
  // Only these two: the library would also take JSON and OpenStep text for a property list.
  if (bytes.starts_with("bplist")) {
    plist_from_bin(bytes.data(), static_cast<std::uint32_t>(bytes.size()), &parsed);
  } else {
    plist_from_xml(bytes.data(), static_cast<std::uint32_t>(bytes.size()), &parsed);
  }
  const std::unique_ptr<void, void (*)(plist_t)> root(parsed, plist_free);
  if (!root || plist_get_node_type(root.get()) != PLIST_DICT) return std::nullopt;
  plist_t value = plist_dict_get_item(root.get(), key.c_str());
  if (value == nullptr || plist_get_node_type(value) != PLIST_STRING) return std::nullopt;
  std::uint64_t length = 0;
  const char* text = plist_get_string_ptr(value, &length);
  if (text == nullptr) return std::nullopt;
  // The library ends a text at a NUL and still counts it whole.
  const std::string whole(text, length);
  return whole.find('\0') == std::string::npos ? std::optional(whole) : std::nullopt;
}

}  // namespace volbrin
