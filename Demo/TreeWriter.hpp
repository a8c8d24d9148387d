#pragma once

#include <sys/types.h>

#include <cstdint>
#include <functional>
#include <map>
#include <string>
#include <string_view>

#include "Dates.hpp"
#include "Handle.hpp"

namespace volbrin::demo {

/// What has been written so far.
struct Totals {
  std::int64_t files = 0;
  std::int64_t folders = 0;
  std::int64_t links = 0;
  std::int64_t allocatedBytes = 0;  ///< space on disk, by the file system's own count
};

/// Writes the machine's files. Every path is in machine form: "~" or "~/..." is the user's home,
/// "/..." is below the top of the machine; missing folders above a path are made. Nothing that
/// exists is ever overwritten. Everything is reached from the handle of the top folder.
///
/// Ages are in days before the machine's reference moment. A folder is as old as the newest thing
/// in it unless `folder` said otherwise; since later writes would disturb that, folders get their
/// dates in `finish`.
///
/// Every function raises `Failure` when the system refuses.
class TreeWriter {
 public:
  /// `top` must stay open as long as the writer lives.
  TreeWriter(const Handle& top, Seconds now);

  /// Makes a folder of a fixed age, or gives an existing one that age.
  void folder(std::string_view path, double daysAgo);

  /// `bytes` of pseudo-random contents, which depend on `content` alone; when that is empty, on
  /// the path. Two files of equal `content` and size are identical.
  void file(std::string_view path, std::int64_t bytes, double daysAgo,
            std::string_view content = {}, mode_t mode = 0644);

  /// A file with exactly these contents, which may be binary.
  void text(std::string_view path, std::string_view contents, double daysAgo);

  /// A file of `bytes` logical size that takes no space, as a file that is only in the cloud.
  void hollow(std::string_view path, std::int64_t bytes, double daysAgo);

  /// A file of `bytes` logical size of which only the first `written` have space on disk. These
  /// are zeros with Fill::zeros (so that it equals a `hollow` file of its size), else random.
  enum class Fill { zeros, random };
  void partly(std::string_view path, std::int64_t bytes, std::int64_t written, Fill fill,
              double daysAgo);

  /// A symbolic link. Give a relative `target`, so that the machine can be moved.
  void link(std::string_view path, std::string_view target, double daysAgo);

  /// A second name for an existing file.
  void hardLink(std::string_view path, std::string_view existing);

  /// Dates all folders. Call once, last.
  void finish();

  [[nodiscard]] Seconds now() const { return now_; }
  [[nodiscard]] const Totals& totals() const { return totals_; }

 private:
  struct Folder {
    Seconds newest = 0;  ///< of what lies in it; 0 when empty
    bool fixed = false;  ///< `newest` is the folder's own date
  };

  /// Machine form to the form relative to the top folder.
  static std::string relative(std::string_view path);
  Folder& ensureFolder(const std::string& path);
  void noteChild(const std::string& path, Seconds moment);
  void writeFile(std::string_view path, double daysAgo, mode_t mode,
                 const std::function<void(int)>& write);
  void stamp(const std::string& path, Seconds moment) const;

  const Handle& top_;
  Seconds now_;
  Totals totals_;
  std::map<std::string, Folder> folders_;  ///< by relative path; the top is ""
};

}  // namespace volbrin::demo
