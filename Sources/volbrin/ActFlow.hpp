#pragma once

#include <functional>
#include <set>
#include <string>
#include <vector>

#include "Acting/CleanResult.hpp"
#include "ActionProgress.hpp"
#include "Session.hpp"

/// How every command that changes the disk goes about it: it shows what would happen, asks, acts
/// and tells.
namespace volbrin::cli {

enum class Manner { dryRun, ask, act };

/// From `--dry-run`, `--yes` and whether there is anybody to ask; UsageError when nothing tells.
[[nodiscard]] Manner mannerOf(const Session& session);

/// What came of a list of ids.
struct Acted {
  std::vector<CleanResult> list;
  std::set<std::string> unrecorded;  ///< ids that an undo won't find
};

/// Acts on ids, or in a dry run says what it would do.
using ActOnIds = std::function<Acted(const std::vector<std::string>& ids, bool dryRun)>;

/// Runs the command for the ids of the command line; asks only about those that would go through.
[[nodiscard]] ExitStatus actOnIds(Session& session, Manner manner, const ActOnIds& run);

/// The same for an action of one result, which nothing puts back.
using ActOnce = std::function<CleanResult(bool dryRun)>;
[[nodiscard]] ExitStatus actOnce(Session& session, Manner manner, const ActOnce& run);

/// Whether progress may be shown.
[[nodiscard]] ActionProgress::Display displayFor(Session& session);

}  // namespace volbrin::cli
