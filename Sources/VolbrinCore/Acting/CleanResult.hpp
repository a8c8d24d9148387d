#pragma once

#include <array>
#include <optional>
#include <string>
#include <vector>

#include "../Bytes.hpp"
#include "../Json.hpp"

namespace volbrin {

/// One move that really happened. Paths are absolute.
struct Relocation {
  std::string from;            ///< where the item was
  std::string to;              ///< where it is now
  std::optional<bool> link;    ///< true: a symbolic link now stands at `from` and points to `to`
  std::optional<bool> parked;  ///< true: `to` is a parking place, to be put back like a Trash item

  bool operator==(const Relocation&) const = default;
};

/// What became of one thing that was to be acted on.
struct CleanResult {
  enum class Status {
    done,
    wouldDo,  ///< a dry run: nothing was touched
    refused,  ///< nothing was touched, and the reason is a decision
    failed,   ///< something was tried and went wrong; the disk changed as `relocated` says
  };

  std::string id;
  std::string title;
  Status status = Status::refused;
  std::string detail;   ///< one plain sentence for the user
  ByteCount bytes = 0;  ///< what it was worth, whatever became of it
  std::vector<Relocation> relocated;

  bool operator==(const CleanResult&) const = default;
};

template <>
struct EnumForms<CleanResult::Status> {
  using Status = CleanResult::Status;
  static constexpr std::array<std::pair<Status, const char*>, 4> list = {{
      {Status::done, "done"},
      {Status::wouldDo, "wouldDo"},
      {Status::refused, "refused"},
      {Status::failed, "failed"},
  }};
};

template <>
struct RecordFields<Relocation> {
  static constexpr auto list =
      std::tuple{field("from", &Relocation::from), field("to", &Relocation::to),
                 field("link", &Relocation::link), field("parked", &Relocation::parked)};
};

template <>
struct RecordFields<CleanResult> {
  static constexpr auto list = std::tuple{
      field("id", &CleanResult::id),         field("title", &CleanResult::title),
      field("status", &CleanResult::status), field("detail", &CleanResult::detail),
      field("bytes", &CleanResult::bytes),   field("relocated", &CleanResult::relocated)};
};

}  // namespace volbrin
