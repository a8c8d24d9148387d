#pragma once

#include <array>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "Bytes.hpp"
#include "Dates.hpp"
#include "Json.hpp"

/// The records that the engine and everything around it talk in. Plain values: two are the same
/// when their fields are.
namespace volbrin {

struct Engine {
  Engine() = delete;
  static constexpr std::string_view version = "0.1.0";
};

/// How much the user loses, from nothing to what is theirs. The order of the cases is the order of
/// every list that the user sees.
enum class Tier { rebuilds, reinstallable, personal };

inline constexpr std::array allTiers = {Tier::rebuilds, Tier::reinstallable, Tier::personal};

/// The heading over findings of this tier.
[[nodiscard]] std::string_view title(Tier tier);
/// The tier's place in `allTiers`.
[[nodiscard]] std::int64_t order(Tier tier);

/// What can be done about a finding.
struct Action {
  enum class Kind {
    remove,   ///< "delete": remove for good; only what rebuilds itself
    trash,    ///< move to the Trash
    command,  ///< run `command`
    move,     ///< copy to another drive, verify, then trash the source
    handOff,  ///< only another app can do this; the user does it there
    review,   ///< nothing is done; the user decides
  };

  Kind kind = Kind::review;
  std::optional<std::vector<std::string>> command;  ///< the program first
  std::optional<std::string> destination;  ///< fixed target of a move: no drive is chosen for it
  std::optional<std::string> app;          ///< display name of the app that does a hand-off
  std::optional<std::string> steps;        ///< what the user does there, in plain language
  std::optional<bool> moves;     ///< the hand-off moves the data to a drive and doesn't prune it
  std::optional<bool> linkable;  ///< can be carried out by moving the folder and leaving a link

  bool operator==(const Action&) const = default;
};

/// The actions that say all with their kind.
namespace actions {
inline const Action remove{Action::Kind::remove, {}, {}, {}, {}, {}, {}};
inline const Action trash{Action::Kind::trash, {}, {}, {}, {}, {}, {}};
inline const Action review{Action::Kind::review, {}, {}, {}, {}, {}, {}};
}  // namespace actions

/// One thing that a scan offers to the user. `id` tells it apart.
struct Finding {
  std::string id;
  std::string finder;  ///< the finder that made it
  std::string title;
  std::string reason;   ///< why it can go
  std::string getBack;  ///< how the user gets it back
  Tier tier = Tier::personal;
  ByteCount bytes = 0;             ///< allocated bytes
  std::vector<std::string> paths;  ///< absolute
  std::string drive;               ///< path of its drive; left empty by finders, set by the scan
  std::optional<std::string> owner;
  Action action;
  std::optional<std::string> caution;      ///< must be agreed to before it is acted on
  std::optional<std::string> blockedBy;    ///< what stands in the way now
  bool unsure = false;                     ///< the owner isn't known for sure
  std::optional<std::string> duplicateOf;  ///< another copy of the same data

  bool operator==(const Finding&) const = default;
};

/// One mounted drive.
struct DriveInfo {
  std::string name;
  std::string path;  ///< mount path; the startup drive's is the machine's root
  bool isStartup = false;
  ByteCount totalBytes = 0;
  ByteCount freeBytes = 0;        ///< as users see it, with what the system would purge
  ByteCount strictFreeBytes = 0;  ///< without that

  bool operator==(const DriveInfo&) const = default;
};

/// The drive that holds `path`: of all mounted at or above it the one with the longest path in
/// characters, among equals the first. Null when none does.
[[nodiscard]] const DriveInfo* deepestDrive(const std::vector<DriveInfo>& drives,
                                            std::string_view path);

/// Something left out of a scan, with the reason in words for the user. The first words of some
/// reasons are recognised by the text report.
struct Skipped {
  std::string path;
  std::string why;

  bool operator==(const Skipped&) const = default;
};

/// A path that the user put on the never-touch list; may begin with "~".
struct ProtectedPath {
  std::string path;
  std::string why;

  bool operator==(const ProtectedPath&) const = default;
};

/// The result of a scan.
struct ScanReport {
  static constexpr std::string_view engineName = "volbrin 0.1.0";

  std::string engine{engineName};
  Date scannedAt;
  std::vector<DriveInfo> drives;
  ByteCount trashBytes = 0;  ///< what the user's Trash holds
  std::vector<Finding> findings;
  std::vector<Skipped> skipped;
  std::vector<std::string> notes;  ///< remarks for the user

  /// The first startup drive; null when the machine has none.
  [[nodiscard]] const DriveInfo* startup() const;

  bool operator==(const ScanReport&) const = default;
};

template <>
struct EnumForms<Tier> {
  static constexpr std::array<std::pair<Tier, const char*>, 3> list = {{
      {Tier::rebuilds, "rebuilds"},
      {Tier::reinstallable, "reinstallable"},
      {Tier::personal, "personal"},
  }};
};

template <>
struct EnumForms<Action::Kind> {
  static constexpr std::array<std::pair<Action::Kind, const char*>, 6> list = {{
      {Action::Kind::remove, "delete"},
      {Action::Kind::trash, "trash"},
      {Action::Kind::command, "command"},
      {Action::Kind::move, "move"},
      {Action::Kind::handOff, "handOff"},
      {Action::Kind::review, "review"},
  }};
};

template <>
struct RecordFields<Action> {
  static constexpr auto list = std::tuple{field("kind", &Action::kind),
                                          field("command", &Action::command),
                                          field("destination", &Action::destination),
                                          field("app", &Action::app),
                                          field("steps", &Action::steps),
                                          field("moves", &Action::moves),
                                          field("linkable", &Action::linkable)};
};

template <>
struct RecordFields<Finding> {
  static constexpr auto list = std::tuple{field("id", &Finding::id),
                                          field("finder", &Finding::finder),
                                          field("title", &Finding::title),
                                          field("reason", &Finding::reason),
                                          field("getBack", &Finding::getBack),
                                          field("tier", &Finding::tier),
                                          field("bytes", &Finding::bytes),
                                          field("paths", &Finding::paths),
                                          field("drive", &Finding::drive),
                                          field("owner", &Finding::owner),
                                          field("action", &Finding::action),
                                          field("caution", &Finding::caution),
                                          field("blockedBy", &Finding::blockedBy),
                                          field("unsure", &Finding::unsure),
                                          field("duplicateOf", &Finding::duplicateOf)};
};

template <>
struct RecordFields<DriveInfo> {
  static constexpr auto list = std::tuple{field("name", &DriveInfo::name),
                                          field("path", &DriveInfo::path),
                                          field("isStartup", &DriveInfo::isStartup),
                                          field("totalBytes", &DriveInfo::totalBytes),
                                          field("freeBytes", &DriveInfo::freeBytes),
                                          field("strictFreeBytes", &DriveInfo::strictFreeBytes)};
};

template <>
struct RecordFields<Skipped> {
  static constexpr auto list =
      std::tuple{field("path", &Skipped::path), field("why", &Skipped::why)};
};

template <>
struct RecordFields<ProtectedPath> {
  static constexpr auto list =
      std::tuple{field("path", &ProtectedPath::path), field("why", &ProtectedPath::why)};
};

template <>
struct RecordFields<ScanReport> {
  static constexpr auto list = std::tuple{
      field("engine", &ScanReport::engine),     field("scannedAt", &ScanReport::scannedAt),
      field("drives", &ScanReport::drives),     field("trashBytes", &ScanReport::trashBytes),
      field("findings", &ScanReport::findings), field("skipped", &ScanReport::skipped),
      field("notes", &ScanReport::notes)};
};

}  // namespace volbrin
