#pragma once

#include <string>

#include "../Mac.hpp"

namespace volbrin {

/// Moves the item at `present` back to `old`, making the folders above it; nothing that stands
/// there is ever replaced, and a link in a folder's place on either way is an error. From another
/// drive it is copied under another name beside `old`, the copy proved and renamed, and only then
/// what was copied is removed at `present`: false when anything is left there because it changed
/// meanwhile or can't go. `observer` may be null, and may stop the copy. Raises std::exception; the
/// item is then where it was.
[[nodiscard]] bool putBack(const std::string& present, const std::string& old, const Mac& mac,
                           CopyObserver* observer);

/// Removes the symbolic link at `path`, if it is one that holds `target`; anything else stays.
/// Whether no such link is there any more. Raises std::system_error when it can't go.
bool removeLink(const std::string& path, const std::string& target);

/// What the symbolic link at `path` holds; absent when it is none or can't be read.
[[nodiscard]] std::optional<std::string> linkTarget(const std::string& path);

}  // namespace volbrin
