#pragma once

#include <sys/stat.h>

#include <ctime>
#include <optional>
#include <string>

#include "Bytes.hpp"
#include "Descriptor.hpp"

/// The few calls that each operating system spells in its own way. One source file per system
/// implements them, in Platform/; everything above is the same code everywhere.
namespace volbrin {

/// The value of an extended attribute of the item itself (links not followed). `name` is written as
/// on a Mac; Linux keeps it in the namespace "user." (xattr(7)). Absent without such an attribute,
/// with an empty one, and when its length changes while it is read.
[[nodiscard]] std::optional<std::string> extendedAttribute(const std::string& path,
                                                           const std::string& name);

/// When the item's contents last changed, in full precision.
[[nodiscard]] std::timespec modificationTime(const struct stat& status);

/// The file that this process runs from, links resolved; absent when the system doesn't say.
[[nodiscard]] std::optional<std::string> executablePath();

/// Brings a file's contents to its drive, past the drive's own cache where the system can. Whether
/// it could.
bool syncFile(const Descriptor& file);
/// Brings the names in a folder to its drive. Whether it could.
bool syncFolder(const std::string& path);
bool syncFolder(const Descriptor& folder);

/// Lets go of what memory holds of a file from byte `at` on, for `bytes` bytes or, with 0, to its
/// end, so that it is read from its drive next; for what has been synced. Without effect where the
/// system can't.
void dropFromMemory(const Descriptor& file, ByteCount at, ByteCount bytes);

/// Gives the entry `from` of a folder the place `to` in another, which may be the same; nothing
/// that stands there is ever replaced. False, with the system's number in errno, when it stays
/// where it is: EEXIST when the place is taken, EXDEV when it is on another drive.
[[nodiscard]] bool renameExclusively(const Descriptor& fromFolder, const std::string& from,
                                     const Descriptor& toFolder, const std::string& to);

}  // namespace volbrin
