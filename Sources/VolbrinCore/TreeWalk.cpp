#include "TreeWalk.hpp"

#include "Paths.hpp"
#include "PrivacyFence.hpp"
#include "WalkLane.hpp"

namespace volbrin {
namespace {

SkipTree skipsBelow(const std::string& root, const std::unordered_set<std::string>& passedOver,
                    const std::vector<std::string>& fenced) {
  SkipTree skips;
  for (const auto& path : passedOver) skips.add(root, path);
  for (const auto& path : fenced) skips.add(root, path);
  return skips;
}

}  // namespace

void walkTrees(const std::vector<std::string>& roots, const WalkOptions& options,
               const std::function<TreeVisitor&()>& makeVisitor) {
  const auto fenced = PrivacyFence::shared().active();
  std::vector<WalkRoot> work;
  work.reserve(roots.size());
  for (std::size_t i = 0; i < roots.size(); ++i) {
    if (PrivacyFence::shared().isFenced(withoutTrailingSlashes(roots[i]))) continue;
    work.push_back({i, roots[i], skipsBelow(roots[i], options.passedOver, fenced)});
  }
  WalkCrew crew(work, options, makeVisitor,
                [](WalkCrew& own, TreeVisitor& visitor) { WalkLane(own, visitor).run(); });
  crew.run();
}

}  // namespace volbrin
