#include "DiskUsage.hpp"

#include <deque>
#include <memory>
#include <mutex>

#include "LinkedFiles.hpp"
#include "Paths.hpp"
#include "PrivacyFence.hpp"
#include "TreeWalk.hpp"

namespace volbrin {
namespace {

constexpr const char* sumName = "the bytes of a folder";

/// What several lanes need of one root together.
class SharedRoot {
 public:
  bool isFirst(const FileID& file) {
    std::call_once(made_, [this] { linked_ = std::make_unique<LinkedFiles>(); });
    return linked_->isFirst(file);
  }

 private:
  std::once_flag made_;
  std::unique_ptr<LinkedFiles> linked_;
};

class UsageVisitor final : public TreeVisitor {
 public:
  UsageVisitor(std::deque<SharedRoot>& roots, MeasureObserver* observer)
      : usages(roots.size()), roots_(roots), observer_(observer) {}

  void visit(const WalkEntry& entry) override {
    const EntryStat& stat = entry.stat;
    const bool mayRepeat = stat.links > 1 && stat.kind != EntryKind::folder;
    if (mayRepeat && !roots_[entry.root].isFirst({stat.device, stat.inode})) return;
    ByteCount& bytes = usages[entry.root].bytes;
    bytes = addBytes(bytes, stat.allocatedBytes, sumName);
    news_ += stat.allocatedBytes;
  }

  void unreadable(std::size_t root) override { ++usages[root].unreadable; }

  void pause() override {
    if (observer_ != nullptr && news_ != 0) observer_->measured(news_);
    news_ = 0;
  }

  std::vector<Usage> usages;  ///< of each root, this lane's part

 private:
  std::deque<SharedRoot>& roots_;
  MeasureObserver* observer_;
  ByteCount news_ = 0;
};

std::vector<Usage> measure(const std::vector<std::string>& paths,
                           const std::unordered_set<std::string>& skipping,
                           MeasureObserver* observer) {
  const auto fenced = PrivacyFence::shared().active();
  auto passedOver = skipping;
  passedOver.insert(fenced.begin(), fenced.end());

  std::deque<SharedRoot> shared(paths.size());
  std::deque<UsageVisitor> lanes;
  walkTrees(paths, passedOver,
            [&]() -> TreeVisitor& { return lanes.emplace_back(shared, observer); });

  std::vector<Usage> totals(paths.size());
  for (const auto& lane : lanes) {
    for (std::size_t i = 0; i < totals.size(); ++i) {
      totals[i].bytes = addBytes(totals[i].bytes, lane.usages[i].bytes, sumName);
      totals[i].unreadable += lane.usages[i].unreadable;
    }
  }
  return totals;
}

bool isMeasured(const std::string& path) {
  return !path.empty() && !PrivacyFence::shared().isFenced(withoutTrailingSlashes(path));
}

}  // namespace

Usage diskUsage(const std::string& path, const std::unordered_set<std::string>& skipping,
                MeasureObserver* observer) {
  return isMeasured(path) ? measure({path}, skipping, observer).front() : Usage{};
}

std::map<std::string, Usage> diskUsageOf(const std::vector<std::string>& paths,
                                         const std::unordered_set<std::string>& skipping,
                                         MeasureObserver* observer) {
  std::map<std::string, Usage> usages;
  std::vector<std::string> measured;
  for (const auto& path : paths) {
    if (usages.try_emplace(path).second && isMeasured(path)) measured.push_back(path);
  }
  const auto totals = measure(measured, skipping, observer);
  for (std::size_t i = 0; i < measured.size(); ++i) usages[measured[i]] = totals[i];
  return usages;
}

}  // namespace volbrin
