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
/// Lists and dictionaries in one file: the library goes into them by recursion, so their number
/// bounds the stack that a hostile file can take. The largest apps have some thousands.
constexpr std::size_t mostContainers = 10'000;

std::uint64_t bigEndian(std::string_view bytes) {
  std::uint64_t value = 0;
  for (const char c : bytes) value = value << 8U | static_cast<unsigned char>(c);
  return value;
}

/// In the binary form the last 32 bytes tell where a table of the objects' places is; an object's
/// first byte tells its kind (Apple's CFBinaryPList.c).
bool hasFewContainersInBinary(std::string_view bytes) {
  constexpr std::size_t trailerBytes = 32;
  if (bytes.size() < trailerBytes) return false;
  const auto trailer = bytes.substr(bytes.size() - trailerBytes);
  const auto offsetBytes = bigEndian(trailer.substr(6, 1));
  const auto count = bigEndian(trailer.substr(8, 8));
  const auto table = bigEndian(trailer.substr(24, 8));
  if (offsetBytes == 0 || offsetBytes > 8 || table > bytes.size() ||
      count > (bytes.size() - table) / offsetBytes) {
    return false;
  }
  std::size_t containers = 0;
  for (std::uint64_t i = 0; i < count; ++i) {
    const auto place = bigEndian(bytes.substr(table + i * offsetBytes, offsetBytes));
    const auto kind = place < bytes.size() ? static_cast<unsigned char>(bytes[place]) >> 4U : 0U;
    containers += kind >= 0xA ? 1 : 0;  // array, set, dictionary
  }
  return containers <= mostContainers;
}

bool hasFewContainersInXml(std::string_view bytes) {
  std::size_t containers = 0;
  for (const std::string_view tag : {"<array", "<dict"}) {
    for (auto at = bytes.find(tag); at != std::string_view::npos; at = bytes.find(tag, at + 1)) {
      ++containers;
    }
  }
  return containers <= mostContainers;
}

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
    if (!hasFewContainersInBinary(bytes)) return std::nullopt;
    plist_from_bin(bytes.data(), static_cast<std::uint32_t>(bytes.size()), &parsed);
  } else {
    if (!hasFewContainersInXml(bytes)) return std::nullopt;
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
