#pragma once

#include <optional>
#include <string>
#include <vector>

#include "Bytes.hpp"
#include "Dates.hpp"

/// Looking at single paths and single folders: with the traversal (TreeWalk.hpp) the only way in
/// which the engine looks at the disk. Paths are absolute. Nothing here raises an error: absence is
/// an empty answer. A path that PrivacyFence blocks is reported as not there, without asking the
/// system.
namespace volbrin {

/// Whether something stands at `path`, links followed.
[[nodiscard]] bool exists(const std::string& path);

/// Whether a folder stands at `path`, links followed.
[[nodiscard]] bool isDirectory(const std::string& path);

/// Whether the item at `path` itself is a symbolic link. Not fenced: it reads one item's
/// attributes.
[[nodiscard]] bool isSymlink(const std::string& path);

/// Logical size in bytes of that one item; a link's own. Absent when it can't be asked.
[[nodiscard]] std::optional<ByteCount> sizeOf(const std::string& path);

/// When the contents of that one item last changed; a link's own. Absent when it can't be asked.
[[nodiscard]] std::optional<Date> modified(const std::string& path);

/// Full paths of what a folder holds, in ascending order of their bytes, without names that begin
/// with ".". Empty for what is blocked, for a fence root itself, and when it can't be read.
[[nodiscard]] std::vector<std::string> children(const std::string& path);

/// Bare names in a folder, dot names included, in no particular order. Empty when `path` is fenced
/// or can't be read.
[[nodiscard]] std::vector<std::string> listNames(const std::string& path);

/// Who keeps this folder in step with a cloud: "iCloud Drive", "a cloud drive", or absent. From the
/// extended attribute "com.apple.file-provider-domain-id" of the item itself.
[[nodiscard]] std::optional<std::string> fileProviderOf(const std::string& path);

/// `path` with every link resolved, as realpath(3); absent when that fails.
[[nodiscard]] std::optional<std::string> resolved(const std::string& path);

/// The greatest file that `readFile` reads: rule files and manifests are far smaller.
inline constexpr ByteCount maximumFileBytes = 256'000'000;

/// The contents of a regular file. Raises std::system_error when it can't be read, is no regular
/// file (a pipe would never end), is blocked, or holds more than `maximumFileBytes`.
[[nodiscard]] std::string readFile(const std::string& path);

/// As `readFile`, with absence in place of the error.
[[nodiscard]] std::optional<std::string> readFileIfPossible(const std::string& path);

}  // namespace volbrin
