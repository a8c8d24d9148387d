#pragma once

#include <optional>
#include <string>
#include <vector>

#include "../Mac.hpp"
#include "CleanResult.hpp"

namespace volbrin {

/// One thing that changed the disk, or was put back.
struct HistoryEntry {
  Date at;
  std::string id;  ///< the finding's
  std::string title;
  Action::Kind action = Action::Kind::review;
  ByteCount bytes = 0;
  std::vector<Relocation> relocated;
  std::optional<bool> undone;  ///< true on a line that marks an undo, and on what it undid

  bool operator==(const HistoryEntry&) const = default;
};

/// The record of all that was done: one line of JSON for each entry (JSON Lines), oldest first, in
/// the user's home. Lines are only ever added.
struct History {
  History() = delete;

  /// The file, whether or not it is there.
  [[nodiscard]] static std::string pathOn(const Mac& mac);

  /// Adds a line and brings it to the disk. What it records is done already, so it raises nothing:
  /// false when the line couldn't be written. Whole lines of several processes never mix, and a
  /// line that an earlier crash left torn stays alone.
  static bool append(const HistoryEntry& entry, const Mac& mac);

  /// All entries in the file's order; a line that can't be read costs only itself. What an undo has
  /// put back is marked so.
  [[nodiscard]] static std::vector<HistoryEntry> load(const Mac& mac);
};

template <>
struct RecordFields<HistoryEntry> {
  static constexpr auto list = std::tuple{
      field("at", &HistoryEntry::at),        field("id", &HistoryEntry::id),
      field("title", &HistoryEntry::title),  field("action", &HistoryEntry::action),
      field("bytes", &HistoryEntry::bytes),  field("relocated", &HistoryEntry::relocated),
      field("undone", &HistoryEntry::undone)};
};

}  // namespace volbrin
