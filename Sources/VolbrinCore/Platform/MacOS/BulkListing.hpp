#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>

#include "../../DirectoryReader.hpp"

/// Folders listed together with the records of what is in them, as macOS does it: what to ask for,
/// and reading the answer. Pure code, so that it is tested everywhere.
namespace volbrin {

/// Bits and values from <sys/attr.h> and <sys/vnode.h>, as getattrlist(2) describes them.
namespace bulk {
constexpr std::uint32_t name = 0x1;
constexpr std::uint32_t device = 0x2;
constexpr std::uint32_t kind = 0x8;
constexpr std::uint32_t modified = 0x400;
constexpr std::uint32_t flags = 0x40000;
constexpr std::uint32_t fileID = 0x2000000;
constexpr std::uint32_t error = 0x20000000;
constexpr std::uint32_t returned = 0x80000000;
constexpr std::uint32_t common =
    returned | error | name | device | kind | modified | flags | fileID;

constexpr std::uint32_t links = 0x1;
constexpr std::uint32_t allocated = 0x4;     ///< all forks, what st_blocks counts
constexpr std::uint32_t dataLength = 0x200;  ///< the data fork alone, what st_size says
constexpr std::uint32_t file = links | allocated | dataLength;

constexpr std::uint32_t dataless = 0x40000000;  ///< SF_DATALESS, stat(2)
}  // namespace bulk

/// An entry of a listing with its record.
struct BulkEntry {
  const char* name = nullptr;  ///< within the listing's bytes
  EntryKind kind = EntryKind::unknown;
  /// Absent for folders, whose record their handle gives, and where the file system left a part of
  /// it out.
  std::optional<EntryStat> stat;
};

/// Reads what getattrlistbulk(2) wrote for `bulk::common` and `bulk::file`. Every record tells its
/// length and which attributes it has; none of it is trusted to stay within the bytes.
class BulkListing {
 public:
  BulkListing() = default;
  /// `count` records, as the call returned.
  BulkListing(std::span<const std::byte> bytes, std::size_t count) : bytes_(bytes), left_(count) {}

  /// The next entry; absent at the end, and from the first record on that can't be right.
  [[nodiscard]] std::optional<BulkEntry> next();

  /// Whether a record couldn't be right: the folder has entries that nobody has seen.
  [[nodiscard]] bool isBroken() const { return isBroken_; }

 private:
  std::span<const std::byte> bytes_;
  std::size_t left_ = 0;
  bool isBroken_ = false;
};

}  // namespace volbrin
