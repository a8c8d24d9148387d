#include "TreeWalk.hpp"

#include "WalkLane.hpp"

namespace volbrin {
namespace {

SkipTree skipsBelow(const std::string& root, const std::unordered_set<std::string>& passedOver) {
  SkipTree skips;
  for (const auto& path : passedOver) skips.add(root, path);
  return skips;
}

}  // namespace

void walkTrees(const std::vector<std::string>& roots,
               const std::unordered_set<std::string>& passedOver,
               const std::function<TreeVisitor&()>& makeVisitor) {
  std::vector<WalkRoot> work;
  work.reserve(roots.size());
  for (const auto& root : roots) work.push_back({root, skipsBelow(root, passedOver)});
  WalkCrew crew(work, makeVisitor,
                [](WalkCrew& own, TreeVisitor& visitor) { WalkLane(own, visitor).run(); });
  crew.run();
}

}  // namespace volbrin
