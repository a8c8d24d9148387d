#pragma once

#include <functional>
#include <string>
#include <vector>

#include "../Acting/CleanResult.hpp"
#include "../Mac.hpp"
#include "CloudRecords.hpp"

namespace volbrin {

/// The sizes from which files count, in bytes.
struct CloudSizes {
  ByteCount minimum = 20'000'000;    ///< below it a file is in no list
  ByteCount big = 1'000'000'000;     ///< from it on a lone file is offered
  ByteCount sizeOnly = 100'000'000;  ///< from it on files of one size count as copies by any name
};

struct CloudOptions {
  std::string drive;          ///< name or path of the drive to park on
  ByteCount chunkBytes = 0;   ///< most that is downloaded at once
  ByteCount marginBytes = 0;  ///< free space that stays on the Mac
  bool agreed = false;        ///< the user has agreed to the cautions
  bool dryRun = false;        ///< judge everything, change nothing
};

/// How a wait for downloads tells the time.
class CloudClock {
 public:
  virtual ~CloudClock() = default;
  /// Seconds since some moment; never goes back.
  [[nodiscard]] virtual double seconds() = 0;
  /// Lets a second pass.
  virtual void wait() = 0;

  /// The real one.
  [[nodiscard]] static CloudClock& real();
};

/// Finding what uses iCloud Drive's space, and taking files out of it without losing one.
struct ICloud {
  ICloud() = delete;

  using Progress = std::function<void(const std::string& line)>;
  using Stop = std::function<bool()>;

  /// The folders of iCloud Drive that are there.
  [[nodiscard]] static std::vector<std::string> roots(const Mac& mac);

  /// A short form of a path for the user: "iCloud Drive/..." in the Drive.
  [[nodiscard]] static std::string display(const std::string& path, const Mac& mac);

  /// Looks for copies in iCloud Drive, also of files on this Mac and its drives, and for big lone
  /// files. Reads records only: nothing is downloaded, opened or changed, and two scans of one
  /// state are the same to the byte.
  [[nodiscard]] static CloudScan scan(const Mac& mac, const std::vector<DriveInfo>& drives,
                                      const CloudSizes& sizes);

  /// Takes the items of these ids out of iCloud Drive: each is downloaded if need be, proved equal
  /// to the copy that stays, copied to a drive, the copy proved as the drive holds it, and only
  /// then removed. One result for each id. What was parked is in the history when this returns, and
  /// can be put back by `Cleaner::undo`. `progress` and `stop` are called on this thread; after a
  /// stop no further file is begun.
  [[nodiscard]] static std::vector<CleanResult> clean(const std::vector<std::string>& ids,
                                                      const CloudScan& scan, const Mac& mac,
                                                      const CloudOptions& options,
                                                      const Progress& progress, const Stop& stop,
                                                      CloudClock& clock = CloudClock::real());
};

}  // namespace volbrin
