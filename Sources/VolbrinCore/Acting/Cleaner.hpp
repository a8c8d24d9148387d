#pragma once

#include <string>
#include <vector>

#include "../Catalog.hpp"
#include "../Mac.hpp"
#include "../ScanContext.hpp"
#include "../TreeCopy.hpp"
#include "CleanResult.hpp"

namespace volbrin {

/// Hears how an action goes on, and may stop it. A copy ends where it is and its original stays;
/// what comes after it isn't begun.
class CleanObserver : public CopyObserver, public MeasureObserver {
 public:
  /// A finding's turn has come; in a dry run too.
  virtual void beginning(const Finding& finding) = 0;
  /// A copy is whole and is now held against its original; `measured` tells how far.
  virtual void proving() = 0;
  /// What was done couldn't be written into the history: an undo won't find it.
  virtual void unrecorded(const CleanResult& result) = 0;
};

struct CleanOptions {
  bool dryRun = false;                ///< judge everything, change nothing
  bool includeCautioned = false;      ///< the user has agreed to findings that carry a caution
  bool permanentCaches = false;       ///< "delete" removes for good; otherwise it goes to the Trash
  std::optional<std::string> moveTo;  ///< name or path of the drive to move to
  bool linkMove = false;              ///< the user has agreed to moves that leave a link
  ScanOptions scan;                   ///< of the fresh scan
  CleanObserver* observer = nullptr;  ///< null for none
};

/// The only part of the engine that changes the user's disk on behalf of a finding, and puts it
/// back. Nothing here raises an error: every outcome is a result.
struct Cleaner {
  Cleaner() = delete;

  /// Scans afresh, and acts on the findings of these ids as that scan has them: what a caller saw
  /// earlier doesn't count. One result for each id, in their order. What changed the disk is in the
  /// history when this returns.
  [[nodiscard]] static std::vector<CleanResult> clean(const std::vector<std::string>& ids,
                                                      const Mac& mac, const Catalog& catalog,
                                                      const CleanOptions& options);

  /// Puts back what the newest action under this id, not undone yet, moved to a Trash or a parking
  /// place, and takes away the links that it left. Never overwrites anything. `relocated` lists
  /// what was put back. From another drive things are copied: `observer` hears of it and may stop.
  [[nodiscard]] static CleanResult undo(const std::string& id, const Mac& mac, bool dryRun,
                                        CopyObserver* observer = nullptr);

  /// Whether `undo` finds anything to put back in what an action relocated.
  [[nodiscard]] static bool isUndoable(const std::vector<Relocation>& relocated, const Mac& mac);
};

}  // namespace volbrin
