#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <unordered_set>
#include <vector>

#include "Dates.hpp"
#include "OwnFiles.hpp"
#include "Usage.hpp"

namespace volbrin {

/// What one pass over a tree tells.
struct TreeFacts {
  Usage usage;                 ///< as `diskUsage` gives it
  std::int64_t entries = 0;    ///< what lies in the tree, at any depth
  std::optional<Date> newest;  ///< the latest change of an entry in the tree, the root left out
  OwnFiles ownFiles;           ///< regular files that look like the user's own
};

/// Looks through many trees side by side, each as if alone; the facts in the order of `paths`. Of a
/// fenced path nothing is known. Folders in `skipping` (absolute paths) are not entered.
[[nodiscard]] std::vector<TreeFacts> treeFactsOf(const std::vector<std::string>& paths,
                                                 const std::unordered_set<std::string>& skipping,
                                                 const FileMarkers& markers,
                                                 MeasureObserver* observer = nullptr);

}  // namespace volbrin
