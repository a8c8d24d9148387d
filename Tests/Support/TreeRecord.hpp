#pragma once

#include <map>
#include <string>

namespace volbrin::test {

/// All that an entry is but its contents and its time of last access, by its path below a top.
using TreeRecord = std::map<std::string, std::string>;

/// The record of the tree at `top`: what a copy must keep, and what an action that changes nothing
/// leaves.
[[nodiscard]] TreeRecord recordOf(const std::string& top);

}  // namespace volbrin::test
