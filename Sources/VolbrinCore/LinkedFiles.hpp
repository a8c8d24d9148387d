#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <mutex>
#include <vector>

namespace volbrin {

/// Identifies one file on the machine, whatever its names.
struct FileID {
  std::uint64_t device = 0;
  std::uint64_t inode = 0;

  bool operator==(const FileID&) const = default;
};

/// The files with several names that a measurement has met. Asked only for such files, by all
/// lanes; cut into parts with a lock each, so that lanes seldom wait.
class LinkedFiles {
 public:
  /// Whether `file` is met for the first time.
  [[nodiscard]] bool isFirst(const FileID& file);

 private:
  /// Open addressing with linear probing; 16 bytes for each file, at most three quarters full.
  struct Part {
    std::mutex lock;
    std::vector<FileID> slots;  ///< an inode of 0, which no file has, marks a free slot
    std::size_t count = 0;

    bool insert(const FileID& file, std::uint64_t hash);
    void grow();
  };

  std::array<Part, 16> parts_;
};

}  // namespace volbrin
