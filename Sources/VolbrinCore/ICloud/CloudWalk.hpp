#pragma once

#include <cstdint>
#include <ctime>
#include <string>
#include <unordered_set>
#include <vector>

#include "../Bytes.hpp"

namespace volbrin {

/// A file that is large enough to be dealt with.
struct CloudEntry {
  std::string path;
  ByteCount bytes = 0;   ///< logical size
  bool onMac = false;    ///< its contents are on this disk
  std::time_t modified;  ///< in whole seconds
  std::uint64_t device = 0, inode = 0;
};

/// What a walk has met.
struct CloudTally {
  std::int64_t files = 0;
  ByteCount bytes = 0;       ///< logical sizes
  ByteCount onMacBytes = 0;  ///< on disk
  std::int64_t packages = 0;
};

struct CloudWalkOptions {
  ByteCount minimumBytes = 0;
  /// Nothing here tells whether contents are in a cloud, so files that take less than half of their
  /// size on disk count as such.
  bool guessesOnMac = false;
  std::unordered_set<std::string> passedOver = {};  ///< folders that are not entered
};

/// Looks at the regular files below `root`, their records alone: nothing is opened for reading.
/// Hidden items and parking folders are passed over with all that they hold; packages count in
/// `tally` and give no entries. Entries in the order of the tree, names by their bytes.
[[nodiscard]] std::vector<CloudEntry> walkCloud(const std::string& root,
                                                const CloudWalkOptions& options, CloudTally& tally);

}  // namespace volbrin
