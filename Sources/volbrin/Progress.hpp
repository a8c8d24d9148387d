#pragma once

#include <atomic>
#include <chrono>
#include <mutex>
#include <string>

#include "ScanContext.hpp"

namespace volbrin::cli {

/// One line on standard error that is drawn over and over; gone when it ends. Not for several
/// threads at once.
class StatusLine {
 public:
  StatusLine() = default;
  ~StatusLine() { erase(); }
  StatusLine(const StatusLine&) = delete;
  StatusLine& operator=(const StatusLine&) = delete;

  /// Whether the last drawing is so fresh that nobody would see another.
  [[nodiscard]] bool isFresh() const;
  void draw(std::string_view text);
  void erase();

 private:
  using Clock = std::chrono::steady_clock;

  Clock::time_point drawn_{};
  bool isShown_ = false;
};

/// Says what a scan or a measurement is looking at.
class ProgressLine final : public ScanObserver {
 public:
  void finderBegins(std::string_view name) override;
  void looksAt(std::string_view title) override;
  void measured(ByteCount bytes) override;

 private:
  void draw();

  std::atomic<ByteCount> bytes_ = 0;
  std::mutex lock_;  ///< Guards what follows.
  std::string finder_;
  std::string place_;
  StatusLine line_;
};

}  // namespace volbrin::cli
