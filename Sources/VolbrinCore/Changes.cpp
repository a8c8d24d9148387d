#include "Changes.hpp"

#include <atomic>
#include <deque>

#include "Files.hpp"
#include "TreeWalk.hpp"

namespace volbrin {
namespace {

/// What the lanes of one search share.
struct Search {
  Date since;
  std::int64_t limit;
  std::atomic<std::int64_t> entries = 0;
  std::atomic<bool> isChanged = false;
};

class ChangeVisitor final : public TreeVisitor {
 public:
  explicit ChangeVisitor(Search& search) : search_(search) {}

  Onward visit(const WalkEntry& entry) override {
    return entry.folder == nullptr ? Onward::into : look(entry.stat);
  }
  void unreadable(std::size_t /*root*/, const EntryStat* closed) override {
    if (closed != nullptr) look(*closed);
  }

 private:
  Onward look(const EntryStat& stat) {
    if (++search_.entries <= search_.limit && dateFrom(stat.modified) <= search_.since) {
      return Onward::into;
    }
    search_.isChanged = true;
    return Onward::end;
  }

  Search& search_;
};

}  // namespace

bool changedRecently(const std::string& path, Date since, std::int64_t limit) {
  const auto own = modified(path);
  if (own && *own > since) return true;
  if (!isDirectory(path)) return false;
  Search search{since, limit};
  std::deque<ChangeVisitor> lanes;
  walkTrees({path}, {}, [&]() -> TreeVisitor& { return lanes.emplace_back(search); });
  return search.isChanged;
}

}  // namespace volbrin
