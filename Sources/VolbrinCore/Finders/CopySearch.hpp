#pragma once

#include <map>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "../Model.hpp"

namespace volbrin {

/// Looks on drives for copies of items, by name: three levels of folders, hidden ones and the
/// insides of apps left out, links passed over. Each drive is walked once, at the first question
/// about it, however many are asked.
class CopySearch {
 public:
  /// `names` are those of all the items that will be asked about.
  explicit CopySearch(std::set<std::string, std::less<>> names) : names_(std::move(names)) {}

  /// The first copy of `path` on `drive`: of two folders the files agree in path and size, of two
  /// files the size; no contents are read. Upper levels come first, then names in order. Absent
  /// when there is none. The item itself, met by another path, is no copy.
  [[nodiscard]] std::optional<std::string> findCopy(const std::string& path,
                                                    const DriveInfo& drive);

 private:
  [[nodiscard]] const std::vector<std::string>& namesakes(const std::string& name,
                                                          const DriveInfo& drive);

  std::set<std::string, std::less<>> names_;
  /// By drive path: the paths of what bears one of the names, by name.
  std::map<std::string, std::map<std::string, std::vector<std::string>>> found_;
};

}  // namespace volbrin
