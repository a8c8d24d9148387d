#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace volbrin {

/// The string under `key` at the top level of a property list, XML or binary (Apple's plist(5)).
/// Absent when the file can't be read, is no dictionary, or holds no string there.
[[nodiscard]] std::optional<std::string> propertyListString(const std::string& path,
                                                            const std::string& key);

/// As `propertyListString`, from a property list's bytes.
[[nodiscard]] std::optional<std::string> stringInPropertyList(std::string_view bytes,
                                                              const std::string& key);

}  // namespace volbrin
