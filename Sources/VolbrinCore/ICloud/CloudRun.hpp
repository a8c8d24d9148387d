#pragma once

#include <map>
#include <set>
#include <string>
#include <vector>

#include "../Acting/Act.hpp"
#include "ICloud.hpp"

namespace volbrin {

/// One run of the cleanup, shared by its units.
struct CloudRun {
  const Mac& mac;
  const CloudOptions& options;
  const ICloud::Progress& progress;
  CloudClock& clock;
  const DriveInfo& drive;              ///< the one to park on
  std::vector<std::string> roots;      ///< of iCloud Drive
  std::set<std::string> arrived = {};  ///< downloaded by this run, and here
  /// Digests of the copies that stay, by path; empty for one that couldn't be read.
  std::map<std::string, std::string> keeperHashes = {};

  /// Free bytes of the startup drive now; 0 without one.
  [[nodiscard]] ByteCount freeBytes() const;

  /// Hands a file that this run has downloaded back to the cloud.
  void giveBack(const std::string& path);
};

/// Brings the contents of these files down and waits for them; yields those that are here. A
/// download that stands still for 180 seconds ends the wait. On a fake machine all are here.
[[nodiscard]] std::set<std::string> download(const std::vector<std::string>& paths,
                                             const CloudRun& run);

/// A free path in the drive's parking folder for a file of iCloud Drive, in the same folders below
/// it. A number counts up from 2 before the extension.
[[nodiscard]] std::string parkedPath(const std::string& path, const CloudRun& run);

/// Takes one file out of iCloud Drive, from the checks to its removal. Raises nothing.
[[nodiscard]] Outcome park(const CloudItem& item, CloudRun& run);

}  // namespace volbrin
