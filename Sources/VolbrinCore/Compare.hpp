#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <unordered_map>

#include "Bytes.hpp"
#include "Json.hpp"
#include "Usage.hpp"

/// Proving that a second copy of something exists. Nothing here touches what it reads.
namespace volbrin {

/// How two trees differ. Only regular files count: folders, links and other special files are not
/// compared, and files named ".DS_Store" never are.
struct TreeDiff {
  std::int64_t files = 0;      ///< files under the first path; 1 for a single file
  std::int64_t onlyHere = 0;   ///< those with no file at the same relative path under the second
  std::int64_t onlyThere = 0;  ///< files under the second path with none there under the first
  std::int64_t differing = 0;  ///< files that stand in both and differ
  bool checksummed = false;    ///< contents were read; false means sizes only
  /// What couldn't be looked at: unreadable folders, vanished entries, what is mounted inside, and
  /// files that can't be read on both sides. Has no JSON form.
  std::int64_t unseen = 0;

  [[nodiscard]] bool identical() const { return onlyHere == 0 && onlyThere == 0 && differing == 0; }
  /// Whether all there is was looked at, and agrees: only then may one side be given up.
  [[nodiscard]] bool isProof() const { return identical() && unseen == 0; }
  bool operator==(const TreeDiff&) const = default;
};

enum class CompareBy {
  size,
  contents,         ///< every byte of files of equal size
  contentsOnDrive,  ///< the same, and of the second path's files what the drive holds, not memory
};

/// Compares two paths: two folders file by file, anything else as two single files by their own
/// sizes and contents. Of two files that can't be opened nothing can be told apart, so they count
/// as the same. A fenced folder compares as an empty one. Links at the paths themselves are
/// followed.
/// `observer`, which may be null, hears of the bytes of each file whose contents are compared.
[[nodiscard]] TreeDiff compareTrees(const std::string& a, const std::string& b, CompareBy by,
                                    MeasureObserver* observer = nullptr);

/// As `compareTrees`, to prove that one of the two may be given up. Neither path may be a link or
/// lead through one, and both may not be one item: none of that is a second copy, and absence says
/// so.
[[nodiscard]] std::optional<TreeDiff> compareCopies(const std::string& a, const std::string& b,
                                                    CompareBy by,
                                                    MeasureObserver* observer = nullptr);

/// Logical sizes of the regular files under `root`, by relative path, hidden ones and the insides
/// of packages among them, ".DS_Store" left out. Empty for a fenced root and for what is no folder.
[[nodiscard]] std::unordered_map<std::string, ByteCount> fileSizesUnder(const std::string& root);

template <>
struct RecordFields<TreeDiff> {
  static constexpr auto list =
      std::tuple{field("files", &TreeDiff::files), field("onlyHere", &TreeDiff::onlyHere),
                 field("onlyThere", &TreeDiff::onlyThere), field("differing", &TreeDiff::differing),
                 field("checksummed", &TreeDiff::checksummed)};
};

}  // namespace volbrin
