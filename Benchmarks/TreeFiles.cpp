#include "TreeFiles.hpp"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <system_error>

namespace volbrin::bench {
namespace {

void check(bool good, const std::string& what) {
  if (!good) throw std::system_error(errno, std::generic_category(), what);
}

void writeFile(const Descriptor& folder, const std::string& name, const char* contents,
               std::size_t bytes) {
  const Descriptor file(
      ::openat(folder.get(), name.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0644));
  check(static_cast<bool>(file), name);
  check(bytes == 0 || ::write(file.get(), contents, bytes) >= 0, name);
}

}  // namespace

Descriptor makeFolder(int parent, const std::string& name) {
  check(::mkdirat(parent, name.c_str(), 0755) == 0 || errno == EEXIST, name);
  Descriptor folder(::openat(parent, name.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  check(static_cast<bool>(folder), name);
  return folder;
}

Descriptor makeFolders(const std::string& path) {
  std::filesystem::create_directories(path);
  return makeFolder(AT_FDCWD, path);
}

void makeFile(const Descriptor& folder, const std::string& name, std::size_t bytes) {
  static const std::string contents(65536, 'x');
  writeFile(folder, name, contents.data(), std::min(bytes, contents.size()));
}

void makeTextFile(const Descriptor& folder, const std::string& name, const std::string& text) {
  writeFile(folder, name, text.data(), text.size());
}

}  // namespace volbrin::bench
