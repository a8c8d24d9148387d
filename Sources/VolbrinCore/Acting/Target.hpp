#pragma once

#include <string>

#include "../HeldItem.hpp"

/// Places where something is to be put, and whose folders may not be there yet.
namespace volbrin {

/// Whether anything stands at `path`, a link to nothing too: what is put there would meet it.
[[nodiscard]] bool isTaken(const std::string& path);

/// Makes the folders above `path`, absolute, that are missing, and holds the place. No link leads
/// there: one in any folder's place is an error. Raises std::system_error.
HeldItem prepareTarget(const std::string& path);

}  // namespace volbrin
