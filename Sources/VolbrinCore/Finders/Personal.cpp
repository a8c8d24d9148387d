#include "Personal.hpp"

#include <fmt/format.h>

#include <algorithm>

#include "../Text.hpp"
#include "CopySearch.hpp"
#include "Shared.hpp"

namespace volbrin {
namespace {

/// What changed within these days is in use.
constexpr std::chrono::days daysOfUse{30};
/// A tree of more entries isn't checked for changes to its end.
constexpr std::int64_t changeLimit = 100'000;

constexpr std::string_view onlyCopy =
    "{} {} holds the only copy; worth a second one somewhere if it can't be replaced.";

/// The folders of the user's own that no cloud keeps; the others join `skipped`.
std::vector<std::string> foldersToSearch(const ScanContext& context,
                                         std::vector<Skipped>& skipped) {
  std::vector<std::string> kept;
  for (const char* written :
       {"~/Desktop", "~/Documents", "~/Movies", "~/Music", "~/Pictures", "~/Downloads"}) {
    auto folder = context.mac.path(written);
    if (const auto cloud = context.mac.cloudFolderOf(folder)) {
      if (exists(folder)) skipped.push_back({folder, "never looked into: " + cloud->name});
    } else {
      kept.push_back(std::move(folder));
    }
  }
  return kept;
}

/// Whether a drive is mounted there or further inside: it is no file of the user's to move.
bool holdsDrive(const std::string& path, const ScanContext& context) {
  return std::any_of(context.drives.begin(), context.drives.end(),
                     [&](const auto& drive) { return isAtOrInside(drive.path, path); });
}

/// Settles, for each big item, which story is true of it.
class Story {
 public:
  Story(const ScanContext& context, CopySearch& copies) : context_(context), copies_(copies) {
    for (const auto& drive : context.drives) {
      if (!drive.isStartup) drives_.push_back(&drive);
    }
  }

  [[nodiscard]] Finding of(const std::string& path, ByteCount bytes) const {
    const std::string name(lastComponent(path));
    const std::string parent(lastComponent(parentFolder(path)));
    Finding finding;
    finding.id = fmt::format("personal-{}-{}", normalized(parent), normalized(name));
    finding.finder = "personal";
    finding.title = fmt::format("{} ({})", name, parent);
    finding.tier = Tier::personal;
    finding.bytes = bytes;
    finding.paths = {path};
    finding.action = actions::review;
    const auto subject = fmt::format("Your {} {}", name, isDirectory(path) ? "folder" : "file");
    const bool isChanged =
        context_.survey.changedRecently(path, context_.options.now - daysOfUse, changeLimit);
    if (!isLibrary(finding, subject, isChanged) && !isCopy(finding, subject)) {
      tellWhereItStays(finding, subject, isChanged);
    }
    return finding;
  }

 private:
  [[nodiscard]] const Catalog::AppLibrary* libraryAt(const std::string& path) const {
    for (const auto& library : context_.catalog.appLibraries) {
      const bool isPath = library.match.starts_with('~') || library.match.starts_with('/');
      const bool matches = isPath ? context_.mac.path(library.match) == path
                                  : lastComponent(path).ends_with(library.match);
      if (matches) return &library;
    }
    return nullptr;
  }

  bool isLibrary(Finding& finding, const std::string& subject, bool isChanged) const {
    const auto* library = libraryAt(finding.paths.front());
    if (library == nullptr) return false;
    finding.reason =
        fmt::format("{0} belongs to {1}; moved by hand, {1} would lose track of it{2}.", subject,
                    library->app, isChanged ? ", and you've changed things in it this month" : "");
    finding.owner = library->app;
    if (isChanged) {
      finding.getBack = "Still in use, so it isn't offered for moving.";
      return true;
    }
    finding.getBack = fmt::format("Moved from inside {}, it keeps working.", library->app);
    finding.action.kind = Action::Kind::handOff;
    finding.action.app = library->app;
    finding.action.steps = library->how;
    finding.action.moves = true;
    return true;
  }

  bool isCopy(Finding& finding, const std::string& subject) const {
    for (const auto* drive : drives_) {
      auto copy = copies_.findCopy(finding.paths.front(), *drive);
      if (!copy) continue;
      finding.reason = fmt::format("{}; an identical copy is on {} ({}).", subject, drive->name,
                                   context_.mac.display(*copy));
      finding.getBack = fmt::format("The copy on {} stays.", drive->name);
      finding.caution = fmt::format(onlyCopy, "After this,", drive->name);
      finding.duplicateOf = std::move(copy);
      return true;
    }
    return false;
  }

  void tellWhereItStays(Finding& finding, const std::string& subject, bool isChanged) const {
    if (isChanged) {
      finding.reason = subject + "; you've changed things in it this month.";
      finding.getBack = "Still in use, so it isn't offered for moving.";
      return;
    }
    finding.reason = subject + ".";
    const auto* target = driveWithRoom(finding);
    if (target == nullptr) {
      finding.getBack = "Nothing is removed; there's no drive with room to move it to right now.";
      return;
    }
    finding.getBack =
        fmt::format("Moved, not removed: it stays on {}, there whenever the drive is plugged in.",
                    target->name);
    finding.action.kind = Action::Kind::move;
    finding.caution = fmt::format(onlyCopy, "After the move,", target->name);
  }

  /// The first drive with room for the bytes and a tenth that the item isn't on already.
  [[nodiscard]] const DriveInfo* driveWithRoom(const Finding& finding) const {
    const ByteCount wanted = addBytes(finding.bytes, finding.bytes / 10, "the room for a move");
    const auto* own = context_.driveOf(finding.paths.front());
    for (const auto* drive : drives_) {
      if (drive->freeBytes > wanted && drive != own) return drive;
    }
    return nullptr;
  }

  const ScanContext& context_;
  CopySearch& copies_;
  std::vector<const DriveInfo*> drives_;  ///< all but the startup drive
};

}  // namespace

FinderResult PersonalFinder::find(const ScanContext& context) const {
  FinderResult result;
  std::vector<std::string> candidates;
  const auto folders = foldersToSearch(context, result.skipped);
  for (const auto& folder : folders) {
    for (auto& path : children(folder)) {
      if (isSymlink(path) || context.isClaimed(path) || holdsDrive(path, context)) continue;
      candidates.push_back(std::move(path));
    }
  }
  const auto usages = context.survey.usageOf(candidates);
  std::erase_if(candidates, [&](const auto& path) {
    return usages.at(path).bytes < limitOr(context.catalog.thresholds.personalFolder, context);
  });

  std::set<std::string, std::less<>> names;
  for (const auto& path : candidates) names.emplace(lastComponent(path));
  CopySearch copies(context.mac, std::move(names), folders);
  const Story story(context, copies);
  for (const auto& path : candidates) {
    result.findings.push_back(story.of(path, usages.at(path).bytes));
  }
  return result;
}

}  // namespace volbrin
