#pragma once

#include <string>

#include "../Mac.hpp"

namespace volbrin {

/// Moves the item at `present` back to `old`, making the folders above it; nothing that stands
/// there is ever replaced, and a link in a folder's place on either way is an error. From another
/// drive it is copied under another name beside `old`, the copy proved and renamed, and only then
/// the item at `present` is removed. Raises std::system_error; the item is then where it was.
void putBack(const std::string& present, const std::string& old, const Mac& mac);

/// Removes the symbolic link at `path`, if it is one that holds `target`; anything else stays.
/// Whether no such link is there any more. Raises std::system_error when it can't go.
bool removeLink(const std::string& path, const std::string& target);

/// What the symbolic link at `path` holds; absent when it is none or can't be read.
[[nodiscard]] std::optional<std::string> linkTarget(const std::string& path);

}  // namespace volbrin
