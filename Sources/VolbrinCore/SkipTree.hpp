#pragma once

#include <map>
#include <memory>
#include <string>
#include <string_view>

namespace volbrin {

/// The folders that a walk passes over, as a tree of names below the walk's root. A walk carries
/// its node along, so no path string is ever built to ask whether a folder is one of them.
class SkipTree {
 public:
  /// Adds `path` if it is `root` or lies inside it; otherwise it concerns no folder of this walk.
  void add(std::string_view root, std::string_view path);

  /// Whether this very folder is passed over.
  [[nodiscard]] bool isSkipped() const { return skipped_; }

  /// The node of the folder `name` in this one; null when nothing in it is passed over.
  [[nodiscard]] const SkipTree* below(std::string_view name) const;

 private:
  std::map<std::string, std::unique_ptr<SkipTree>, std::less<>> folders_;
  bool skipped_ = false;
};

}  // namespace volbrin
