#include "FileDigest.hpp"

#include <fcntl.h>
#include <gmock/gmock.h>

#include <fstream>
#include <set>

#include "Descriptor.hpp"
#include "Parallel.hpp"
#include "PrivacyFence.hpp"
#include "Sha256.hpp"
#include "Sha256Lanes.hpp"
#include "TemporaryFolder.hpp"

namespace volbrin {
namespace {

struct FileDigestTests : testing::Test {
  test::TemporaryFolder folder_;
};

TEST_F(FileDigestTests, GivesTheStandardsDigests) {
  const std::pair<std::string, const char*> cases[] = {
      {"", "e3b0c44298fc1c149afbf4c8996fb92427ae41e4649b934ca495991b7852b855"},
      {"abc", "ba7816bf8f01cfea414140de5dae2223b00361a396177a9cb410ff61f20015ad"},  // FIPS 180-4
      {std::string(1'000'000, 'a'),
       "cdc76e5c9914fb9281a1c7e284d73e67f1809a48a497200e046d39ccc7112cd0"}};
  std::vector<std::string> paths;
  for (const auto& [contents, digest] : cases) {
    paths.push_back(folder_.file(std::to_string(paths.size()), contents));
    EXPECT_EQ(sha256Of(paths.back()), digest);
  }
  const auto digests = sha256OfEach(paths);
  for (std::size_t i = 0; i < paths.size(); ++i) EXPECT_EQ(digests[i], cases[i].second);
}

TEST_F(FileDigestTests, GivesNoneOfWhatCantBeOpened) {
  folder_.file("fenced/in", "1");
  const FenceGuard fence({folder_.at("fenced")});
  const auto good = folder_.file("good", "abc");
  const std::vector<std::string> paths = {folder_.at("none"), folder_.path(), good,
                                          folder_.at("fenced/in")};
  const auto digests = sha256OfEach(paths);
  for (std::size_t i = 0; i < paths.size(); ++i) {
    EXPECT_EQ(sha256Of(paths[i]).has_value(), paths[i] == good);
    EXPECT_EQ(digests[i].has_value(), paths[i] == good);
  }
  EXPECT_TRUE(sha256OfEach({}).empty());
}

/// Lengths about the edges of a block, of the padding and of what is read at a time.
std::vector<std::size_t> lengthsAboutEdges() {
  std::set<std::size_t> lengths;
  for (const std::size_t edge : {0UL, 56UL, 64UL, 128UL, 131'072UL, 262'144UL}) {
    for (std::size_t away = 0; away < 10; ++away) {
      lengths.insert(edge + away);
      if (edge > away) lengths.insert(edge - away);
    }
  }
  return {lengths.begin(), lengths.end()};
}

TEST_F(FileDigestTests, GivesTheSameSideBySideAsOneByOne) {
  std::vector<std::string> paths;
  std::vector<std::optional<std::string>> expected;
  for (const auto length : lengthsAboutEdges()) {
    std::string contents(length, '\0');
    for (std::size_t i = 0; i < length; ++i) {
      contents[i] = static_cast<char>(i * 31 + (i >> 7U) + length);
    }
    expected.emplace_back(sha256OfText(contents));
    paths.push_back(folder_.file(std::to_string(length), contents));
  }
  for (const std::size_t width : {1U, 2U, 7U}) {
    HelperThread::setWidth(width);
    EXPECT_EQ(sha256OfEach(paths), expected);
    for (std::size_t few = 1; few < 5; ++few) {
      const auto from = static_cast<std::ptrdiff_t>(paths.size() - few);
      EXPECT_EQ(sha256OfEach({paths.begin() + from, paths.end()}),
                std::vector(expected.begin() + from, expected.end()));
    }
  }
  HelperThread::setWidth(0);
}

TEST_F(FileDigestTests, HashesAnyNumberOfLanesAlike) {
  const std::string message(3 * sha256BlockBytes, 'm');
  const auto* bytes = reinterpret_cast<const std::byte*>(message.data());
  Sha256Lane alone;
  for (std::size_t count = 1; count <= sha256Lanes(); ++count) {
    Sha256Lane lanes[mostSha256Lanes];
    Sha256Lane* together[mostSha256Lanes] = {&lanes[0], &lanes[1], &lanes[2]};
    for (auto& lane : lanes) lane.next = bytes;
    addSha256Blocks(together, count, 1);
    addSha256Blocks(together, count, 2);
    if (count == 1) alone = lanes[0];
    for (std::size_t i = 0; i < count; ++i) {
      EXPECT_TRUE(std::equal(alone.words, alone.words + 8, lanes[i].words));
      EXPECT_EQ(lanes[i].next, bytes + message.size());
    }
  }
}

TEST_F(FileDigestTests, ReadsTheSameFromTheDrive) {
  const auto path = folder_.at("big");
  std::string piece(1'048'576, '\0');
  std::ofstream file(path, std::ios::binary);
  for (int i = 0; i < 21; ++i) {
    piece.assign(piece.size(), static_cast<char>('a' + i));
    file << piece;
  }
  file << "and a rest" << std::flush;
  const Descriptor open(::open(path.c_str(), O_RDONLY | O_CLOEXEC));
  ASSERT_EQ(::fsync(open.get()), 0);
  const auto digest = sha256Of(path);
  EXPECT_EQ(sha256Of(path, ReadFrom::drive), digest);
  EXPECT_EQ(sha256OfEach({path}, ReadFrom::drive).front(), digest);
}

}  // namespace
}  // namespace volbrin
