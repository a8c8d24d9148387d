#pragma once

#include "Act.hpp"

namespace volbrin {

/// Which of the careful actions stands in for a finding's own.
enum class Detour {
  none,
  removeCopy,     ///< a copy of what is the user's own, with another copy that stays
  moveWithLinks,  ///< a hand-off that the user agreed to have moved
};

/// The detour that the ladder leads to, unless it ends before: `refusalBeforeDetour` comes first.
[[nodiscard]] Detour detourOf(const Finding& finding, const CleanOptions& options);

/// What keeps a finding from being acted on, whatever the action; absent when nothing does.
[[nodiscard]] std::optional<std::string> refusalBeforeDetour(const Finding& finding);

/// What keeps a finding that takes no detour from its own action; absent when nothing does. In a
/// fixed order: the first reason is the one that is told.
[[nodiscard]] std::optional<std::string> refusal(const Finding& finding, const ActScene& scene);

/// The reason of the first never-touch rule that something in the folder at `path` falls under, in
/// order of names; what is mounted inside counts as one. Absent when nothing does, when it is no
/// folder that may be looked into, and when 200,000 entries have shown nothing: the search gives up
/// rather than hold an action up.
[[nodiscard]] std::optional<std::string> protectedInside(const std::string& path,
                                                         const PathGuard& guard);

}  // namespace volbrin
