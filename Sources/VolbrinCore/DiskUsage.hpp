#pragma once

#include <map>
#include <string>
#include <unordered_set>
#include <vector>

#include "Usage.hpp"

namespace volbrin {

/// What the tree at `path` takes on disk: the allocated blocks of every entry, its own among them.
/// A file with several names counts once in a call. Links count themselves and are never followed;
/// other devices and the folders of `skipping` (absolute paths) count with their own blocks only.
/// Fenced folders are not looked into; a path that is or lies in one gives 0 and 0. A path that
/// isn't there gives 0 bytes and 1 unreadable. A sum past 64 bits is fatal.
[[nodiscard]] Usage diskUsage(const std::string& path,
                              const std::unordered_set<std::string>& skipping = {},
                              MeasureObserver* observer = nullptr);

/// Measures many paths side by side, each as if alone: a file that two of them share counts in
/// both.
[[nodiscard]] std::map<std::string, Usage> diskUsageOf(
    const std::vector<std::string>& paths, const std::unordered_set<std::string>& skipping = {},
    MeasureObserver* observer = nullptr);

}  // namespace volbrin
