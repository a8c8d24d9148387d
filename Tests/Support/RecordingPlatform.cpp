#include "RecordingPlatform.hpp"

#include "Paths.hpp"
#include "Text.hpp"

namespace volbrin::test {
namespace {

template <class Map>
auto find(const Map& map, const std::string& key) -> std::optional<typename Map::mapped_type> {
  const auto found = map.find(key);
  return found == map.end() ? std::nullopt : std::optional(found->second);
}

}  // namespace

void RecordingPlatform::record(std::string touch) const {
  const std::lock_guard guard(lock_);
  touches_.push_back(std::move(touch));
}

std::vector<std::string> RecordingPlatform::touches() const {
  const std::lock_guard guard(lock_);
  return touches_;
}

std::vector<DriveInfo> RecordingPlatform::drives() const {
  record("drives");
  return driveList;
}

std::string RecordingPlatform::trashFolder() const { return trashPath; }

std::string RecordingPlatform::trash(const std::string& path) const {
  record("trash " + path);
  if (++trashCalls_ == failingTrash) throw std::system_error(failure, path);
  return below(trashPath, lastComponent(path));
}

std::optional<std::string> RecordingPlatform::run(const std::vector<std::string>& arguments) const {
  record("run " + joined(arguments, " "));
  return find(outputs, joined(arguments, " "));
}

bool RecordingPlatform::runAsAdmin(const std::vector<std::vector<std::string>>& commands) const {
  for (const auto& command : commands) record("admin " + joined(command, " "));
  return !commands.empty();
}

std::optional<std::string> RecordingPlatform::which(const std::string& tool) const {
  record("which " + tool);
  return find(tools, tool);
}

std::optional<Date> RecordingPlatform::lastUsed(const std::string& path) const {
  record("lastUsed " + path);
  return find(useDates, path);
}

std::set<std::string> RecordingPlatform::runningBundleIDs() const {
  record("running");
  return running;
}

std::optional<std::vector<SimRuntime>> RecordingPlatform::simulatorRuntimes() const {
  record("simulatorRuntimes");
  return std::nullopt;
}

std::vector<std::string> RecordingPlatform::indexedApps() const {
  record("indexedApps");
  return index;
}

std::optional<std::string> RecordingPlatform::appPath(const std::string& bundleID) const {
  record("appPath " + bundleID);
  return find(appPaths, bundleID);
}

std::optional<std::string> RecordingPlatform::teamIdentifier(const std::string& path) const {
  record("team " + path);
  return find(teams, path);
}

}  // namespace volbrin::test
