#pragma once

#include <deque>
#include <memory>
#include <mutex>
#include <vector>

#include "LinkedFiles.hpp"
#include "TreeVisitor.hpp"
#include "Usage.hpp"

namespace volbrin {

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

/// Adds up what a walk's roots take on disk: one lane's part.
class UsageVisitor : public TreeVisitor {
 public:
  /// `roots` is shared by the lanes of the walk. `observer` may be null.
  UsageVisitor(std::deque<SharedRoot>& roots, MeasureObserver* observer)
      : roots_(roots), observer_(observer), usages_(roots.size()) {}

  Onward visit(const WalkEntry& entry) override {
    const EntryStat& stat = entry.stat;
    const bool mayRepeat = stat.links > 1 && stat.kind != EntryKind::folder;
    if (mayRepeat && !roots_[entry.root].isFirst({stat.device, stat.inode})) return Onward::into;
    ByteCount& bytes = usages_[entry.root].bytes;
    bytes = addBytes(bytes, stat.allocatedBytes, sumName);
    news_ += stat.allocatedBytes;
    return Onward::into;
  }

  void unreadable(std::size_t root, const EntryStat* /*closed*/) override {
    ++usages_[root].unreadable;
  }

  void pause() override {
    if (observer_ != nullptr && news_ != 0) observer_->measured(news_);
    news_ = 0;
  }

  /// Adds this lane's part of the root to `total`.
  void addTo(Usage& total, std::size_t root) const {
    total.bytes = addBytes(total.bytes, usages_[root].bytes, sumName);
    total.unreadable += usages_[root].unreadable;
  }

 private:
  static constexpr const char* sumName = "the bytes of a folder";

  std::deque<SharedRoot>& roots_;
  MeasureObserver* observer_;
  std::vector<Usage> usages_;
  ByteCount news_ = 0;
};

}  // namespace volbrin
