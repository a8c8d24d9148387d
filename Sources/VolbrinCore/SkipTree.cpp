#include "SkipTree.hpp"

#include <algorithm>
#include <span>

#include "Text.hpp"

namespace volbrin {

void SkipTree::add(std::string_view root, std::string_view path) {
  // Compared component by component: a root written with a slash behind it, or two within, is the
  // same folder, and what must not be entered in it stays so.
  const auto above = split(root, '/');
  const auto components = split(path, '/');
  if (above.size() > components.size() ||
      !std::equal(above.begin(), above.end(), components.begin())) {
    return;
  }
  SkipTree* node = this;
  for (const auto name : std::span(components).subspan(above.size())) {
    auto& next = node->folders_[std::string(name)];
    if (!next) next = std::make_unique<SkipTree>();
    node = next.get();
  }
  node->skipped_ = true;
}

const SkipTree* SkipTree::below(std::string_view name) const {
  const auto found = folders_.find(name);
  return found == folders_.end() ? nullptr : found->second.get();
}

}  // namespace volbrin
