#pragma once

#include "Act.hpp"

/// What can be done about a finding, once nothing keeps it from being done. In a dry run each says
/// what it would do and changes nothing.
namespace volbrin {

/// Removes each path for good.
[[nodiscard]] Outcome removeForGood(const Finding& finding, const ActScene& scene);

/// Moves each path to the Trash.
[[nodiscard]] Outcome moveToTrash(const Finding& finding, const ActScene& scene);

/// Runs the finding's command, once.
[[nodiscard]] Outcome runCommand(const Finding& finding, const ActScene& scene);

/// Copies the first path to a drive, proves the copy, and moves all paths to the Trash, the first
/// one last. Steam's record of a game goes with it.
[[nodiscard]] Outcome moveToDrive(const Finding& finding, const ActScene& scene);

/// Copies each path to a drive, proves the copy, moves the original to the Trash and leaves a link
/// in its place, so that the apps that use it go on finding it.
[[nodiscard]] Outcome moveWithLinks(const Finding& finding, const ActScene& scene);

/// Moves the finding's path to the Trash if every byte of it is in `duplicateOf` too.
[[nodiscard]] Outcome removeCopy(const Finding& finding, const ActScene& scene);

}  // namespace volbrin
