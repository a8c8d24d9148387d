#pragma once

#include <cstdint>
#include <map>
#include <mutex>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

#include "Mac.hpp"
#include "TreeFacts.hpp"

namespace volbrin {

/// What one scan has seen of the machine's trees. Whoever asks first about a tree has it walked,
/// once, and all that the pass tells is kept: whoever asks next, for whatever, costs nothing. The
/// answers are what a walk for each question would give. Safe to ask from several threads.
class Survey {
 public:
  /// Keeps references to `mac` and `markers`. `observer` may be null.
  Survey(const Mac& mac, const FileMarkers& markers, MeasureObserver* observer = nullptr)
      : mac_(mac), markers_(markers), observer_(observer) {}

  /// As `Mac::usage` and `Mac::usageOf`.
  [[nodiscard]] Usage usage(const std::string& path) const;
  [[nodiscard]] std::map<std::string, Usage> usageOf(const std::vector<std::string>& paths) const;

  /// Walks those of `paths` that haven't been walked yet, side by side.
  void learn(const std::vector<std::string>& paths) const;

  /// As the function of that name, with the survey's markers.
  [[nodiscard]] std::optional<std::string> personalContent(const std::string& path,
                                                           std::int64_t limit) const;
  /// As the function of that name.
  [[nodiscard]] bool changedRecently(const std::string& path, Date since, std::int64_t limit) const;

 private:
  [[nodiscard]] TreeFacts factsOf(const std::string& path) const;
  /// Whether a pass over `path` leaves out a cloud folder, which other walks enter.
  [[nodiscard]] bool holdsCloudFolder(const std::string& path) const;

  const Mac& mac_;
  const FileMarkers& markers_;
  MeasureObserver* observer_;

  mutable std::mutex lock_;  ///< Guards `known_`; never held across a walk.
  mutable std::unordered_map<std::string, TreeFacts> known_;
};

}  // namespace volbrin
