#include "FolderNames.hpp"

#include <dirent.h>
#include <fcntl.h>

#include <algorithm>
#include <cerrno>
#include <memory>

#include "Failure.hpp"
#include "Handle.hpp"

namespace volbrin::demo {

std::vector<std::string> folderNames(int folder, std::string_view shown) {
  // A handle of its own, since reading moves the handle's position and closing closes it.
  Handle own(::openat(folder, ".", O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  if (!own.isOpen()) failWithErrno("open", shown);
  const std::unique_ptr<DIR, int (*)(DIR*)> stream(::fdopendir(own.get()),
                                                   [](DIR* dir) { return ::closedir(dir); });
  if (!stream) failWithErrno("read", shown);
  (void)own.release();  // closed by the stream from here on

  std::vector<std::string> names;
  for (;;) {
    errno = 0;
    const dirent* entry = ::readdir(stream.get());
    if (entry == nullptr) break;
    const std::string_view name = entry->d_name;
    if (name != "." && name != "..") names.emplace_back(name);
  }
  if (errno != 0) failWithErrno("read", shown);
  std::sort(names.begin(), names.end());
  return names;
}

}  // namespace volbrin::demo
