#include "RemoveTree.hpp"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

#include "Failure.hpp"
#include "FolderNames.hpp"
#include "Handle.hpp"

namespace volbrin::demo {

void removeTree(int parent, const std::string& name, const std::string& shown) {
  const std::string path = shown + "/" + name;
  struct stat info {};
  if (::fstatat(parent, name.c_str(), &info, AT_SYMLINK_NOFOLLOW) != 0) {
    failWithErrno("look at", path);
  }
  if (!S_ISDIR(info.st_mode)) {
    if (::unlinkat(parent, name.c_str(), 0) != 0) failWithErrno("remove", path);
    return;
  }
  struct stat parentInfo {};
  if (::fstat(parent, &parentInfo) != 0) failWithErrno("look at", shown);
  if (info.st_dev != parentInfo.st_dev) {
    throw Failure("can't remove " + path + ": another drive is mounted there");
  }
  {
    const Handle folder(
        ::openat(parent, name.c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
    if (!folder.isOpen()) failWithErrno("open", path);
    for (const std::string& child : folderNames(folder.get(), path)) {
      removeTree(folder.get(), child, path);
    }
  }
  if (::unlinkat(parent, name.c_str(), AT_REMOVEDIR) != 0) failWithErrno("remove", path);
}

}  // namespace volbrin::demo
