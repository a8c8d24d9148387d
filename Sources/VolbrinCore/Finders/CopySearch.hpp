#pragma once

#include <map>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "../Mac.hpp"

namespace volbrin {

/// Looks on drives for copies of items, by name: three levels of folders, hidden ones and the
/// insides of apps left out, links passed over. Each drive is walked once, at the first question
/// about it, however many are asked.
class CopySearch {
 public:
  /// `names` are those of all the items that will be asked about, `searched` the folders that the
  /// items are from. Keeps a reference to `mac`.
  CopySearch(const Mac& mac, std::set<std::string, std::less<>> names,
             std::vector<std::string> searched)
      : mac_(mac), names_(std::move(names)), searched_(std::move(searched)) {}

  /// The first copy of `path` on `drive`: of two folders the files agree in path and size, of two
  /// files the size; no contents are read. Upper levels come first, then names in order. Absent
  /// when there is none. No copy is the item itself, met by another path; what lies in a
  /// searched folder, where it may be offered itself, or in a cloud folder; and what can't be
  /// looked at to its end on either side.
  [[nodiscard]] std::optional<std::string> findCopy(const std::string& path,
                                                    const DriveInfo& drive);

 private:
  [[nodiscard]] const std::vector<std::string>& namesakes(const std::string& name,
                                                          const DriveInfo& drive);

  const Mac& mac_;
  std::set<std::string, std::less<>> names_;
  std::vector<std::string> searched_;
  /// By drive path: the paths of what bears one of the names, by name.
  std::map<std::string, std::map<std::string, std::vector<std::string>>> found_;
};

}  // namespace volbrin
