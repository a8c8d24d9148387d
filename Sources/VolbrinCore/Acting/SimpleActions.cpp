#include <exception>

#include "../Text.hpp"
#include "Actions.hpp"
#include "RemoveTree.hpp"

namespace volbrin {

Outcome removeForGood(const Finding& finding, const ActScene& scene) {
  if (scene.options.dryRun) return wouldDo("Would delete (it rebuilds itself).");
  for (const auto& path : finding.paths) {
    try {
      removeTree(holdItem(path));
    } catch (const std::exception& error) {
      return failed("Couldn't delete " + scene.mac.display(path) + ": " + wordsOf(error));
    }
  }
  return done("Deleted; it rebuilds itself.");
}

Outcome moveToTrash(const Finding& finding, const ActScene& scene) {
  if (scene.options.dryRun) return wouldDo("Would move to the Trash.");
  std::vector<Relocation> relocated;
  for (const auto& path : finding.paths) {
    try {
      relocated.push_back({path, scene.mac.trash(path), {}, {}});
    } catch (const std::exception& error) {
      return failed("Couldn't move " + scene.mac.display(path) + " to the Trash: " + wordsOf(error),
                    std::move(relocated));
    }
  }
  return done("Moved to the Trash; the space comes back when the Trash is emptied.",
              std::move(relocated));
}

Outcome runCommand(const Finding& finding, const ActScene& scene) {
  const auto command = finding.action.command.value_or(std::vector<std::string>());
  const auto shown = joined(command, " ");
  if (scene.options.dryRun) return wouldDo("Would run: " + shown);
  if (scene.mac.isFake()) return refused("A fake Mac runs no commands (would run: " + shown + ").");
  if (!scene.mac.run(command)) return failed(shown + " didn't succeed; nothing else was tried.");
  return done("Ran " + shown + ".");
}

}  // namespace volbrin
