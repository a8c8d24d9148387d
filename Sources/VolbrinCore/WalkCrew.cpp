#include "WalkCrew.hpp"

#include <sys/resource.h>

#include <algorithm>
#include <iterator>
#include <utility>

namespace volbrin {
namespace {

/// Half of what the process may open, shared between the lanes: other walks run beside this
/// one. Deeper trees than the limit are walked by opening their upper folders again.
std::size_t openLimitOfLane() {
  struct rlimit limit {};
  if (::getrlimit(RLIMIT_NOFILE, &limit) != 0) return 16;
  const auto allowed = std::min<rlim_t>(limit.rlim_cur, 4096);
  return std::clamp<std::size_t>(static_cast<std::size_t>(allowed) / 2 / HelperThread::width(), 8,
                                 256);
}

}  // namespace

WalkCrew::WalkCrew(const std::vector<WalkRoot>& roots, const WalkOptions& options,
                   const std::function<TreeVisitor&()>& makeVisitor, LaneWork laneWork)
    : roots_(roots),
      options_(options),
      makeVisitor_(makeVisitor),
      laneWork_(std::move(laneWork)),
      openLimit_(openLimitOfLane()) {}

void WalkCrew::run() {
  if (roots_.size() > 1) callHelpers();
  runLane();
  helpers_.clear();
}

void WalkCrew::runLane() {
  TreeVisitor* visitor = nullptr;
  {
    const std::lock_guard guard(lock_);
    if (done_) return;
    ++lanes_;
    visitor = &makeVisitor_();
  }
  laneWork_(*this, *visitor);
}

const WalkRoot* WalkCrew::nextRoot() {
  if (isEnded() || nextRoot_.load(std::memory_order_relaxed) >= roots_.size()) return nullptr;
  const std::size_t next = nextRoot_++;
  return next < roots_.size() ? &roots_[next] : nullptr;
}

std::optional<WalkFrame> WalkCrew::awaitWork() {
  std::unique_lock guard(lock_);
  ++waiting_;
  if (offered_.empty()) {
    if (waiting_ == lanes_) {
      done_ = true;
      changed_.notify_all();
      return std::nullopt;
    }
    ++hungry_;
    changed_.wait(guard, [this] { return done_ || !offered_.empty(); });
    // Whoever is fed stops being hungry; handOver already counted for it.
    if (done_) return std::nullopt;
  } else {
    // Meant for a lane that is still waking up; it will go on waiting, and hungry, in its place.
    ++hungry_;
  }
  --waiting_;
  WalkFrame frame = std::move(offered_.front());
  offered_.pop_front();
  return frame;
}

void WalkCrew::handOver(WalkFrame frame) {
  const std::lock_guard guard(lock_);
  offered_.push_back(std::move(frame));
  --hungry_;
  changed_.notify_one();
}

void WalkCrew::callHelpers() {
  if (options_.order == WalkOptions::Order::byName || helpersCalled_.exchange(true)) return;
  std::vector<HelperThread> helpers;
  while (helpers.size() + 1 < HelperThread::width()) {
    auto helper = HelperThread::tryStart([this] { runLane(); });
    if (!helper) break;
    helpers.push_back(std::move(*helper));
  }
  const std::lock_guard guard(lock_);
  std::move(helpers.begin(), helpers.end(), std::back_inserter(helpers_));
}

}  // namespace volbrin
