#pragma once

#include <string>

namespace volbrin {

/// The Trash of freedesktop.org (Desktop Trash Can Specification 1.0).

/// The home Trash: "$XDG_DATA_HOME/Trash", by default "~/.local/share/Trash". It need not exist.
[[nodiscard]] std::string homeTrash(const std::string& home);

/// Moves `path` to the Trash of its file system: the home Trash where that is the same one,
/// otherwise "$topdir/.Trash/$uid" or "$topdir/.Trash-$uid". Returns where it went. The record of
/// where it came from is made first and exclusively, so nothing in the Trash is ever replaced.
/// Raises std::system_error; `path` is then where it was.
std::string moveToTrash(const std::string& path, const std::string& home);

/// Removes the record of what lay at `path` in a Trash and was taken out of it.
void forgetTrashed(const std::string& path);

}  // namespace volbrin
