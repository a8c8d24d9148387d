#include "Parallel.hpp"

#include <algorithm>
#include <system_error>

namespace volbrin {
namespace {

std::atomic<std::size_t> chosenWidth = 0;
std::atomic<std::size_t> helpersRunning = 0;

bool takeHelper() {
  const std::size_t limit = HelperThread::width() - 1;
  std::size_t running = helpersRunning.load();
  while (running < limit) {
    if (helpersRunning.compare_exchange_weak(running, running + 1)) return true;
  }
  return false;
}

}  // namespace

std::size_t HelperThread::width() {
  if (const std::size_t chosen = chosenWidth.load(); chosen > 0) return chosen;
  static const std::size_t cores = std::max(1U, std::thread::hardware_concurrency());
  return cores;
}

void HelperThread::setWidth(std::size_t width) { chosenWidth = width; }

std::optional<HelperThread> HelperThread::tryStart(std::function<void()> work) {
  if (!takeHelper()) return std::nullopt;
  try {
    return HelperThread(std::jthread([work = std::move(work)] {
      work();
      --helpersRunning;
    }));
  } catch (const std::system_error&) {
    --helpersRunning;
    return std::nullopt;
  }
}

}  // namespace volbrin
