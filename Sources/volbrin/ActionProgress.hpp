#pragma once

#include <atomic>
#include <mutex>
#include <set>
#include <string>

#include "Acting/Cleaner.hpp"
#include "Progress.hpp"

namespace volbrin::cli {

/// Says what an action is at, and lets the user end it: from the first finding's turn on, an
/// interruption (Ctrl-C), a hang-up or a request to terminate asks the engine to stop where nothing
/// is lost. A second one ends the process at once, which loses nothing either.
class ActionProgress final : public CleanObserver {
 public:
  enum class Display { shown, hidden };
  explicit ActionProgress(Display display) : isShown_(display == Display::shown) {}

  /// What is so called begins.
  void begin(const std::string& title);
  /// A line of the engine's own.
  void say(const std::string& line);
  /// The ids of what couldn't be written into the history.
  [[nodiscard]] const std::set<std::string>& unrecordedIDs() const { return unrecordedIDs_; }

  void beginning(const Finding& finding) override { begin(finding.title); }
  void copying(const std::string& path) override;
  void copied(ByteCount bytes) override { measured(bytes); }
  void proving() override;
  void unrecorded(const CleanResult& result) override;
  void measured(ByteCount bytes) override;
  [[nodiscard]] bool isStopped() const override;

 private:
  void turnTo(std::string what);
  void draw();

  const bool isShown_;
  std::atomic<ByteCount> bytes_ = 0;  ///< of what it is at now
  std::mutex lock_;                   ///< Guards what follows.
  std::string what_;
  std::set<std::string> unrecordedIDs_;
  StatusLine line_;
};

}  // namespace volbrin::cli
