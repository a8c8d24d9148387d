#pragma once

#include <atomic>
#include <condition_variable>
#include <cstddef>
#include <deque>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include "Descriptor.hpp"
#include "NameList.hpp"
#include "Parallel.hpp"
#include "SkipTree.hpp"
#include "TreeVisitor.hpp"
#include "WalkOptions.hpp"

/// How the lanes of one walk share its work.
namespace volbrin {

struct WalkRoot {
  std::size_t position;  ///< among the walk's roots, as visitors are told
  std::string path;
  SkipTree skips;
};

/// A folder in work: some of its names are still to be looked at, by way of its handle.
struct WalkFrame {
  std::shared_ptr<const WalkFolder> folder;
  Descriptor handle;  ///< closed while the lane has too many open; see WalkLane::reopen
  NameList names;
};

/// The lanes of one walk. A lane that runs out of work waits here, and the others hand it half of
/// what they would come to last; as long as nobody is hungry, lanes share nothing.
class WalkCrew {
 public:
  /// What one lane does until there is no work left.
  using LaneWork = std::function<void(WalkCrew&, TreeVisitor&)>;

  WalkCrew(const std::vector<WalkRoot>& roots, const WalkOptions& options,
           const std::function<TreeVisitor&()>& makeVisitor, LaneWork laneWork);

  /// Walks everything; returns when it is done.
  void run();

  [[nodiscard]] const WalkOptions& options() const { return options_; }
  /// Most folders that one lane keeps open at a time.
  [[nodiscard]] std::size_t openLimit() const { return openLimit_; }

  /// The next root that no lane has taken; null when there is none.
  [[nodiscard]] const WalkRoot* nextRoot();
  /// Work that another lane hands over; waits for it. Absent when the whole walk is done.
  [[nodiscard]] std::optional<WalkFrame> awaitWork();
  /// Whether a lane waits for work that nobody has promised it yet.
  [[nodiscard]] bool isHungry() const { return hungry_.load(std::memory_order_relaxed) > 0; }
  void handOver(WalkFrame frame);
  /// Called by a busy lane once it knows that there is much to do: lanes for the other cores.
  void callHelpers();
  /// Ends the walk; every lane drops its work when it next looks.
  void end() { ended_.store(true, std::memory_order_relaxed); }
  [[nodiscard]] bool isEnded() const { return ended_.load(std::memory_order_relaxed); }

 private:
  void runLane();

  const std::vector<WalkRoot>& roots_;
  const WalkOptions& options_;
  const std::function<TreeVisitor&()>& makeVisitor_;
  LaneWork laneWork_;
  std::size_t openLimit_;
  std::atomic<std::size_t> nextRoot_ = 0;
  std::atomic<int> hungry_ = 0;
  std::atomic<bool> helpersCalled_ = false;
  std::atomic<bool> ended_ = false;

  std::mutex lock_;  ///< Guards what follows.
  std::condition_variable changed_;
  std::deque<WalkFrame> offered_;
  std::size_t lanes_ = 0;
  std::size_t waiting_ = 0;
  bool done_ = false;
  std::vector<HelperThread> helpers_;
};

}  // namespace volbrin
