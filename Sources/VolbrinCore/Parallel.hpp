#pragma once

#include <atomic>
#include <cstddef>
#include <functional>
#include <optional>
#include <thread>
#include <type_traits>
#include <utility>
#include <vector>

namespace volbrin {

/// Helper threads, counted for the whole process: never more run at once than the machine has cores
/// beside the caller's, however deeply parallel work is nested. Plain threads and not a library's
/// scheduler, so that the thread sanitizer sees every hand-over.
class HelperThread {
 public:
  /// Starts `work` on a thread of its own; absent when all the helpers of the process are taken or
  /// the system gives no thread. The caller then does the work itself.
  [[nodiscard]] static std::optional<HelperThread> tryStart(std::function<void()> work);

  /// How many threads may work at once, the caller's own among them; at least 1.
  [[nodiscard]] static std::size_t width();

  /// Gives the process a width of its own in place of the number of cores; 0 takes that back. For
  /// tests and benchmarks; not while helpers run.
  static void setWidth(std::size_t width);

  HelperThread(HelperThread&&) = default;
  HelperThread& operator=(HelperThread&&) = default;

 private:
  explicit HelperThread(std::jthread thread) : thread_(std::move(thread)) {}

  std::jthread thread_;  ///< Joined on destruction.
};

/// Runs `transform` on every item, on several threads where there are some, and returns the results
/// in the order of the items. `transform` must be safe to run at the same time as itself.
template <class Item, class Transform>
[[nodiscard]] auto parallelMap(const std::vector<Item>& items, Transform transform) {
  using Result = std::invoke_result_t<Transform&, const Item&>;
  std::vector<std::optional<Result>> slots(items.size());
  std::atomic<std::size_t> next = 0;
  const auto work = [&] {
    for (std::size_t at = next++; at < items.size(); at = next++) {
      slots[at].emplace(transform(items[at]));
    }
  };
  {
    std::vector<HelperThread> helpers;
    while (helpers.size() + 1 < items.size()) {
      auto helper = HelperThread::tryStart(work);
      if (!helper) break;
      helpers.push_back(std::move(*helper));
    }
    work();
  }
  std::vector<Result> results;
  results.reserve(items.size());
  for (auto& slot : slots) results.push_back(std::move(slot).value());
  return results;
}

}  // namespace volbrin
