#pragma once

#include <functional>
#include <string>
#include <vector>

#include "TreeVisitor.hpp"
#include "WalkOptions.hpp"

/// The one traversal of the engine: everything that looks at whole trees is a visitor on it.
///
/// It goes by directory handle, names relative to it, and so survives any depth and any name. Links
/// are never followed, the root's device is never left, mount points, fenced and skipped folders
/// are not entered. Several lanes (threads) share the work where it pays; memory grows with the
/// depth of the tree and the widest folders on the way down, never with the number of files.
namespace volbrin {

/// Walks every tree of `roots`, absolute paths; those that are fenced are left out. `makeVisitor`
/// is called on the calling thread or under a lock, once for each lane, and the visitors must
/// outlive the call. A root that is no folder is one entry.
void walkTrees(const std::vector<std::string>& roots, const WalkOptions& options,
               const std::function<TreeVisitor&()>& makeVisitor);

}  // namespace volbrin
