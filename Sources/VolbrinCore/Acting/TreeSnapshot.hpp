#pragma once

#include <string>
#include <utility>
#include <vector>

#include "../DirectoryReader.hpp"

namespace volbrin {

/// What stood in a tree at one moment, so that later only that is given up.
class TreeSnapshot {
 public:
  /// Of the file, link or folder at `path`, absolute. Raises std::system_error when a part of it
  /// can't be looked at.
  explicit TreeSnapshot(const std::string& path);

  /// Removes for good what is still as it was, by directory handle and never through a link; what
  /// has changed or come since stays, and the folders that hold it. Whether nothing is left.
  [[nodiscard]] bool removeUnchanged() const;

 private:
  std::string path_;
  /// By path below the top, which is the first and has an empty one; a folder before what is in it.
  std::vector<std::pair<std::string, EntryStat>> entries_;
};

}  // namespace volbrin
