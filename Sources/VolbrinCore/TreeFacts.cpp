#include "TreeFacts.hpp"

#include <algorithm>
#include <ctime>
#include <deque>

#include "TreeWalk.hpp"
#include "UsageVisitor.hpp"

namespace volbrin {
namespace {

bool isLater(const std::timespec& a, const std::timespec& b) {
  return a.tv_sec != b.tv_sec ? a.tv_sec > b.tv_sec : a.tv_nsec > b.tv_nsec;
}

class FactsVisitor final : public UsageVisitor {
 public:
  FactsVisitor(std::deque<SharedRoot>& roots, const FileMarkers& markers, MeasureObserver* observer)
      : UsageVisitor(roots, observer), search_(markers), parts_(roots.size()) {}

  Onward visit(const WalkEntry& entry) override {
    if (entry.folder != nullptr) {
      Part& part = parts_[entry.root];
      part.note(entry.stat);
      if (search_.counts(entry)) OwnFileSearch::add(entry, part.ownFiles);
    }
    return UsageVisitor::visit(entry);
  }
  unsigned mark(const WalkEntry& folder) override { return search_.mark(folder); }
  void unreadable(std::size_t root, const EntryStat* closed) override {
    if (closed != nullptr) parts_[root].note(*closed);
    UsageVisitor::unreadable(root, closed);
  }

  /// Adds this lane's part of the root to `total`.
  void addTo(TreeFacts& total, std::size_t root) const {
    const Part& part = parts_[root];
    UsageVisitor::addTo(total.usage, root);
    OwnFileSearch::add(part.ownFiles, total.ownFiles);
    total.entries += part.entries;
    if (part.entries == 0) return;
    const Date newest = dateFrom(part.newest);
    total.newest = std::max(total.newest.value_or(newest), newest);
  }

 private:
  /// What the lane has seen of one root.
  struct Part {
    std::int64_t entries = 0;
    std::timespec newest{};
    OwnFiles ownFiles;

    void note(const EntryStat& stat) {
      if (entries++ == 0 || isLater(stat.modified, newest)) newest = stat.modified;
    }
  };

  OwnFileSearch search_;
  std::vector<Part> parts_;
};

}  // namespace

std::vector<TreeFacts> treeFactsOf(const std::vector<std::string>& paths,
                                   const std::unordered_set<std::string>& skipping,
                                   const FileMarkers& markers, MeasureObserver* observer) {
  std::deque<SharedRoot> shared(paths.size());
  std::deque<FactsVisitor> lanes;
  walkTrees(paths, {.passedOver = skipping},
            [&]() -> TreeVisitor& { return lanes.emplace_back(shared, markers, observer); });

  std::vector<TreeFacts> totals(paths.size());
  for (const auto& lane : lanes) {
    for (std::size_t i = 0; i < totals.size(); ++i) lane.addTo(totals[i], i);
  }
  return totals;
}

}  // namespace volbrin
