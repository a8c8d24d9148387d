#pragma once

#include <string>
#include <vector>

#include "Mac.hpp"

namespace volbrin {

/// The real paths that a written pattern stands for on `mac`, those that exist. A "*" works within
/// one component and never matches a hidden name; in a component with a "*", "?" and "[...]" work
/// too (fnmatch(3)). A component without one is a literal name. Sorted within each folder.
[[nodiscard]] std::vector<std::string> expand(const std::string& pattern, const Mac& mac);

/// Whether a name in the folder `path`, or in a folder directly in it, matches `pattern`
/// (fnmatch(3), hidden names too). A fenced folder lists nothing.
[[nodiscard]] bool contains(const std::string& path, const std::string& pattern);

}  // namespace volbrin
