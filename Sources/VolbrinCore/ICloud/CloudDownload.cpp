#include <chrono>
#include <thread>

#include "../ByteText.hpp"
#include "../DirectoryReader.hpp"
#include "../Files.hpp"
#include "../PrivacyFence.hpp"
#include "CloudRun.hpp"

namespace volbrin {
namespace {

constexpr double patienceSeconds = 180;

class RealClock final : public CloudClock {
 public:
  [[nodiscard]] double seconds() override {
    const auto now = std::chrono::steady_clock::now().time_since_epoch();
    return std::chrono::duration<double>(now).count();
  }
  void wait() override { std::this_thread::sleep_for(std::chrono::seconds(1)); }
};

/// What of a file's contents is here, in bytes.
ByteCount bytesHere(const std::string& path, bool hasArrived) {
  if (hasArrived) return sizeOf(path).value_or(0);
  const auto stat = statPath(path);
  return stat ? stat->allocatedBytes : 0;
}

}  // namespace

CloudClock& CloudClock::real() {
  static RealClock clock;
  return clock;
}

std::set<std::string> download(const std::vector<std::string>& paths, const CloudRun& run) {
  if (run.mac.isFake()) return {paths.begin(), paths.end()};
  std::set<std::string> arrived;
  const auto& platform = run.mac.platform();
  ByteCount total = 0;
  for (const auto& path : paths) {
    platform.requestDownload(path);
    total = addBytes(total, sizeOf(path).value_or(0), "what is downloaded");
  }
  auto lastChange = run.clock.seconds();
  ByteCount lastDone = -1;
  while (arrived.size() < paths.size()) {
    run.clock.wait();
    ByteCount done = 0;
    for (const auto& path : paths) {
      if (!arrived.contains(path) && platform.isCurrent(path)) arrived.insert(path);
      done = addBytes(done, bytesHere(path, arrived.contains(path)), "what is downloaded");
    }
    run.progress("Downloading: " + byteText(done) + " of " + byteText(total));
    const auto now = run.clock.seconds();
    if (done != lastDone) {
      lastChange = now;
      lastDone = done;
    } else if (now - lastChange > patienceSeconds) {
      break;
    }
  }
  return arrived;
}

}  // namespace volbrin
