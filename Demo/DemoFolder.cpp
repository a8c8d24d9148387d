#include "DemoFolder.hpp"

#include <fcntl.h>
#include <fmt/format.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <filesystem>
#include <string_view>
#include <system_error>
#include <vector>

#include "Failure.hpp"
#include "FolderNames.hpp"
#include "RemoveTree.hpp"

namespace volbrin::demo {

namespace {

constexpr const char* markerName = ".volbrin-demo";
constexpr std::string_view markerText =
    "A demo machine made by volbrin-demo. Everything beside this file may be removed by\n"
    "volbrin-demo --replace.\n";

/// All that may stand at the top of a machine. The last one is left by a look in the Finder.
constexpr std::array<std::string_view, 8> machineNames = {
    "Applications",         "Library",  "System",   "Users", "Volumes",
    "volbrin-fixture.json", markerName, ".DS_Store"};

bool isMarked(const Handle& folder) {
  const Handle marker(
      ::openat(folder.get(), markerName, O_RDONLY | O_NOFOLLOW | O_CLOEXEC | O_NONBLOCK));
  if (!marker.isOpen()) return false;
  struct stat info {};
  if (::fstat(marker.get(), &info) != 0 || !S_ISREG(info.st_mode)) return false;
  std::array<char, 256> buffer{};
  const ssize_t count = ::read(marker.get(), buffer.data(), buffer.size());
  return count >= 0 &&
         std::string_view(buffer.data(), static_cast<std::size_t>(count)) == markerText;
}

void writeMarker(const Handle& folder) {
  const Handle marker(::openat(folder.get(), markerName,
                               O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, 0644));
  if (!marker.isOpen()) failWithErrno("make the file", markerName);
  const ssize_t count = ::write(marker.get(), markerText.data(), markerText.size());
  if (count != static_cast<ssize_t>(markerText.size())) failWithErrno("write", markerName);
}

/// Empties an earlier machine, marker last.
void removeEarlier(const Handle& folder, const std::vector<std::string>& names,
                   const std::string& path) {
  for (const std::string& name : names) {
    if (std::find(machineNames.begin(), machineNames.end(), name) == machineNames.end()) {
      throw Failure(
          fmt::format("{} also holds \"{}\", which is no part of a demo machine; nothing "
                      "was removed",
                      path, name));
    }
  }
  for (const std::string& name : names) {
    if (name != markerName) removeTree(folder.get(), name, path);
  }
  removeTree(folder.get(), markerName, path);
}

}  // namespace

DemoFolder DemoFolder::claim(const std::string& path, Earlier earlier) {
  std::error_code error;
  std::filesystem::create_directories(path, error);
  // An existing file is told of by the next step, in clearer words.
  if (error && !std::filesystem::exists(path)) {
    throw Failure(fmt::format("can't make the folder {}: {}", path, error.message()));
  }
  Handle folder(::open(path.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  if (!folder.isOpen()) failWithErrno("open the folder", path);

  const std::vector<std::string> names = folderNames(folder.get(), path);
  if (!names.empty()) {
    if (!isMarked(folder)) {
      throw Failure(path + " isn't empty and isn't a demo machine; nothing was touched");
    }
    if (earlier == Earlier::keep) {
      throw Failure(path + " already holds a demo machine; --replace makes it anew");
    }
    removeEarlier(folder, names, path);
  }
  writeMarker(folder);
  return DemoFolder(std::move(folder));
}

void DemoFolder::dateMarker(Seconds now) const {
  const std::array<timespec, 2> times{timespec{.tv_sec = now, .tv_nsec = 0},
                                      timespec{.tv_sec = now, .tv_nsec = 0}};
  if (::utimensat(handle_.get(), markerName, times.data(), AT_SYMLINK_NOFOLLOW) != 0) {
    failWithErrno("date", markerName);
  }
}

}  // namespace volbrin::demo
