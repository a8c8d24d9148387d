#include <cerrno>
#include <climits>
#include <cstdio>
#include <cstdlib>
#include <system_error>

#include <fcntl.h>
#include <sys/xattr.h>
#include <unistd.h>

#include "../../System.hpp"

namespace volbrin {

std::optional<std::string> extendedAttribute(const std::string& path, const std::string& name) {
  const std::string full = "user." + name;
  const auto length = ::lgetxattr(path.c_str(), full.c_str(), nullptr, 0);
  if (length <= 0) return std::nullopt;
  std::string value(static_cast<std::size_t>(length), '\0');
  const auto read = ::lgetxattr(path.c_str(), full.c_str(), value.data(), value.size());
  if (read != length) return std::nullopt;
  return value;
}

std::timespec modificationTime(const struct stat& status) { return status.st_mtim; }

std::optional<std::string> executablePath() {
  char buffer[PATH_MAX];
  const char* resolved = ::realpath("/proc/self/exe", buffer);
  if (resolved == nullptr) return std::nullopt;
  return std::string(resolved);
}

bool syncFile(const Descriptor& file) { return ::fsync(file.get()) == 0; }

bool syncFolder(const std::string& path) {
  const Descriptor folder(::open(path.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  return folder && ::fsync(folder.get()) == 0;
}

void dropFromMemory(const Descriptor& file) {
  ::posix_fadvise(file.get(), 0, 0, POSIX_FADV_DONTNEED);
}

void renameExclusively(const std::string& from, const std::string& to) {
  if (::renameat2(AT_FDCWD, from.c_str(), AT_FDCWD, to.c_str(), RENAME_NOREPLACE) != 0) {
    throw std::system_error(errno, std::generic_category(), from);
  }
}

}  // namespace volbrin
