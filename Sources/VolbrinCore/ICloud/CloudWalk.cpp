#include "CloudWalk.hpp"

#include <algorithm>
#include <deque>

#include "../Paths.hpp"
#include "../TreeWalk.hpp"
#include "CloudNames.hpp"

namespace volbrin {
namespace {

constexpr unsigned insidePackage = 1;

class CloudVisitor final : public TreeVisitor {
 public:
  explicit CloudVisitor(const CloudWalkOptions& options) : options_(options) {}

  Onward visit(const WalkEntry& entry) override {
    if (entry.folder == nullptr) return Onward::into;
    if (entry.name.starts_with('.') || entry.name == parkingFolder) return Onward::around;
    if (entry.stat.kind == EntryKind::folder) {
      if (!isInPackage(entry) && isPackageName(entry.name)) ++tally.packages;
    } else if (entry.stat.kind == EntryKind::file) {
      add(entry);
    }
    return Onward::into;
  }

  [[nodiscard]] unsigned mark(const WalkEntry& folder) override {
    if (folder.folder == nullptr) return 0;
    return isInPackage(folder) || isPackageName(folder.name) ? insidePackage : 0;
  }

  void unreadable(std::size_t /*root*/, const EntryStat* /*closed*/) override {}

  CloudTally tally;
  std::vector<CloudEntry> entries;

 private:
  static bool isInPackage(const WalkEntry& entry) { return entry.folder->mark() == insidePackage; }

  void add(const WalkEntry& entry) {
    const auto& stat = entry.stat;
    ++tally.files;
    tally.bytes = addBytes(tally.bytes, stat.size, "the sizes of a cloud's files");
    tally.onMacBytes =
        addBytes(tally.onMacBytes, stat.allocatedBytes, "what a cloud's files take here");
    if (stat.size < options_.minimumBytes || isInPackage(entry)) return;
    entries.push_back({below(entry.folder->path(), entry.name), stat.size, isOnMac(stat),
                       stat.modified.tv_sec, stat.device, stat.inode});
  }

  [[nodiscard]] bool isOnMac(const EntryStat& stat) const {
    if (stat.isDataless) return false;
    return !options_.guessesOnMac || stat.allocatedBytes >= stat.size / 2;
  }

  const CloudWalkOptions& options_;
};

}  // namespace

std::vector<CloudEntry> walkCloud(const std::string& root, const CloudWalkOptions& options,
                                  CloudTally& tally) {
  std::deque<CloudVisitor> lanes;
  walkTrees({root}, {.passedOver = options.passedOver},
            [&]() -> TreeVisitor& { return lanes.emplace_back(options); });
  std::vector<CloudEntry> entries;
  for (auto& lane : lanes) {
    tally.files += lane.tally.files;
    tally.bytes = addBytes(tally.bytes, lane.tally.bytes, "the sizes of a cloud's files");
    tally.onMacBytes =
        addBytes(tally.onMacBytes, lane.tally.onMacBytes, "what a cloud's files take here");
    tally.packages += lane.tally.packages;
    std::move(lane.entries.begin(), lane.entries.end(), std::back_inserter(entries));
  }
  std::sort(entries.begin(), entries.end(), [](const CloudEntry& a, const CloudEntry& b) {
    return precedesInTree(a.path, b.path);
  });
  return entries;
}

}  // namespace volbrin
