#pragma once

#include <string>
#include <string_view>

namespace volbrin {

/// The folder at the top of a drive that takes what leaves iCloud Drive. None of that name is
/// looked into.
inline constexpr std::string_view parkingFolder = "Removed from iCloud";

/// A file's name without what programs add to the names of copies, in any stacking: " copy",
/// " copy 2", " (2)", " 2" at the end, before the extension. Lower-cased.
[[nodiscard]] std::string normalizedCopyName(std::string_view name);

/// Whether a folder of that name is shown to users as one thing: an app, a photo library, a
/// project.
[[nodiscard]] bool isPackageName(std::string_view name);

/// The id of the file at `path`: "icloud-" and the first 12 hexadecimal digits of its SHA-256.
[[nodiscard]] std::string cloudID(std::string_view path);

}  // namespace volbrin
