#pragma once

#include "Act.hpp"

/// What the moves to a drive have in common.
namespace volbrin {

/// The drive that a move shall go to, or why there is none to go to.
struct ChosenDrive {
  const DriveInfo* drive = nullptr;  ///< one of the report's
  Outcome refusal;                   ///< when there is no drive
};

/// The drive of `options.moveTo`, if it is mounted and has room for the finding plus a tenth. Never
/// the startup drive.
[[nodiscard]] ChosenDrive chooseDrive(const Finding& finding, const ActScene& scene);

/// No drive is named that the move could go to.
[[nodiscard]] Outcome noDriveSaid();

/// What stands at a target is never merged into nor replaced.
[[nodiscard]] Outcome alreadyExists(const std::string& target, const ActScene& scene);

/// Copies `source` to `target`, neither reached through links; see copyTree.
[[nodiscard]] std::optional<CopyFault> copyTo(const std::string& source, const std::string& target,
                                              const ActScene& scene);

/// Whether the copy holds every byte of the original, as read from its drive, and nobody has asked
/// to stop meanwhile.
[[nodiscard]] bool isProved(const std::string& source, const std::string& target,
                            const ActScene& scene);

}  // namespace volbrin
