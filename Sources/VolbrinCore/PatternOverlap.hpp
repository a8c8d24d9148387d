#pragma once

#include <string>
#include <string_view>
#include <vector>

/// How the path patterns of a rule file lie to each other, without a disk to try them on.
namespace volbrin {

/// "~/Library/x*" as "~", "Library", "x*": paths of the home and of the root never mix.
using PatternComponents = std::vector<std::string>;
[[nodiscard]] PatternComponents patternComponents(std::string_view written);

/// Whether `text` has a "*" in it.
[[nodiscard]] bool hasStar(std::string_view text);

/// Whether a path of one pattern can equal, hold or lie in a path of the other. Two components with
/// stars are taken to meet unless what stands before or behind their stars rules it out.
[[nodiscard]] bool canTouch(const PatternComponents& a, const PatternComponents& b);

}  // namespace volbrin
