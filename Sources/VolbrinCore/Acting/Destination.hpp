#pragma once

#include <string>
#include <vector>

#include "../HeldItem.hpp"

namespace volbrin {

/// A place where something is to be put, and whose folders may not be there yet. Where the folders
/// that are there lead is looked up once; a link that somebody puts in their place afterwards, or a
/// drive that goes away, is an error and never another place.
class Destination {
 public:
  /// `path` is absolute. Raises std::system_error when no folder above it can be looked up.
  explicit Destination(const std::string& path);

  /// The place with all links in the folders above it resolved.
  [[nodiscard]] std::string real() const;

  /// Makes the folders that are missing, and holds the place. Raises std::system_error.
  [[nodiscard]] HeldItem prepare() const;

 private:
  std::string anchor_;  ///< the deepest folder that was there, links resolved
  std::uint64_t device_ = 0;
  std::uint64_t inode_ = 0;
  std::vector<std::string> missing_;  ///< the folders to make below it, from the top
  std::string name_;
};

/// Whether anything stands at `path`, a link to nothing too: what is put there would meet it.
[[nodiscard]] bool isTaken(const std::string& path);

}  // namespace volbrin
