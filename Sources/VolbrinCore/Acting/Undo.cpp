#include <fmt/format.h>

#include <algorithm>
#include <exception>

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
  Undo(const HistoryEntry& entry, const Mac& mac) : entry_(entry), mac_(mac) {
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
    if (!dryRun) {
      if (auto fault = removeLinks()) return *fault;
    }
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

  std::optional<Outcome> removeLinks() const {
    for (const auto& link : links_) {
      // A link whose original is gone is all that leads to the copy.
      if (isLost(link)) continue;
      if (!isRemoved(link)) return failed("Couldn't remove the link at " + shown(link.from) + ".");
    }
    return std::nullopt;
  }

  [[nodiscard]] bool isLost(const Relocation& link) const {
    return std::any_of(restorable_.begin(), restorable_.end(), [&](const Relocation& each) {
      return each.from == link.from && !exists(each.to);
    });
  }

  [[nodiscard]] bool isRemoved(const Relocation& link) const {
    try {
      // What took its place meanwhile stays, and keeps the original from being put back.
      (void)removeLink(link.from, link.to);
      return true;
    } catch (const std::exception&) {
      return !mac_.isFake() && mac_.runAsAdmin({{"/bin/rm", link.from}});
    }
  }

  [[nodiscard]] bool isOneOfTheLinks(const std::string& path) const {
    return std::any_of(links_.begin(), links_.end(),
                       [&](const Relocation& link) { return link.from == path; });
  }

  /// Absent when it is back, or in a dry run would be.
  std::optional<Outcome> restore(const Relocation& relocation, bool dryRun) {
    const auto& present = relocation.to;
    const auto& old = relocation.from;
    if (!exists(present)) {
      return end(failed(shown(present) + " isn't there any more (the Trash was emptied, or the "
                                         "parked copy was deleted)."));
    }
    if (isTaken(old) && !(dryRun && isOneOfTheLinks(old))) {
      return end(refused("Something new is already at " + shown(old) + "."));
    }
    if (dryRun) return std::nullopt;
    try {
      putBack(present, old, mac_);
    } catch (const std::exception& error) {
      if (mac_.isFake() || !mac_.runAsAdmin({{"/bin/mv", present, old}})) {
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
};

}  // namespace

CleanResult Cleaner::undo(const std::string& id, const Mac& mac, bool dryRun) {
  const auto entry = newestNotUndone(id, mac);
  if (!entry) {
    return {id, id, CleanResult::Status::refused, "Nothing in the history to undo for this.",
            0,  {}};
  }
  auto outcome = Undo(*entry, mac).run(dryRun);
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
