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
#include "../../Paths.hpp"
#include "../../System.hpp"
#include "LinuxDrives.hpp"

namespace volbrin {
namespace {

[[noreturn]] void raise(int error, const std::string& path) {
  throw std::system_error(error, std::generic_category(), path);
}

struct stat ownStat(const std::string& path) {
  struct stat status {};
  if (::lstat(path.c_str(), &status) != 0) raise(errno, path);
  return status;
}

/// A Trash folder, and the part of a trashed path that its records leave out.
struct TrashCan {
  std::string folder;
  std::string base;  ///< records hold paths relative to it; empty for absolute ones
};

/// Made with its parents, for this user alone; a link in its place is refused.
void makePrivateFolder(const std::string& path) {
  std::filesystem::create_directories(parentFolder(path));
  if (::mkdir(path.c_str(), 0700) != 0 && errno != EEXIST) raise(errno, path);
  if (!S_ISDIR(ownStat(path).st_mode)) raise(ENOTDIR, path);
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

TrashCan trashCanFor(const std::string& path, const std::string& home) {
  const std::string own = homeTrash(home);
  const auto device = ownStat(path).st_dev;
  std::string above = own;
  struct stat status {};
  while (::stat(above.c_str(), &status) != 0 && above != "/") above = parentFolder(above);
  if (status.st_dev == device) return {own, ""};

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
bool writeExclusively(const std::string& file, const std::string& contents) {
  const Descriptor record(
      ::open(file.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, 0600));
  if (!record) {
    if (errno == EEXIST) return false;
    raise(errno, file);
  }
  const auto written = ::write(record.get(), contents.data(), contents.size());
  if (written != static_cast<ssize_t>(contents.size())) {
    const int error = written < 0 ? errno : ENOSPC;
    ::unlink(file.c_str());
    raise(error, file);
  }
  return true;
}

}  // namespace

std::string homeTrash(const std::string& home) {
  const char* data = std::getenv("XDG_DATA_HOME");
  const bool isSet = data != nullptr && *data == '/';  // relative ones are to be ignored
  return below(isSet ? std::string(data) : home + "/.local/share", "Trash");
}

std::string moveToTrash(const std::string& path, const std::string& home) {
  const TrashCan can = trashCanFor(path, home);
  const std::string files = below(can.folder, "files");
  const std::string info = below(can.folder, "info");
  makePrivateFolder(can.folder);
  makePrivateFolder(files);
  makePrivateFolder(info);

  const std::string name = shortened(lastComponent(path));
  for (int number = 1;; ++number) {
    const std::string taken = number == 1 ? name : name + " " + std::to_string(number);
    const std::string record = below(info, taken + ".trashinfo");
    if (!writeExclusively(record, trashRecord(path, can))) continue;
    try {
      renameExclusively(path, below(files, taken));
      return below(files, taken);
    } catch (const std::system_error& error) {
      ::unlink(record.c_str());
      // A file without a record, left by another program: count on.
      if (error.code() != std::errc::file_exists) throw;
    }
  }
}

}  // namespace volbrin
