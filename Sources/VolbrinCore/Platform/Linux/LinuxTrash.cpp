#include "LinuxTrash.hpp"

#include <fcntl.h>
#include <fmt/format.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <ctime>
#include <filesystem>
#include <optional>
#include <system_error>

#include "../../Descriptor.hpp"
#include "../../Files.hpp"
#include "../../HeldItem.hpp"
#include "../../Paths.hpp"
#include "LinuxDrives.hpp"

namespace volbrin {
namespace {

[[noreturn]] void raise(int error, const std::string& path) {
  throw std::system_error(error, std::generic_category(), path);
}

/// A Trash folder, and the part of a trashed path that its records leave out.
struct TrashCan {
  std::string folder;
  std::string base;  ///< records hold paths relative to it; empty for absolute ones
};

/// The Trash, held; made for this user alone. A link in its place is refused, and
/// on a drive so is a folder that another user made: what goes there would be theirs.
Descriptor openCan(const TrashCan& can) {
  const HeldItem place = holdItem(can.folder);
  Descriptor folder = makeFolderBelow(place.folder, place.name, 0700);
  struct stat status {};
  if (::fstat(folder.get(), &status) != 0) raise(errno, can.folder);
  if (!can.base.empty() && status.st_uid != ::geteuid()) raise(EPERM, can.folder);
  return folder;
}

/// "$topdir/.Trash" may be used only when an administrator made it so that nobody can play with it:
/// a real folder with the sticky bit.
std::optional<std::string> sharedTrash(const std::string& topdir) {
  const std::string folder = below(topdir, ".Trash");
  struct stat status {};
  if (::lstat(folder.c_str(), &status) != 0) return std::nullopt;
  if (!S_ISDIR(status.st_mode) || (status.st_mode & S_ISVTX) == 0) return std::nullopt;
  return below(folder, std::to_string(::getuid()));
}

/// The home Trash, the folders above it made, links on the way to them followed: where a user keeps
/// data is the user's own arrangement.
std::string realHomeTrash(const std::string& home) {
  const std::string folder = homeTrash(home);
  const std::string above(parentFolder(folder));
  std::filesystem::create_directories(above);
  return below(resolved(above).value_or(above), lastComponent(folder));
}

TrashCan trashCanFor(const std::string& path, const HeldItem& item, const std::string& home) {
  const std::string own = realHomeTrash(home);
  struct stat status {
  }, above{};
  if (::fstatat(item.folder.get(), item.name.c_str(), &status, AT_SYMLINK_NOFOLLOW) != 0) {
    raise(errno, path);
  }
  const std::string folder(parentFolder(own));
  if (::stat(folder.c_str(), &above) != 0) raise(errno, folder);
  if (above.st_dev == status.st_dev) return {own, ""};

  const std::string topdir = mountPointOf(resolved(std::string(parentFolder(path))).value_or(path));
  const auto shared = sharedTrash(topdir);
  return {shared.value_or(below(topdir, ".Trash-" + std::to_string(::getuid()))), topdir};
}

/// As in a URL (RFC 2396), every byte but unreserved ones and slashes escaped.
std::string percentEncoded(std::string_view path) {
  constexpr std::string_view plain =
      "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789/-_.~";
  std::string result;
  for (const char c : path) {
    if (plain.find(c) != std::string_view::npos) {
      result += c;
    } else {
      result += fmt::format("%{:02X}", static_cast<unsigned char>(c));
    }
  }
  return result;
}

std::string trashRecord(const std::string& path, const TrashCan& can) {
  std::string_view recorded = path;
  if (!can.base.empty() && isInside(path, can.base)) {
    recorded.remove_prefix(can.base == "/" ? 1 : can.base.size() + 1);
  }
  const std::time_t now = std::time(nullptr);
  std::tm local{};
  ::localtime_r(&now, &local);
  return fmt::format("[Trash Info]\nPath={}\nDeletionDate={:04}-{:02}-{:02}T{:02}:{:02}:{:02}\n",
                     percentEncoded(recorded), local.tm_year + 1900, local.tm_mon + 1,
                     local.tm_mday, local.tm_hour, local.tm_min, local.tm_sec);
}

/// The record's name has to hold the file's, an ending and perhaps a number in the 255 bytes that
/// file systems allow; a longer name is cut, and stands whole in the record.
std::string shortened(std::string_view name) {
  constexpr std::size_t longest = 230;
  return std::string(name.substr(0, longest));
}

/// Whether the record's name was free; it is then written.
bool writeExclusively(const HeldItem& place, const std::string& contents) {
  const char* name = place.name.c_str();
  const Descriptor record(::openat(place.folder.get(), name,
                                   O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, 0600));
  if (!record) {
    if (errno == EEXIST) return false;
    raise(errno, place.name);
  }
  const auto written = ::write(record.get(), contents.data(), contents.size());
  if (written != static_cast<ssize_t>(contents.size())) {
    const int error = written < 0 ? errno : ENOSPC;
    ::unlinkat(place.folder.get(), name, 0);
    raise(error, place.name);
  }
  return true;
}

constexpr std::string_view recordEnding = ".trashinfo";

}  // namespace

std::string homeTrash(const std::string& home) {
  const char* data = std::getenv("XDG_DATA_HOME");
  const bool isSet = data != nullptr && *data == '/';  // relative ones are to be ignored
  return below(isSet ? std::string(data) : home + "/.local/share", "Trash");
}

std::string moveToTrash(const std::string& path, const std::string& home) {
  const HeldItem item = holdItem(path);
  const TrashCan can = trashCanFor(path, item, home);
  const Descriptor folder = openCan(can);
  HeldItem file{makeFolderBelow(folder, "files", 0700), ""};
  HeldItem record{makeFolderBelow(folder, "info", 0700), ""};

  const std::string name = shortened(item.name);
  for (int number = 1;; ++number) {
    file.name = number == 1 ? name : name + " " + std::to_string(number);
    record.name = file.name + std::string(recordEnding);
    if (!writeExclusively(record, trashRecord(path, can))) continue;
    try {
      moveExclusively(item, file);
      return below(can.folder, "files/" + file.name);
    } catch (const std::system_error& error) {
      ::unlinkat(record.folder.get(), record.name.c_str(), 0);
      // A file without a record, left by another program: count on.
      if (error.code() != std::errc::file_exists) throw;
    }
  }
}

void forgetTrashed(const std::string& path) {
  const std::string_view files = parentFolder(path);
  if (lastComponent(files) != "files") return;
  const auto info = below(parentFolder(files), "info");
  const Descriptor folder = holdFolder(resolved(info).value_or(info));
  const auto record = std::string(lastComponent(path)) + std::string(recordEnding);
  ::unlinkat(folder.get(), record.c_str(), 0);
}

}  // namespace volbrin
