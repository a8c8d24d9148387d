#include "ActionProgress.hpp"

#include <fmt/format.h>

#include <csignal>

#include "ByteText.hpp"
#include "Output.hpp"

namespace volbrin::cli {
namespace {

volatile std::sig_atomic_t isStopWanted = 0;

void wantStop(int /*signal*/) { isStopWanted = 1; }

void catchSignals() {
  struct sigaction action {};
  action.sa_handler = wantStop;
  // Only the first of each kind is caught; no call is interrupted by it.
  action.sa_flags = static_cast<int>(SA_RESETHAND | SA_RESTART);
  for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
    struct sigaction before {};
    ::sigaction(signal, nullptr, &before);
    if (before.sa_handler != SIG_IGN) ::sigaction(signal, &action, nullptr);
  }
}

}  // namespace

void ActionProgress::begin(const std::string& title) {
  static const bool isCaught = (catchSignals(), true);
  (void)isCaught;
  turnTo(title);
}

void ActionProgress::say(const std::string& line) {
  const std::lock_guard guard(lock_);
  if (isShown_) line_.draw(isStopped() ? "Stopping: " + line : line);
}

void ActionProgress::copying(const std::string& path) { turnTo("Copying " + path); }

void ActionProgress::proving() {
  bytes_ = 0;
  turnTo("Checking the copy");
}

void ActionProgress::unrecorded(const CleanResult& result) {
  const std::lock_guard guard(lock_);
  line_.erase();
  unrecordedIDs_.insert(result.id);
  printError("what was done to '" + result.title +
             "' couldn't be written into the history, so undo won't know of it");
}

void ActionProgress::measured(ByteCount bytes) {
  bytes_ += bytes;
  // A thread that would have to wait leaves the drawing to the next.
  const std::unique_lock guard(lock_, std::try_to_lock);
  if (guard) draw();
}

bool ActionProgress::isStopped() const { return isStopWanted != 0; }

void ActionProgress::turnTo(std::string what) {
  const std::lock_guard guard(lock_);
  what_ = std::move(what);
  draw();
}

void ActionProgress::draw() {
  if (!isShown_ || line_.isFresh()) return;
  line_.draw(
      fmt::format("{}{}, {} so far", isStopped() ? "Stopping: " : "", what_, byteText(bytes_)));
}

}  // namespace volbrin::cli
