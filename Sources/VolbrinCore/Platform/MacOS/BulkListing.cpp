#include "BulkListing.hpp"

#include <algorithm>
#include <cstring>
#include <limits>
#include <string_view>

namespace volbrin {
namespace {

/// Takes the fixed parts of a record one after the other; they stand at multiples of four bytes,
/// whatever their size.
class Fields {
 public:
  explicit Fields(std::span<const std::byte> record) : record_(record) {}

  template <class Value>
  Value take() {
    Value value{};
    if (record_.size() - at_ < sizeof value) {
      isShort_ = true;
    } else {
      std::memcpy(&value, record_.data() + at_, sizeof value);
      at_ += sizeof value;
    }
    return value;
  }

  /// Takes a reference to a name: how far from the reference it starts, and its length with the
  /// NUL. Null when it isn't one whole name within the record.
  const char* takeName() {
    const std::size_t base = at_;
    const auto offset = take<std::int32_t>();
    const auto length = take<std::uint32_t>();
    if (isShort_ || offset < 0) return nullptr;
    const std::size_t start = base + static_cast<std::size_t>(offset);
    if (length < 2 || start > record_.size() || record_.size() - start < length) return nullptr;
    const auto* name = reinterpret_cast<const char*>(record_.data() + start);
    const auto* end = std::find(name, name + length, '\0');
    return end == name + length - 1 ? name : nullptr;
  }

  [[nodiscard]] bool isShort() const { return isShort_; }

 private:
  std::span<const std::byte> record_;
  std::size_t at_ = 0;
  bool isShort_ = false;
};

/// `enum vtype` of <sys/vnode.h>.
EntryKind kindOf(std::uint32_t type) {
  switch (type) {
    case 0:
      return EntryKind::unknown;
    case 1:
      return EntryKind::file;
    case 2:
      return EntryKind::folder;
    case 5:
      return EntryKind::link;
    default:
      return EntryKind::other;
  }
}

/// Whether it is the name of one entry and leads nowhere else.
bool isName(std::string_view name) {
  return name != "." && name != ".." && name.find('/') == std::string_view::npos;
}

/// attribute_set_t
struct AttributeSet {
  std::uint32_t common, volume, folder, file, fork;
};

/// struct timespec of 64-bit systems
struct Time {
  std::int64_t seconds, nanoseconds;
};

/// As stat(2) counts. What can't be right stays negative or as it is.
ByteCount inWholeBlocks(ByteCount bytes) {
  const ByteCount rest = bytes % statBlockBytes;
  const bool isRounded =
      rest <= 0 || bytes > std::numeric_limits<ByteCount>::max() - statBlockBytes;
  return isRounded ? bytes : bytes + statBlockBytes - rest;
}

/// Reads a record: its length, the attributes that it has, and then these, the error first and the
/// others in the order of their bits.
std::optional<BulkEntry> entryOf(std::span<const std::byte> record) {
  Fields fields(record);
  (void)fields.take<std::uint32_t>();
  const auto has = fields.take<AttributeSet>();
  BulkEntry entry;
  EntryStat stat;
  const auto error = (has.common & bulk::error) != 0 ? fields.take<std::uint32_t>() : 0;
  if ((has.common & bulk::name) != 0) entry.name = fields.takeName();
  if ((has.common & bulk::device) != 0) {
    stat.device = static_cast<std::uint64_t>(fields.take<std::int32_t>());
  }
  if ((has.common & bulk::kind) != 0) entry.kind = kindOf(fields.take<std::uint32_t>());
  if ((has.common & bulk::modified) != 0) {
    const auto time = fields.take<Time>();
    stat.modified = {static_cast<std::time_t>(time.seconds), static_cast<long>(time.nanoseconds)};
  }
  if ((has.common & bulk::flags) != 0) {
    stat.isDataless = (fields.take<std::uint32_t>() & bulk::dataless) != 0;
  }
  if ((has.common & bulk::fileID) != 0) stat.inode = fields.take<std::uint64_t>();
  if ((has.file & bulk::links) != 0) stat.links = fields.take<std::uint32_t>();
  if ((has.file & bulk::allocated) != 0) {
    stat.allocatedBytes = inWholeBlocks(fields.take<ByteCount>());
  }
  if ((has.file & bulk::dataLength) != 0) stat.size = fields.take<ByteCount>();
  if (fields.isShort() || entry.name == nullptr || !isName(entry.name)) return std::nullopt;

  stat.kind = entry.kind;
  constexpr std::uint32_t needed =
      bulk::device | bulk::kind | bulk::modified | bulk::flags | bulk::fileID;
  const bool isWhole = error == 0 && (has.common & needed) == needed &&
                       (has.file & bulk::file) == bulk::file && stat.allocatedBytes >= 0 &&
                       stat.size >= 0;
  if (isWhole && entry.kind != EntryKind::folder) entry.stat = stat;
  return entry;
}

}  // namespace

std::optional<BulkEntry> BulkListing::next() {
  if (left_ == 0) return std::nullopt;
  std::uint32_t length = 0;
  std::optional<BulkEntry> entry;
  if (bytes_.size() >= sizeof length) {
    std::memcpy(&length, bytes_.data(), sizeof length);
    if (length <= bytes_.size()) entry = entryOf(bytes_.first(length));
  }
  if (!entry) {
    isBroken_ = true;
    left_ = 0;
    return std::nullopt;
  }
  bytes_ = bytes_.subspan(length);
  --left_;
  return entry;
}

}  // namespace volbrin
