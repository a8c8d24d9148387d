#include "TreeWalk.hpp"

#include <fmt/format.h>
#include <gmock/gmock.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <atomic>
#include <filesystem>

#include "DiskUsage.hpp"
#include "Parallel.hpp"
#include "Platform/Linux/ChildProcess.hpp"
#include "PrivacyFence.hpp"
#include "TemporaryFolder.hpp"

namespace volbrin::test {
namespace {

namespace fs = std::filesystem;

ByteCount blocksOf(const std::vector<std::string>& paths) {
  ByteCount sum = 0;
  for (const auto& path : paths) {
    struct stat status {};
    EXPECT_EQ(::lstat(path.c_str(), &status), 0) << path;
    sum += status.st_blocks * statBlockBytes;
  }
  return sum;
}

class TreeWalkTests : public testing::Test {
 protected:
  ~TreeWalkTests() override { HelperThread::setWidth(0); }

  TemporaryFolder folder_;
};

class SumObserver final : public MeasureObserver {
 public:
  void measured(ByteCount bytes) override { sum += bytes; }
  std::atomic<ByteCount> sum = 0;
};

TEST_F(TreeWalkTests, CountsWhatLiesOnDisk) {
  const auto top = folder_.folder("top");
  const auto file = folder_.fileOfSize("top/file", 40'960);
  const auto sub = folder_.folder("top/sub");
  fs::create_hard_link(file, folder_.at("top/sub/again"));
  folder_.fileOfSize("outside", 80'000);
  const auto link = folder_.link("top/link", "..");
  const auto sparse = folder_.file("top/sparse", "x");
  fs::resize_file(sparse, 1'000'000'000);
  const auto pipe = folder_.at("top/pipe");
  ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);

  EXPECT_EQ(diskUsage(top), (Usage{blocksOf({top, file, sub, link, sparse, pipe}), 0}));
  EXPECT_LT(diskUsage(sparse).bytes, 1'000'000);
  for (const auto& each : {file, link}) EXPECT_EQ(diskUsage(each), (Usage{blocksOf({each}), 0}));
  EXPECT_EQ(diskUsage(folder_.at("missing")), (Usage{0, 1}));
}

TEST_F(TreeWalkTests, PassesOverSkippedAndFencedFolders) {
  const auto top = folder_.folder("top");
  const auto kept = folder_.fileOfSize("top/sub/kept", 8'192);
  const auto sub = folder_.at("top/sub");
  const auto skipped = folder_.folder("top/sub/skipped");
  folder_.fileOfSize("top/sub/skipped/file", 40'960);
  const auto beside = folder_.folder("top/sub/skipped-beside");
  const auto named = folder_.fileOfSize("top/named", 4'096);  // only folders are passed over
  const Usage wanted{blocksOf({top, sub, kept, skipped, beside, named}), 0};

  EXPECT_EQ(diskUsage(top, {skipped, named, "/elsewhere"}), wanted);
  EXPECT_EQ(diskUsage(top + "/", {skipped}), wanted);
  EXPECT_EQ(diskUsage(skipped, {skipped}), (Usage{blocksOf({skipped}), 0}));
  EXPECT_EQ(diskUsage(sub, {top}), diskUsage(sub));
  const FenceGuard fence({skipped});
  EXPECT_EQ(diskUsage(top), wanted);
  for (const char* end : {"", "/", "/file"}) EXPECT_EQ(diskUsage(skipped + end), Usage()) << end;
}

/// What a user sees who is not root: root is let into every folder.
Usage usageAsOrdinaryUser(const std::string& path) {
  constexpr uid_t nobody = 65534;
  const uid_t before = ::geteuid();
  EXPECT_EQ(::seteuid(before == 0 ? nobody : before), 0);
  const Usage usage = diskUsage(path);
  EXPECT_EQ(::seteuid(before), 0);
  return usage;
}

TEST_F(TreeWalkTests, CountsUnreadableEntries) {
  folder_.fileOfSize("top/locked/file", 8'192);
  folder_.fileOfSize("top/listed/file", 8'192);
  folder_.folder("top/listed/folder");
  const auto readable = folder_.fileOfSize("top/readable", 8'192);
  const auto top = folder_.at("top");
  fs::permissions(folder_.path(), fs::perms(0755));
  fs::permissions(folder_.at("top/locked"), fs::perms::none);
  fs::permissions(folder_.at("top/listed"), fs::perms(0444));
  EXPECT_EQ(usageAsOrdinaryUser(top),
            (Usage{blocksOf({top, readable, folder_.at("top/listed")}), 3}));
  for (const char* each : {"locked", "listed"}) fs::permissions(top + "/" + each, fs::perms(0700));
}

TEST_F(TreeWalkTests, WalksAnyDepthWithFewHandles) {
  const auto comb = folder_.folder("comb");
  ByteCount bytes = blocksOf({comb});
  for (int depth = 0; depth < 1'200; ++depth) {  // from the inside out: too deep for whole paths
    const auto above = folder_.folder("above");
    for (const std::string side : {"above/a", "above/z"}) {
      const auto file = folder_.file(side + "/file", "x");
      bytes += blocksOf({folder_.at(side), file});
    }
    fs::rename(comb, above + "/down");
    bytes += blocksOf({above});
    fs::rename(above, comb);
  }
  rlimit before{};
  ASSERT_EQ(::getrlimit(RLIMIT_NOFILE, &before), 0);
  const rlimit few{64, before.rlim_max};
  EXPECT_EQ(::setrlimit(RLIMIT_NOFILE, &few), 0);
  for (const std::size_t width : {1U, 8U}) {
    HelperThread::setWidth(width);
    EXPECT_EQ(diskUsage(comb), (Usage{bytes, 0})) << width;
  }
  EXPECT_EQ(::setrlimit(RLIMIT_NOFILE, &before), 0);
  EXPECT_TRUE(outputOf(*findTool("rm", {}), {"-rf", comb}));
}

TEST_F(TreeWalkTests, TellsTheObserverEveryByte) {
  const auto skipped = folder_.folder("top/sub0/skipped");
  for (int i = 0; i < 400; ++i) {
    folder_.fileOfSize(fmt::format("top/sub{}/file{}", i % 7, i), 4'096);
  }
  for (const std::size_t width : {1U, 8U}) {
    HelperThread::setWidth(width);
    for (const auto& path : {folder_.at("top"), folder_.at("top/sub0/file0"), skipped}) {
      SumObserver observer;
      const auto usage = diskUsage(path, {skipped}, &observer);
      EXPECT_EQ(observer.sum, usage.bytes) << path << " with width " << width;
    }
  }
}

/// Counts the mount points, and what lies behind them.
class MountVisitor final : public TreeVisitor {
 public:
  Onward visit(const WalkEntry& entry) override {
    if (entry.folder == nullptr) device_ = entry.stat.device;
    mountPoints += entry.stat.device != device_;
    entered += entry.folder != nullptr && entry.folder->device() != device_;
    return Onward::into;
  }
  void unreadable(std::size_t, const EntryStat*) override {}

  int mountPoints = 0, entered = 0;

 private:
  std::uint64_t device_ = 0;
};

TEST_F(TreeWalkTests, StaysOnTheDevice) {
  HelperThread::setWidth(1);  // one visitor serves
  MountVisitor visitor;
  walkTrees({"/dev"}, {}, [&]() -> TreeVisitor& { return visitor; });
  EXPECT_GT(visitor.mountPoints, 0);
  EXPECT_EQ(visitor.entered, 0);
}

}  // namespace
}  // namespace volbrin::test
