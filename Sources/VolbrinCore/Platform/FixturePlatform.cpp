#include "FixturePlatform.hpp"

#include <algorithm>
#include <system_error>

#include "../HeldItem.hpp"
#include "../MachinePaths.hpp"
#include "../Paths.hpp"
#include "../PropertyList.hpp"

namespace volbrin {
FixturePlatform::FixturePlatform(std::string root, std::string home, Fixture fixture)
    : root_(std::move(root)), home_(std::move(home)), fixture_(std::move(fixture)) {}

std::vector<DriveInfo> FixturePlatform::drives() const {
  std::vector<DriveInfo> drives;
  for (const auto& drive : fixture_.drives) {
    const bool isStartup = drive.path == "/";
    drives.push_back({drive.name, isStartup ? root_ : root_ + drive.path, isStartup, drive.total,
                      drive.free, drive.free});
  }
  return drives;
}

std::string FixturePlatform::trashFolder() const { return home_ + "/.Trash"; }

std::string FixturePlatform::trash(const std::string& path) const {
  const HeldItem item = holdItem(path);
  HeldItem place = holdItem(trashFolder());
  place.folder = makeFolderBelow(place.folder, place.name, 0700);
  for (int number = 1;; ++number) {
    place.name = number == 1 ? item.name : item.name + " " + std::to_string(number);
    try {
      moveExclusively(item, place);
      return below(trashFolder(), place.name);
    } catch (const std::system_error& error) {
      if (error.code() != std::errc::file_exists) throw;  // taken: count on
    }
  }
}

std::optional<std::string> FixturePlatform::run(const std::vector<std::string>&) const {
  return std::nullopt;
}

bool FixturePlatform::runAsAdmin(const std::vector<std::vector<std::string>>&) const {
  return false;
}

std::optional<std::string> FixturePlatform::which(const std::string& tool) const {
  if (!fixture_.tools || std::count(fixture_.tools->begin(), fixture_.tools->end(), tool) == 0) {
    return std::nullopt;
  }
  return "/fake/bin/" + tool;
}

std::optional<Date> FixturePlatform::lastUsed(const std::string& path) const {
  if (!fixture_.lastUsed) return std::nullopt;
  const auto found = fixture_.lastUsed->find(displayedPath(path, root_, home_));
  if (found == fixture_.lastUsed->end() || !found->second) return std::nullopt;
  return parseIso8601(*found->second);
}

std::set<std::string> FixturePlatform::runningBundleIDs() const {
  if (!fixture_.running) return {};
  return {fixture_.running->begin(), fixture_.running->end()};
}

std::optional<std::vector<SimRuntime>> FixturePlatform::simulatorRuntimes() const {
  return fixture_.simRuntimes;
}

std::vector<std::string> FixturePlatform::indexedApps() const { return {}; }

std::optional<std::string> FixturePlatform::appPath(const std::string&) const {
  return std::nullopt;
}

std::optional<std::string> FixturePlatform::teamIdentifier(const std::string& path) const {
  return propertyListString(path + "/Contents/Info.plist", "VolbrinTeamID");
}

}  // namespace volbrin
