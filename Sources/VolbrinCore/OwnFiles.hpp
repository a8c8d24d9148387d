#pragma once

#include <cstdint>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "TreeVisitor.hpp"

/// Telling files that look like the user's own work from what programs write.
namespace volbrin {

/// Names by which people's own files are known, all in lower case.
struct FileMarkers {
  std::vector<std::string> folders;     ///< every file in such a folder is the user's own
  std::vector<std::string> extensions;  ///< without the dot
};

/// How many files of a folder look like the user's own, and the first of them.
struct OwnFiles {
  std::int64_t count = 0;
  /// Path below the folder: the first by name, folder by folder. Empty when there is none.
  std::string first;

  /// "1 file that looks like your own, <first>"; absent when there is none. For the inside of a
  /// sentence.
  [[nodiscard]] std::optional<std::string> text() const;

  bool operator==(const OwnFiles&) const = default;
};

/// Finds the user's own files among what a walk shows; one visitor's helper, for one lane.
class OwnFileSearch {
 public:
  explicit OwnFileSearch(const FileMarkers& markers);

  /// The walk's mark for a folder: whether it, or one above it below the root, is a marked one.
  [[nodiscard]] unsigned mark(const WalkEntry& folder) const;

  /// Whether the entry is a regular file that looks like the user's own.
  [[nodiscard]] bool counts(const WalkEntry& entry) const;

  /// Adds one that counts.
  static void add(const WalkEntry& entry, OwnFiles& found);

  /// Adds what another lane has found in the same folder.
  static void add(const OwnFiles& other, OwnFiles& found);

 private:
  std::set<std::string, std::less<>> folders_;
  std::set<std::string, std::less<>> extensions_;
};

/// How many entries a finder looks at before it makes do with what it has found.
inline constexpr std::int64_t personalContentLimit = 50'000;

/// Looks into the folder at `path` for files that seem to be the user's own, in order of names, and
/// says how many there are and which is first: `OwnFiles::text`. It looks at `limit` entries at
/// most; what lies behind them goes unseen. Absent as well when `path` is fenced or no folder.
[[nodiscard]] std::optional<std::string> personalContent(const std::string& path,
                                                         const FileMarkers& markers,
                                                         std::int64_t limit);

}  // namespace volbrin
