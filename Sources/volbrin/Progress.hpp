#pragma once

#include <atomic>
#include <chrono>
#include <mutex>
#include <string>

#include "ScanContext.hpp"

namespace volbrin::cli {

/// One line on standard error that says what a long command is looking at; gone when it ends.
class ProgressLine final : public ScanObserver {
 public:
  ProgressLine() = default;
  ~ProgressLine() override;
  ProgressLine(const ProgressLine&) = delete;
  ProgressLine& operator=(const ProgressLine&) = delete;

  void finderBegins(std::string_view name) override;
  void looksAt(std::string_view title) override;
  void measured(ByteCount bytes) override;

 private:
  using Clock = std::chrono::steady_clock;

  void draw();

  std::atomic<ByteCount> bytes_ = 0;
  std::mutex lock_;  ///< Guards what follows.
  std::string finder_;
  std::string place_;
  Clock::time_point drawn_{};
  bool isShown_ = false;
};

}  // namespace volbrin::cli
