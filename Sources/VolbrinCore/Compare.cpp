#include "Compare.hpp"

#include <algorithm>
#include <cstring>
#include <deque>
#include <memory>
#include <span>
#include <vector>

#include "DirectoryReader.hpp"
#include "FileStream.hpp"
#include "Files.hpp"
#include "Parallel.hpp"
#include "TreeWalk.hpp"

namespace volbrin {
namespace {

/// Two pieces of this size and what they are compared with stay in a core's second-level cache.
constexpr std::size_t pieceBytes = 131'072;

class SizeVisitor final : public TreeVisitor {
 public:
  Onward visit(const WalkEntry& entry) override {
    unseen += entry.isMountPoint ? 1 : 0;
    if (entry.folder == nullptr) return Onward::into;
    // By that name a folder counts too, and with it what is in it.
    if (entry.stat.kind != EntryKind::file || entry.name == ".DS_Store") return Onward::into;
    auto path = entry.folder->relativePath();
    if (!path.empty()) path += '/';
    path += entry.name;
    found.emplace_back(std::move(path), entry.stat.size);
    return Onward::into;
  }
  void unreadable(std::size_t /*root*/, const EntryStat* /*closed*/) override { ++unseen; }

  std::vector<std::pair<std::string, ByteCount>> found;
  std::int64_t unseen = 0;
};

using FileSizes = std::unordered_map<std::string, ByteCount>;

/// The sizes of the files under `root`; what couldn't be looked at is added to `unseen`.
FileSizes sizesUnder(const std::string& root, WalkOptions::RootLinks links, std::int64_t& unseen) {
  std::deque<SizeVisitor> lanes;
  walkTrees({root}, {.rootLinks = links}, [&]() -> TreeVisitor& { return lanes.emplace_back(); });
  std::size_t count = 0;
  for (const auto& lane : lanes) count += lane.found.size();
  FileSizes sizes;
  sizes.reserve(count);
  for (auto& lane : lanes) {
    unseen += lane.unseen;
    for (auto& [path, size] : lane.found) sizes.emplace(std::move(path), size);
  }
  return sizes;
}

/// What two streams are to each other.
enum class Streams {
  same,
  differing,
  unseen,  ///< nothing tells them apart, but they couldn't be opened or read to their end
};

/// Equal streams are what equal digests would stand for, proved without them.
Streams compareStreams(FileStream a, FileStream b, CompareBy by) {
  if (by == CompareBy::contentsOnDrive && b.isOpen()) b.readFromDrive();
  if (!a.isOpen() && !b.isOpen()) return Streams::unseen;
  if (!a.isOpen() || !b.isOpen()) return Streams::differing;
  thread_local const auto buffer = std::make_unique<std::byte[]>(2 * pieceBytes);
  const std::span<std::byte> pieceOfA(buffer.get(), pieceBytes);
  const std::span<std::byte> pieceOfB(buffer.get() + pieceBytes, pieceBytes);
  while (true) {
    const std::size_t count = a.fill(pieceOfA);
    if (b.fill(pieceOfB) != count) return Streams::differing;
    if (std::memcmp(pieceOfA.data(), pieceOfB.data(), count) != 0) return Streams::differing;
    if (a.hasFailed() || b.hasFailed()) return Streams::unseen;
    if (count < pieceBytes) return Streams::same;
  }
}

TreeDiff compareFiles(const std::string& a, const std::string& b, CompareBy by) {
  TreeDiff diff;
  diff.files = 1;
  diff.checksummed = by != CompareBy::size;
  auto found = sizeOf(a) == sizeOf(b) ? Streams::same : Streams::differing;
  if (found == Streams::same && by != CompareBy::size) {
    found = compareStreams(FileStream(a), FileStream(b), by);
  }
  diff.differing = found == Streams::differing ? 1 : 0;
  diff.unseen = found == Streams::unseen ? 1 : 0;
  return diff;
}

/// A file that stands in both trees with one size.
struct Pair {
  const std::string* path;
  ByteCount size;
};

/// Adds what a look at the contents of the pairs tells.
void compareContents(const std::string& a, const std::string& b, std::vector<Pair> pairs,
                     CompareBy by, MeasureObserver* observer, TreeDiff& diff) {
  // The biggest first, so that no thread is left with one at the end.
  std::sort(pairs.begin(), pairs.end(), [](const Pair& x, const Pair& y) {
    return x.size != y.size ? x.size > y.size : *x.path < *y.path;
  });
  const Descriptor folderOfA = openFolder(a + "/.");
  const Descriptor folderOfB = openFolder(b + "/.");
  const auto found = parallelMap(pairs, [&](const Pair& pair) {
    const auto streams =
        compareStreams(FileStream(folderOfA, *pair.path), FileStream(folderOfB, *pair.path), by);
    if (observer != nullptr) observer->measured(pair.size);
    return streams;
  });
  diff.differing += std::count(found.begin(), found.end(), Streams::differing);
  diff.unseen += std::count(found.begin(), found.end(), Streams::unseen);
}

TreeDiff compareFolders(const std::string& a, const std::string& b, CompareBy by,
                        WalkOptions::RootLinks links, MeasureObserver* observer) {
  TreeDiff diff;
  const auto here = sizesUnder(a, links, diff.unseen);
  const auto there = sizesUnder(b, links, diff.unseen);
  diff.files = static_cast<std::int64_t>(here.size());
  diff.checksummed = by != CompareBy::size;
  std::vector<Pair> sameSize;
  for (const auto& [path, size] : here) {
    const auto other = there.find(path);
    if (other == there.end()) {
      ++diff.onlyHere;
    } else if (other->second != size) {
      ++diff.differing;
    } else {
      sameSize.push_back({&path, size});
    }
  }
  const auto inBoth = diff.files - diff.onlyHere;
  diff.onlyThere = static_cast<std::int64_t>(there.size()) - inBoth;
  if (by != CompareBy::size) {
    compareContents(a, b, std::move(sameSize), by, observer, diff);
  }
  return diff;
}

bool isSameItem(const std::string& a, const std::string& b) {
  const auto statA = statPath(a);
  const auto statB = statPath(b);
  return statA && statB && statA->device == statB->device && statA->inode == statB->inode;
}

bool isReachedDirectly(const std::string& path) {
  const auto real = resolved(path);
  return !real || *real == path;
}

}  // namespace

FileSizes fileSizesUnder(const std::string& root) {
  std::int64_t unseen = 0;
  return sizesUnder(root, WalkOptions::RootLinks::follow, unseen);
}

TreeDiff compareTrees(const std::string& a, const std::string& b, CompareBy by,
                      MeasureObserver* observer) {
  if (!isDirectory(a) || !isDirectory(b)) return compareFiles(a, b, by);
  return compareFolders(a, b, by, WalkOptions::RootLinks::follow, observer);
}

std::optional<TreeDiff> compareCopies(const std::string& a, const std::string& b, CompareBy by,
                                      MeasureObserver* observer) {
  if (isSameItem(a, b) || !isReachedDirectly(a) || !isReachedDirectly(b)) return std::nullopt;
  if (!isDirectory(a) || !isDirectory(b)) return compareFiles(a, b, by);
  return compareFolders(a, b, by, WalkOptions::RootLinks::refuse, observer);
}

}  // namespace volbrin
