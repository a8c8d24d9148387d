#pragma once

#include <string>

namespace volbrin::demo {

/// Removes the entry `name` of the open folder `parent`, with all that it holds. Goes from handle
/// to handle and never through a symbolic link: a link is removed, not what it leads to. Refuses
/// to enter a folder of another file system. Raises `Failure` at the first entry that can't go,
/// told by its path below `shown`, the path of `parent`.
void removeTree(int parent, const std::string& name, const std::string& shown);

}  // namespace volbrin::demo
