#pragma once

#include <string>
#include <vector>

#include "../PathGuard.hpp"
#include "Cleaner.hpp"

/// What the actions share.
namespace volbrin {

/// What every action is given.
struct ActScene {
  const Mac& mac;
  const ScanReport& report;  ///< of the fresh scan
  const PathGuard& guard;
  const CleanOptions& options;

  [[nodiscard]] bool isStopped() const {
    return options.observer != nullptr && options.observer->isStopped();
  }
};

/// What became of a finding; with the finding's own fields it is a CleanResult.
struct Outcome {
  CleanResult::Status status = CleanResult::Status::refused;
  std::string detail;
  std::vector<Relocation> relocated = {};
};

[[nodiscard]] inline Outcome refused(std::string why) {
  return {CleanResult::Status::refused, std::move(why)};
}
[[nodiscard]] inline Outcome wouldDo(std::string what) {
  return {CleanResult::Status::wouldDo, std::move(what)};
}
[[nodiscard]] inline Outcome failed(std::string why, std::vector<Relocation> relocated = {}) {
  return {CleanResult::Status::failed, std::move(why), std::move(relocated)};
}
[[nodiscard]] inline Outcome done(std::string what, std::vector<Relocation> relocated = {}) {
  return {CleanResult::Status::done, std::move(what), std::move(relocated)};
}

/// The system's description of an error, without what the engine adds to it.
[[nodiscard]] std::string wordsOf(const std::exception& error);

/// Whether the user hasn't agreed to a caution yet, and the words that say so.
[[nodiscard]] std::optional<std::string> waitingCaution(const Finding& finding,
                                                        const CleanOptions& options);

/// For what hadn't begun when the user asked to stop.
inline constexpr std::string_view stoppedBefore = "Stopped before this one; nothing was touched.";

/// Words for a never-touch rule that an action would reach, and for one within a path.
[[nodiscard]] std::string reachesProtected(const std::string& why);
[[nodiscard]] std::string holdsProtected(const std::string& why);

}  // namespace volbrin
