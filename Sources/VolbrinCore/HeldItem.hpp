#pragma once

#include <optional>
#include <string>

#include "Descriptor.hpp"
#include "DirectoryReader.hpp"

/// Acting on single items by the handle of the folder that holds them. Whoever puts a link in the
/// place of a folder after it was looked at, changes nothing of where an action lands.
namespace volbrin {

/// A name in a folder that is held open; nothing need stand there.
struct HeldItem {
  Descriptor folder;
  std::string name;

  /// What stands there, links not followed; absent when nothing does.
  [[nodiscard]] std::optional<EntryStat> stat() const { return statBelow(folder, name.c_str()); }
};

/// Holds the item at `path`, absolute, without "." and "..". A link in any folder above it is
/// refused. Raises std::system_error when the way is barred.
[[nodiscard]] HeldItem holdItem(const std::string& path);

/// The folder `name` of `parent`, made when it isn't there, held; a link in its place is refused.
/// Raises std::system_error.
[[nodiscard]] Descriptor makeFolderBelow(const Descriptor& parent, const std::string& name,
                                         unsigned mode);

/// Gives the item `from` the place `to`, on the same drive; nothing that stands there is ever
/// replaced. Raises std::system_error with the system's own error: EEXIST when the place is taken,
/// EXDEV when it is on another drive.
void moveExclusively(const HeldItem& from, const HeldItem& to);

}  // namespace volbrin
