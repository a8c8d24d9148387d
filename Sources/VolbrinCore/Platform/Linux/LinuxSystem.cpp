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

bool syncFolder(const Descriptor& folder) {
  const Descriptor open(::openat(folder.get(), ".", O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  return open && ::fsync(open.get()) == 0;
}

void dropFromMemory(const Descriptor& file, ByteCount at, ByteCount bytes) {
  ::posix_fadvise(file.get(), at, bytes, POSIX_FADV_DONTNEED);
}

namespace {

/// For file systems that know no exclusive renaming (NFS, some in user space). A new name is made
/// exclusively all the same: a folder takes the place of an empty one made for it, which fails as
/// soon as something is in that one, and anything else gets a second name and loses its first.
bool renameInSteps(int fromFolder, const char* from, int toFolder, const char* to) {
  struct stat status {};
  if (::fstatat(fromFolder, from, &status, AT_SYMLINK_NOFOLLOW) != 0) return false;
  const int removal = S_ISDIR(status.st_mode) ? AT_REMOVEDIR : 0;
  if (removal != 0) {
    if (::mkdirat(toFolder, to, 0700) != 0) return false;
    if (::renameat(fromFolder, from, toFolder, to) == 0) return true;
  } else {
    if (::linkat(fromFolder, from, toFolder, to, 0) != 0) return false;
    if (::unlinkat(fromFolder, from, 0) == 0) return true;
  }
  const int error = errno;
  ::unlinkat(toFolder, to, removal);
  errno = error;
  return false;
}

}  // namespace

bool renameExclusively(const Descriptor& fromFolder, const std::string& from,
                       const Descriptor& toFolder, const std::string& to) {
  if (::renameat2(fromFolder.get(), from.c_str(), toFolder.get(), to.c_str(), RENAME_NOREPLACE) ==
      0) {
    return true;
  }
  if (errno != EINVAL && errno != ENOSYS) return false;
  return renameInSteps(fromFolder.get(), from.c_str(), toFolder.get(), to.c_str());
}

}  // namespace volbrin
