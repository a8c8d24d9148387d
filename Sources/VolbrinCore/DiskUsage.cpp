#include "DiskUsage.hpp"

#include "TreeWalk.hpp"
#include "UsageVisitor.hpp"

namespace volbrin {
namespace {

std::vector<Usage> measure(const std::vector<std::string>& paths,
                           const std::unordered_set<std::string>& skipping,
                           MeasureObserver* observer) {
  std::deque<SharedRoot> shared(paths.size());
  std::deque<UsageVisitor> lanes;
  walkTrees(paths, {.passedOver = skipping},
            [&]() -> TreeVisitor& { return lanes.emplace_back(shared, observer); });

  std::vector<Usage> totals(paths.size());
  for (const auto& lane : lanes) {
    for (std::size_t i = 0; i < totals.size(); ++i) lane.addTo(totals[i], i);
  }
  return totals;
}

}  // namespace

Usage diskUsage(const std::string& path, const std::unordered_set<std::string>& skipping,
                MeasureObserver* observer) {
  return !path.empty() ? measure({path}, skipping, observer).front() : Usage{};
}

std::map<std::string, Usage> diskUsageOf(const std::vector<std::string>& paths,
                                         const std::unordered_set<std::string>& skipping,
                                         MeasureObserver* observer) {
  std::map<std::string, Usage> usages;
  std::vector<std::string> measured;
  for (const auto& path : paths) {
    if (usages.try_emplace(path).second && !path.empty()) measured.push_back(path);
  }
  const auto totals = measure(measured, skipping, observer);
  for (std::size_t i = 0; i < measured.size(); ++i) usages[measured[i]] = totals[i];
  return usages;
}

}  // namespace volbrin
