#include "Platform/MacOS/BulkListing.hpp"

#include <gmock/gmock.h>

#include <string>
#include <vector>

namespace volbrin {
namespace {

using testing::ElementsAre;

/// A record as getattrlistbulk(2) writes it, part by part.
class Record {
 public:
  Record(std::uint32_t common, std::uint32_t file) { add(0U, common, 0U, 0U, file, 0U); }

  template <class... Values>
  Record& add(Values... values) {
    (bytes_.append(reinterpret_cast<const char*>(&values), sizeof values), ...);
    return *this;
  }
  /// The place of a reference to the name, which `end` puts behind the fixed parts.
  Record& name() {
    reference_ = bytes_.size();
    return add(0, 0U);
  }
  std::string end(const std::string& name, std::int32_t shift = 0, std::uint32_t longer = 0) {
    const auto offset = static_cast<std::int32_t>(bytes_.size() - reference_) + shift;
    const auto length = static_cast<std::uint32_t>(name.size() + 1) + longer;
    bytes_.replace(reference_, 4, reinterpret_cast<const char*>(&offset), 4);
    bytes_.replace(reference_ + 4, 4, reinterpret_cast<const char*>(&length), 4);
    bytes_ += name + '\0';
    bytes_.resize((bytes_.size() + 3) / 4 * 4);
    const auto whole = static_cast<std::uint32_t>(bytes_.size());
    return bytes_.replace(0, 4, reinterpret_cast<const char*>(&whole), 4);
  }

 private:
  std::string bytes_;
  std::size_t reference_ = 0;
};

constexpr std::uint32_t common = bulk::common & ~bulk::error;

Record fixedParts(std::uint32_t kind, std::uint32_t hasFile) {
  return Record(common, hasFile)
      .name()
      .add(std::int32_t{16'777'234}, kind, std::int64_t{1'700'000'000}, std::int64_t{123},
           bulk::dataless | 1U, std::uint64_t{987'654'321'012});
}

std::string fileRecord(const std::string& name, std::uint32_t kind = 1) {
  return fixedParts(kind, bulk::file)
      .add(2U, std::int64_t{4097}, std::int64_t{5'000'000'000})
      .end(name);
}

std::span<const std::byte> bytesOf(const std::string& text) {
  return std::as_bytes(std::span(text));
}

std::vector<std::string> namesIn(BulkListing& listing) {
  std::vector<std::string> names;
  while (const auto entry = listing.next()) names.emplace_back(entry->name);
  return names;
}

TEST(BulkListingTests, ReadsRecords) {
  const std::string bytes = fileRecord("a file") + fixedParts(2, 0).end("a folder") +
                            fileRecord("a link", 5) + fileRecord("a pipe", 7);
  BulkListing listing(bytesOf(bytes), 4);
  const auto file = listing.next();
  ASSERT_TRUE(file && file->stat);
  EXPECT_STREQ(file->name, "a file");
  EXPECT_EQ(file->stat->kind, EntryKind::file);
  EXPECT_EQ(file->stat->links, 2U);
  EXPECT_EQ(file->stat->device, 16'777'234U);
  EXPECT_EQ(file->stat->inode, 987'654'321'012U);
  EXPECT_EQ(file->stat->allocatedBytes, 4608);  // nine blocks
  EXPECT_EQ(file->stat->size, 5'000'000'000);
  EXPECT_EQ(file->stat->modified.tv_sec, 1'700'000'000);
  EXPECT_EQ(file->stat->modified.tv_nsec, 123);
  EXPECT_TRUE(file->stat->isDataless);
  const auto folder = listing.next();
  ASSERT_TRUE(folder);
  EXPECT_EQ(folder->kind, EntryKind::folder);
  EXPECT_FALSE(folder->stat);
  EXPECT_EQ(listing.next()->stat->kind, EntryKind::link);
  EXPECT_EQ(listing.next()->stat->kind, EntryKind::other);
  EXPECT_FALSE(listing.next());
  EXPECT_FALSE(listing.isBroken());
}

TEST(BulkListingTests, LeavesIncompleteRecordsToBeAskedFor) {
  const std::string records[] = {
      Record(bulk::returned | bulk::error | bulk::name, 0).add(13U).name().end("refused"),
      fixedParts(1, 0).end("without sizes"),
      fixedParts(1, bulk::file).add(1U, std::int64_t{-5}, std::int64_t{1}).end("negative"),
      fixedParts(1, bulk::links | bulk::dataLength).add(1U, std::int64_t{1}).end("one missing")};
  for (const auto& record : records) {
    BulkListing listing(bytesOf(record), 1);
    const auto entry = listing.next();
    ASSERT_TRUE(entry);
    EXPECT_FALSE(entry->stat) << entry->name;
    EXPECT_FALSE(listing.isBroken());
  }
}

TEST(BulkListingTests, NeverLeavesItsBytes) {
  const std::string good = fileRecord("first"), last = fileRecord(std::string(255, 'n'));
  for (std::size_t length = 0; length < last.size(); ++length) {
    const std::vector<char> cut(last.begin(), last.begin() + static_cast<std::ptrdiff_t>(length));
    BulkListing listing(std::as_bytes(std::span(cut)), 1);
    EXPECT_FALSE(listing.next());
    EXPECT_TRUE(listing.isBroken());
  }
  auto shorter = last;  // says that it ends in the middle
  shorter[0] = 40, shorter[1] = 0;
  auto empty = last;  // an end that never comes
  empty[0] = 0, empty[1] = 0;
  const auto file = [] { return fixedParts(1, 0); };
  const std::string wrong[] = {shorter,
                               empty,
                               file().end("name", 1000),
                               file().end("name", -1000),
                               file().end("name", 0, 1000),
                               file().end("name", 0, 0xFFFFFFF0U),
                               file().end("no end", -1),
                               file().end(""),
                               file().end("."),
                               file().end(".."),
                               file().end("../out")};
  for (const auto& record : wrong) {
    const std::string bytes = good + record + good;
    BulkListing listing(bytesOf(bytes), 3);
    EXPECT_THAT(namesIn(listing), ElementsAre("first"));
    EXPECT_TRUE(listing.isBroken());
  }
  BulkListing tooMany(bytesOf(good), 2);
  EXPECT_THAT(namesIn(tooMany), ElementsAre("first"));
  EXPECT_TRUE(tooMany.isBroken());
}

}  // namespace
}  // namespace volbrin
