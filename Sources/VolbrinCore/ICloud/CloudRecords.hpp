#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "../Bytes.hpp"
#include "../Json.hpp"

namespace volbrin {

/// One file in iCloud Drive that could be dealt with.
struct CloudItem {
  std::string id;  ///< "icloud-" and 12 hexadecimal digits, the same at every scan
  std::string path;
  ByteCount bytes = 0;                 ///< its logical size
  bool onMac = false;                  ///< its contents are on this disk
  std::optional<std::string> keep;     ///< the copy that stays; absent for a lone file
  std::optional<bool> keepOnMac;       ///< the kept copy's contents are on this disk
  std::optional<std::string> caution;  ///< what the user is told first

  bool operator==(const CloudItem&) const = default;
};

/// Several copies of one file, as far as names and sizes tell.
struct CopyGroup {
  std::string name;  ///< of the kept file
  ByteCount bytes = 0;
  std::string keep;
  std::string keepPlace;         ///< "iCloud", "this Mac" or the name of a drive
  std::vector<CloudItem> items;  ///< those that could go
  bool sameName = false;         ///< all share one normalised name

  bool operator==(const CopyGroup&) const = default;
};

/// What iCloud Drive holds, and what of it could go.
struct CloudScan {
  std::vector<std::string> roots;  ///< the folders looked at
  std::int64_t files = 0;          ///< in packages too, hidden ones not
  ByteCount bytes = 0;             ///< their logical sizes
  ByteCount onMacBytes = 0;        ///< what they take on this disk
  std::vector<CopyGroup> groups;   ///< those that free most first
  std::vector<CloudItem> biggest;  ///< lone files, the largest first, at most 50
  std::int64_t packages = 0;       ///< those that lie in no other

  /// All items: those of the groups, then the biggest.
  [[nodiscard]] std::vector<CloudItem> items() const;

  bool operator==(const CloudScan&) const = default;
};

template <>
struct RecordFields<CloudItem> {
  static constexpr auto list =
      std::tuple{field("id", &CloudItem::id),          field("path", &CloudItem::path),
                 field("bytes", &CloudItem::bytes),    field("onMac", &CloudItem::onMac),
                 field("keep", &CloudItem::keep),      field("keepOnMac", &CloudItem::keepOnMac),
                 field("caution", &CloudItem::caution)};
};

template <>
struct RecordFields<CopyGroup> {
  static constexpr auto list =
      std::tuple{field("name", &CopyGroup::name),   field("bytes", &CopyGroup::bytes),
                 field("keep", &CopyGroup::keep),   field("keepPlace", &CopyGroup::keepPlace),
                 field("items", &CopyGroup::items), field("sameName", &CopyGroup::sameName)};
};

template <>
struct RecordFields<CloudScan> {
  static constexpr auto list = std::tuple{
      field("roots", &CloudScan::roots),      field("files", &CloudScan::files),
      field("bytes", &CloudScan::bytes),      field("onMacBytes", &CloudScan::onMacBytes),
      field("groups", &CloudScan::groups),    field("biggest", &CloudScan::biggest),
      field("packages", &CloudScan::packages)};
};

}  // namespace volbrin
