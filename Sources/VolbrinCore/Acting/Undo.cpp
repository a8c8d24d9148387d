#include <fmt/format.h>

#include <algorithm>
#include <exception>
#include <system_error>

#include "../Files.hpp"
#include "Act.hpp"
#include "History.hpp"
#include "PutBack.hpp"
#include "Target.hpp"

namespace volbrin {
namespace {

bool isRestorable(const Relocation& relocation, const Mac& mac) {
  return mac.platform().isInTrash(relocation.to) || relocation.parked.value_or(false);
}

std::optional<HistoryEntry> newestNotUndone(const std::string& id, const Mac& mac) {
  auto entries = History::load(mac);
  const auto found = std::find_if(entries.rbegin(), entries.rend(), [&](const HistoryEntry& entry) {
    return entry.id == id && !entry.undone.value_or(false);
  });
  if (found == entries.rend()) return std::nullopt;
  return std::move(*found);
}

class Undo {
 public:
  Undo(const HistoryEntry& entry, const Mac& mac, CopyObserver* observer)
      : entry_(entry), mac_(mac), observer_(observer) {
    for (const auto& relocation : entry.relocated) {
      if (isRestorable(relocation, mac)) restorable_.push_back(relocation);
      // One that leads elsewhere, or can't be read, isn't the one that was made here.
      const bool isOurs =
          relocation.link.value_or(false) && linkTarget(relocation.from) == relocation.to;
      if (isOurs) links_.push_back(relocation);
    }
  }

  Outcome run(bool dryRun) {
    if (restorable_.empty()) return nothingInTrash();
    for (const auto& relocation : restorable_) {
      if (auto fault = restore(relocation, dryRun)) return *fault;
    }
    if (dryRun) {
      return wouldDo(fmt::format("Would put {} item(s) back where they were.", restorable_.size()));
    }
    recordUndone();
    std::string detail = "Put back where it was.";
    if (!links_.empty()) {
      detail += " The copy on " + shown(links_.front().to) + " stays until you remove it.";
    }
    for (const auto& path : left_) {
      detail += " What changed meanwhile or couldn't be removed is still at " + shown(path) + ".";
    }
    return done(std::move(detail), std::move(restored_));
  }

 private:
  [[nodiscard]] std::string shown(const std::string& path) const { return mac_.display(path); }

  [[nodiscard]] Outcome nothingInTrash() const {
    std::string places;
    for (const auto& relocation : entry_.relocated) {
      places += (places.empty() ? "" : ", ") + shown(relocation.to);
    }
    return refused("Nothing went to the Trash; moved files are on the drive at " + places + ".");
  }

  [[nodiscard]] bool isRemoved(const Relocation& link) const {
    try {
      // What took its place meanwhile stays, and keeps the original from being put back.
      (void)removeLink(link.from, link.to);
      return true;
    } catch (const std::exception&) {
      // With an administrator's rights only what is still the link that was made here.
      return !mac_.isFake() && linkTarget(link.from) == link.to &&
             mac_.runAsAdmin({{"/bin/rm", link.from}});
    }
  }

  /// With an administrator's rights, where rights are what is missing: the tool that is then run
  /// would follow a link on the way and overwrite what came meanwhile.
  [[nodiscard]] bool isMovedByAdmin(const std::string& present, const std::string& old,
                                    const std::exception& error) const {
    const auto* fault = dynamic_cast<const std::system_error*>(&error);
    const bool isDenied = fault != nullptr && (fault->code() == std::errc::permission_denied ||
                                               fault->code() == std::errc::operation_not_permitted);
    return isDenied && !mac_.isFake() && !isTaken(old) &&
           mac_.runAsAdmin({{"/bin/mv", present, old}});
  }

  /// The link that stands where the item was; null when none does.
  [[nodiscard]] const Relocation* linkAt(const std::string& path) const {
    const auto found = std::find_if(links_.begin(), links_.end(),
                                    [&](const Relocation& link) { return link.from == path; });
    return found == links_.end() ? nullptr : &*found;
  }

  /// Absent when it is back, or in a dry run would be. A link goes only when its original is there
  /// to take the place: until then it is all that leads to the copy.
  std::optional<Outcome> restore(const Relocation& relocation, bool dryRun) {
    const auto& present = relocation.to;
    const auto& old = relocation.from;
    if (!exists(present)) {
      return end(failed(shown(present) + " isn't there any more (the Trash was emptied, or the "
                                         "parked copy was deleted)."));
    }
    const auto* link = linkAt(old);
    if (link != nullptr && !dryRun && !isRemoved(*link)) {
      return end(failed("Couldn't remove the link at " + shown(link->from) + "."));
    }
    if (isTaken(old) && !(dryRun && link != nullptr)) {
      return end(refused("Something new is already at " + shown(old) + "."));
    }
    if (dryRun) return std::nullopt;
    try {
      if (!putBack(present, old, mac_, observer_)) left_.push_back(present);
    } catch (const std::exception& error) {
      if (!isMovedByAdmin(present, old, error)) {
        return end(failed("Couldn't put back " + shown(old) + ": " + wordsOf(error)));
      }
    }
    restored_.push_back({present, old, {}, {}});
    return std::nullopt;
  }

  /// With what was put back so far.
  [[nodiscard]] Outcome end(Outcome outcome) const {
    outcome.relocated = restored_;
    return outcome;
  }

  void recordUndone() const {
    HistoryEntry mark = entry_;
    mark.at = presentDate();
    mark.undone = true;
    History::append(mark, mac_);
  }

  const HistoryEntry& entry_;
  const Mac& mac_;
  std::vector<Relocation> restorable_;
  std::vector<Relocation> links_;  ///< to be removed
  std::vector<Relocation> restored_;
  std::vector<std::string> left_;  ///< where something stayed
  CopyObserver* observer_;
};

}  // namespace

CleanResult Cleaner::undo(const std::string& id, const Mac& mac, bool dryRun,
                          CopyObserver* observer) {
  const auto entry = newestNotUndone(id, mac);
  if (!entry) {
    return {id, id, CleanResult::Status::refused, "Nothing in the history to undo for this.",
            0,  {}};
  }
  auto outcome = Undo(*entry, mac, observer).run(dryRun);
  return {id,
          entry->title,
          outcome.status,
          std::move(outcome.detail),
          entry->bytes,
          std::move(outcome.relocated)};
}

bool Cleaner::isUndoable(const std::vector<Relocation>& relocated, const Mac& mac) {
  return std::any_of(relocated.begin(), relocated.end(),
                     [&](const Relocation& each) { return isRestorable(each, mac); });
}

}  // namespace volbrin
