#include <fcntl.h>
#include <fmt/format.h>
#include <gmock/gmock.h>
#include <sys/stat.h>

#include <algorithm>
#include <atomic>
#include <deque>
#include <filesystem>
#include <set>
#include <thread>

#include "DiskUsage.hpp"
#include "Parallel.hpp"
#include "Paths.hpp"
#include "PrivacyFence.hpp"
#include "RandomTree.hpp"
#include "TemporaryFolder.hpp"
#include "TreeWalk.hpp"

namespace volbrin::test {
namespace {

namespace fs = std::filesystem;
using PathNames = std::unordered_set<std::string>;

/// The measurement in its plainest form: one thread, whole paths, no tricks.
struct PlainUsage {
  void add(const std::string& path) {
    struct stat status {};
    EXPECT_EQ(::lstat(path.c_str(), &status), 0) << path;
    const bool isFolder = S_ISDIR(status.st_mode);
    if (isFolder || seen.emplace(status.st_dev, status.st_ino).second) {
      usage.bytes += status.st_blocks * statBlockBytes;
    }
    if (!isFolder || passedOver.contains(path)) return;
    for (const auto& entry : fs::directory_iterator(path)) add(entry.path().string());
  }

  PathNames passedOver;
  Usage usage;
  std::set<std::pair<dev_t, ino_t>> seen;
};

Usage plainUsage(const std::string& path, PathNames skipping, const PathNames& fenced) {
  if (std::ranges::any_of(fenced, [&](const auto& root) { return isAtOrInside(path, root); }))
    return {};
  PlainUsage plain{std::move(skipping), {}, {}};
  plain.passedOver.insert(fenced.begin(), fenced.end());
  plain.add(path);
  return plain.usage;
}

class TreeWalkPropertyTests : public testing::Test {
 protected:
  ~TreeWalkPropertyTests() override { HelperThread::setWidth(0); }

  TemporaryFolder folder_;
};

TEST_F(TreeWalkPropertyTests, MeasuresAsThePlainWalkDoesAtAnyWidth) {
  for (std::uint32_t seed = 1; seed <= 15; ++seed) {
    const auto top = folder_.folder(std::to_string(seed));
    RandomTree tree(top, seed);
    const std::vector<std::string> roots = {top, tree.anyPath(), tree.anyPath()};
    const auto skipping = tree.someFolders(), fenced = tree.someFolders();

    std::map<std::string, Usage> wanted;
    for (const auto& root : roots) wanted[root] = plainUsage(root, skipping, fenced);
    const FenceGuard fence({fenced.begin(), fenced.end()});
    for (const std::size_t width : {1U, 2U, 8U}) {
      SCOPED_TRACE(testing::Message() << "seed " << seed << ", width " << width);
      HelperThread::setWidth(width);
      EXPECT_EQ(diskUsageOf(roots, skipping), wanted);
    }
  }
}

TEST_F(TreeWalkPropertyTests, MeasuresWideFolders) {
  const auto top = folder_.folder("top");
  for (int i = 0; i < 20'000; ++i) folder_.file(fmt::format("top/{}", i), "x");
  EXPECT_EQ(diskUsage(top), plainUsage(top, {}, {}));
}

/// Levels with a file of that name, and two folders beside the way down.
void makeComb(const TemporaryFolder& folder, std::string at, const std::string& file) {
  for (int level = 0; level < 40; ++level, at += "/down") {
    for (const char* side : {"/a", "/z"}) folder.folder(at + side);
    folder.file(at + "/" + file, "x");
  }
}

/// Counts the files that lie outside.
struct OutsideCounter final : TreeVisitor {
  Onward visit(const WalkEntry& entry) override {
    count += entry.name == "outside";
    return Onward::into;
  }
  void unreadable(std::size_t, const EntryStat*) override {}

  int count = 0;
};

TEST_F(TreeWalkPropertyTests, NeverLeavesATreeThatChangesUnderIt) {
  // The folders beside it keep the walk busy between the listing of "down" and its opening.
  for (int i = 0; i < 50; ++i) folder_.folder(fmt::format("top/here/{}", i));
  makeComb(folder_, "top/here", "inside");
  makeComb(folder_, "elsewhere", "outside");
  const auto here = folder_.at("top/here/down");
  const auto away = folder_.link("top/away", "../../elsewhere");  // relative to where it gets
  std::atomic<bool> stop = false;
  std::jthread changes([&] {
    while (!stop) {
      EXPECT_EQ(::renameat2(AT_FDCWD, here.c_str(), AT_FDCWD, away.c_str(), RENAME_EXCHANGE), 0);
    }
  });
  std::deque<OutsideCounter> lanes;
  for (std::size_t round = 0; round < 1000; ++round) {
    HelperThread::setWidth(1 + round % 3);
    walkTrees({folder_.at("top")}, {}, [&]() -> TreeVisitor& { return lanes.emplace_back(); });
  }
  stop = true;
  for (const auto& lane : lanes) EXPECT_EQ(lane.count, 0);
}

}  // namespace
}  // namespace volbrin::test
