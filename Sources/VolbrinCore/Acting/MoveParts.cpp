#include "MoveParts.hpp"

#include <algorithm>

#include "../Compare.hpp"

namespace volbrin {
namespace {

const DriveInfo* namedDrive(const std::string& wanted, const std::vector<DriveInfo>& drives) {
  const auto found = std::find_if(drives.begin(), drives.end(), [&](const DriveInfo& drive) {
    return !drive.isStartup && (drive.name == wanted || drive.path == wanted);
  });
  return found == drives.end() ? nullptr : &*found;
}

/// The report's drives are as old as the scan: one that was taken away since leaves an empty folder
/// of the startup drive behind.
bool isStillThere(const DriveInfo& drive, const Mac& mac) {
  const auto drives = mac.drives();
  return std::any_of(drives.begin(), drives.end(), [&](const DriveInfo& each) {
    return !each.isStartup && each.path == drive.path;
  });
}

}  // namespace

Outcome noDriveSaid() { return refused("Say which drive to move it to."); }

ChosenDrive chooseDrive(const Finding& finding, const ActScene& scene) {
  const auto& wanted = scene.options.moveTo;
  const auto* drive = wanted ? namedDrive(*wanted, scene.report.drives) : nullptr;
  if (drive == nullptr || !isStillThere(*drive, scene.mac)) return {nullptr, noDriveSaid()};
  const auto needed = addBytes(finding.bytes, finding.bytes / 10, "what a move needs");
  if (needed >= drive->freeBytes) {
    return {nullptr, refused(drive->name + " doesn't have room for it plus a margin.")};
  }
  return {drive, {}};
}

Outcome alreadyExists(const std::string& target, const ActScene& scene) {
  return refused(scene.mac.display(target) +
                 " already exists; compare the two before anything moves.");
}

std::optional<CopyFault> copyTo(const std::string& source, const std::string& target,
                                const ActScene& scene) {
  return scene.mac.platform().copyTree(source, target, scene.options.observer);
}

bool isProved(const std::string& source, const std::string& target, const ActScene& scene) {
  auto* observer = scene.options.observer;
  if (observer != nullptr) observer->proving();
  const auto diff = compareCopies(source, target, CompareBy::contentsOnDrive, observer);
  return diff && diff->isProof() && !scene.isStopped();
}

}  // namespace volbrin
