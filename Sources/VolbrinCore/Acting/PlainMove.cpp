#include <exception>

#include "../Files.hpp"
#include "../Paths.hpp"
#include "Actions.hpp"
#include "MoveParts.hpp"
#include "Target.hpp"

namespace volbrin {
namespace {

constexpr const char* folderOnDrive = "Moved from Mac";

std::string targetOn(const DriveInfo& drive, const std::string& source, const Mac& mac) {
  const auto name = isInside(source, mac.home()) ? source.substr(mac.home().size() + 1)
                                                 : std::string(lastComponent(source));
  return below(below(drive.path, folderOnDrive), name);
}

/// Copies a path, and proves the copy, in the words of a plain move; absent when it is proved.
std::optional<Outcome> copyAndProve(const std::string& source, const std::string& target,
                                    const ActScene& scene) {
  try {
    prepareTarget(target);
  } catch (const std::exception& error) {
    return failed("Couldn't make the folder on the drive: " + wordsOf(error));
  }
  if (const auto fault = copyTo(source, target, scene)) {
    if (!fault->hasStarted) return failed("Couldn't copy: " + fault->what);
    return failed("The copy didn't finish; the original is untouched, and the partial copy is at " +
                  scene.mac.display(target) + ".");
  }
  if (isProved(source, target, scene)) return std::nullopt;
  return failed("The copy doesn't match the original file for file; the original is untouched.");
}

/// Steam finds a moved game by its record, which belongs beside the folder "common" that holds the
/// games. Takes the record along, unless there is one; what went wrong, or absence.
std::optional<std::string> copySteamRecord(const std::string& record, const std::string& gameTarget,
                                           const ActScene& scene,
                                           std::vector<Relocation>& relocated) {
  const auto target = below(parentFolder(parentFolder(gameTarget)), lastComponent(record));
  if (exists(target)) return std::nullopt;
  try {
    prepareTarget(target);
    if (const auto fault = copyTo(record, target, scene)) return fault->what;
    if (!isProved(record, target, scene)) return "the copy doesn't match";
  } catch (const std::exception& error) {
    return wordsOf(error);
  }
  relocated.push_back({record, target, {}, {}});
  return std::nullopt;
}

/// Moves what belongs to the source to the Trash; `relocated` grows by what went.
std::optional<Outcome> giveUpFurtherPaths(const Finding& finding, const std::string& target,
                                          const ActScene& scene,
                                          std::vector<Relocation>& relocated) {
  for (auto path = finding.paths.begin() + 1; path != finding.paths.end(); ++path) {
    if (path->ends_with(".acf")) {
      if (const auto fault = copySteamRecord(*path, target, scene, relocated)) {
        return failed("Copied the files, but not Steam's record of them: " + *fault, relocated);
      }
    }
    try {
      relocated.push_back({*path, scene.mac.trash(*path), {}, {}});
    } catch (const std::exception&) {
      return failed("Copied, but couldn't trash " + scene.mac.display(*path) + ".", relocated);
    }
  }
  return std::nullopt;
}

Outcome moveTo(const Finding& finding, const std::string& target, const ActScene& scene) {
  const auto& source = finding.paths.front();
  const auto shown = scene.mac.display(target);
  if (!target.starts_with('/') || standardized(target) != target) return noDriveSaid();
  if (isTaken(target)) return alreadyExists(target, scene);
  if (isAtOrInside(target, source)) return noDriveSaid();
  if (scene.options.dryRun) {
    return wouldDo("Would copy to " + shown +
                   ", check every file, then move the original to the Trash.");
  }
  if (auto fault = copyAndProve(source, target, scene)) return *fault;

  std::vector<Relocation> relocated = {{source, target, {}, {}}};
  if (auto fault = giveUpFurtherPaths(finding, target, scene, relocated)) return *fault;
  try {
    relocated.push_back({source, scene.mac.trash(source), {}, {}});
  } catch (const std::exception& error) {
    return failed(
        "Copied and checked, but the original couldn't go to the Trash: " + wordsOf(error),
        std::move(relocated));
  }
  return done("Moved to " + shown + " and checked file by file; the original is in the Trash.",
              std::move(relocated));
}

}  // namespace

Outcome moveToDrive(const Finding& finding, const ActScene& scene) {
  if (finding.paths.empty()) return refused("Nothing to move.");
  if (finding.action.destination) return moveTo(finding, *finding.action.destination, scene);
  const auto chosen = chooseDrive(finding, scene);
  if (chosen.drive == nullptr) return chosen.refusal;
  return moveTo(finding, targetOn(*chosen.drive, finding.paths.front(), scene.mac), scene);
}

}  // namespace volbrin
