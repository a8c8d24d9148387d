#include "TreeVisitor.hpp"

#include <utility>
#include <vector>

#include "Paths.hpp"

namespace volbrin {

WalkFolder::WalkFolder(std::shared_ptr<const WalkFolder> parent, std::string name, std::size_t root,
                       const EntryStat& stat, const SkipTree* skips, unsigned mark)
    : parent_(std::move(parent)),
      name_(std::move(name)),
      root_(root),
      device_(stat.device),
      inode_(stat.inode),
      depth_(parent_ ? parent_->depth_ + 1 : 0),
      skips_(skips),
      mark_(mark) {}

WalkFolder::~WalkFolder() {
  // A chain of folders is let go one by one; left to the members, it would be let go by recursion,
  // as deep as the tree. A folder that goes while another one's destructor is at work on this
  // thread leaves its parent to that one.
  thread_local std::shared_ptr<const WalkFolder>* waiting = nullptr;
  if (waiting != nullptr) {
    *waiting = std::move(parent_);
    return;
  }
  std::shared_ptr<const WalkFolder> next = std::move(parent_);
  waiting = &next;
  while (next) std::exchange(next, nullptr).reset();
  waiting = nullptr;
}

std::string WalkFolder::path() const {
  const WalkFolder* root = this;
  while (root->parent() != nullptr) root = root->parent();
  return root == this ? name_ : below(root->name(), relativePath());
}

std::string WalkFolder::relativePath() const {
  std::vector<const WalkFolder*> chain;
  for (const auto* folder = this; folder->parent() != nullptr; folder = folder->parent()) {
    chain.push_back(folder);
  }
  std::string path;
  for (auto folder = chain.rbegin(); folder != chain.rend(); ++folder) {
    if (!path.empty()) path += '/';
    path += (*folder)->name();
  }
  return path;
}

}  // namespace volbrin
