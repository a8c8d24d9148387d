#include <fmt/format.h>

#include <exception>

#include "../Compare.hpp"
#include "../Files.hpp"
#include "Actions.hpp"
#include "Ladder.hpp"

namespace volbrin {
namespace {

/// How many files keep the keeper from being a proved copy; absent when the two are one item or one
/// is reached through a link.
std::optional<std::int64_t> differencesBetween(const std::string& path, const std::string& keeper,
                                               CleanObserver* observer) {
  if (observer != nullptr) observer->proving();
  const auto diff = compareCopies(path, keeper, CompareBy::contents, observer);
  if (!diff) return std::nullopt;
  return diff->differing + diff->onlyHere + diff->onlyThere + diff->unseen;
}

}  // namespace

Outcome removeCopy(const Finding& finding, const ActScene& scene) {
  if (finding.paths.size() != 1) return refused("Nothing to remove.");
  const auto& path = finding.paths.front();
  const auto& keeper = *finding.duplicateOf;
  const auto shownKeeper = scene.mac.display(keeper);
  if (const auto caution = waitingCaution(finding, scene.options)) return refused(*caution);
  if (const auto why = scene.guard.protection(path, PathGuard::Contents::include)) {
    return refused(reachesProtected(*why));
  }
  const char* const throughLink = "One of the copies is reached through a link.";
  if (PathGuard::throughLink(path) || PathGuard::throughLink(keeper)) return refused(throughLink);
  if (!exists(path) || !exists(keeper)) {
    return refused("One of the two copies isn't there any more; scan again.");
  }
  if (const auto why = protectedInside(path, scene.guard)) return refused(holdsProtected(*why));
  const auto differences = differencesBetween(path, keeper, scene.options.observer);
  if (!differences) return refused(throughLink);
  if (*differences > 0) {
    return refused(
        fmt::format("The copy on the drive isn't identical any more ({} files differ); "
                    "nothing was removed.",
                    *differences));
  }
  if (scene.options.dryRun) {
    return wouldDo("Contents match byte for byte; would move this copy to the Trash and keep " +
                   shownKeeper + ".");
  }
  if (scene.isStopped()) return refused(std::string(stoppedBefore));
  try {
    return done(
        "Contents matched byte for byte; this copy is in the Trash and " + shownKeeper + " stays.",
        {{path, scene.mac.trash(path), {}, {}}});
  } catch (const std::exception& error) {
    return failed("Couldn't move it to the Trash: " + wordsOf(error));
  }
}

}  // namespace volbrin
