#pragma once

#include "../HeldItem.hpp"

namespace volbrin {

/// Removes `item` for good, with all that is in it. Goes by directory handle: a link is removed and
/// never followed, however deep the tree is, whatever somebody puts in a folder's place meanwhile.
/// Nothing that is mounted inside is entered. Raises std::system_error at the first entry that
/// can't go; those before it are gone.
void removeTree(const HeldItem& item);

}  // namespace volbrin
