#pragma once

#include <sys/types.h>

#include "../../Descriptor.hpp"

namespace volbrin {

/// Keeps the contents of a file that is being written flowing to its drive, from its beginning to
/// its end: the drive works from the first megabytes on instead of waiting for the sync, and what
/// it has is let go of, so that a big copy neither fills the memory nor drives out what others keep
/// there. Files below one piece are left to the sync.
class WriteBehind {
 public:
  explicit WriteBehind(const Descriptor& file) : file_(file) {}

  /// The bytes from `begin` to the one before `end` are written; neither ever goes back, and what
  /// is passed over is a hole. False, with the system's number in errno, when the drive couldn't
  /// take what was written earlier.
  [[nodiscard]] bool wrote(off_t begin, off_t end);

 private:
  /// Waits until the drive has the piece at `at`, and forgets it.
  [[nodiscard]] bool letGo(off_t at) const;

  const Descriptor& file_;
  off_t started_ = 0;  ///< the drive was given everything before it
};

}  // namespace volbrin
