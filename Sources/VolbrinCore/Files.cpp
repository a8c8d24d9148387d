#include "Files.hpp"

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <memory>
#include <system_error>

#include "Descriptor.hpp"
#include "Paths.hpp"
#include "PrivacyFence.hpp"
#include "System.hpp"

namespace volbrin {
namespace {

bool isBlocked(const std::string& path) { return PrivacyFence::shared().blocks(path); }

/// A path with a NUL in it names nothing: the system would read it as the shorter one.
bool isNameable(const std::string& path) { return path.find('\0') == std::string::npos; }

std::optional<struct stat> ownStat(const std::string& path) {
  struct stat status {};
  if (!isNameable(path) || ::lstat(path.c_str(), &status) != 0) return std::nullopt;
  return status;
}

std::optional<struct stat> targetStat(const std::string& path) {
  struct stat status {};
  if (!isNameable(path) || ::stat(path.c_str(), &status) != 0) return std::nullopt;
  return status;
}

[[noreturn]] void raise(int error, const std::string& path) {
  throw std::system_error(error, std::generic_category(), path);
}

}  // namespace

bool exists(const std::string& path) { return !isBlocked(path) && targetStat(path).has_value(); }

bool isDirectory(const std::string& path) {
  if (isBlocked(path)) return false;
  const auto status = targetStat(path);
  return status && S_ISDIR(status->st_mode);
}

bool isSymlink(const std::string& path) {
  const auto status = ownStat(path);
  return status && S_ISLNK(status->st_mode);
}

std::optional<ByteCount> sizeOf(const std::string& path) {
  if (isBlocked(path)) return std::nullopt;
  const auto status = ownStat(path);
  if (!status) return std::nullopt;
  return status->st_size;
}

std::optional<Date> modified(const std::string& path) {
  if (isBlocked(path)) return std::nullopt;
  const auto status = ownStat(path);
  if (!status) return std::nullopt;
  return dateFrom(modificationTime(*status));
}

std::vector<std::string> children(const std::string& path) {
  std::vector<std::string> paths;
  for (const auto& name : listNames(path)) {
    if (name.front() != '.') paths.push_back(below(path, name));
  }
  std::sort(paths.begin(), paths.end());
  return paths;
}

std::vector<std::string> listNames(const std::string& path) {
  std::vector<std::string> names;
  if (PrivacyFence::shared().isFenced(path) || !isNameable(path)) return names;
  const std::unique_ptr<DIR, int (*)(DIR*)> folder(::opendir(path.c_str()), ::closedir);
  if (!folder) return names;
  while (const dirent* entry = ::readdir(folder.get())) {
    const std::string_view name = entry->d_name;
    if (name != "." && name != "..") names.emplace_back(name);
  }
  return names;
}

std::optional<std::string> fileProviderOf(const std::string& path) {
  const auto domain = extendedAttribute(path, "com.apple.file-provider-domain-id");
  if (!domain) return std::nullopt;
  return domain->starts_with("com.apple.CloudDocs") ? "iCloud Drive" : "a cloud drive";
}

std::optional<std::string> resolved(const std::string& path) {
  if (!isNameable(path)) return std::nullopt;
  const std::unique_ptr<char, void (*)(void*)> result(::realpath(path.c_str(), nullptr), ::free);
  if (!result) return std::nullopt;
  return std::string(result.get());
}

std::string readFile(const std::string& path) {
  if (isBlocked(path) || !isNameable(path)) raise(ENOENT, path);
  // O_NONBLOCK: a pipe planted under the file's name must not hold the open up.
  const Descriptor file(::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
  struct stat status {};
  if (!file || ::fstat(file.get(), &status) != 0) raise(errno, path);
  if (S_ISDIR(status.st_mode)) raise(EISDIR, path);
  if (!S_ISREG(status.st_mode)) raise(EINVAL, path + ": not a regular file");
  if (status.st_size > maximumFileBytes) raise(EFBIG, path);

  std::string contents;
  std::size_t filled = 0;
  while (true) {
    contents.resize(
        std::max<std::size_t>(filled + 65536, static_cast<std::size_t>(status.st_size)));
    const auto count = ::read(file.get(), contents.data() + filled, contents.size() - filled);
    if (count < 0 && errno == EINTR) continue;
    if (count < 0) raise(errno, path);
    if (count == 0) break;
    filled += static_cast<std::size_t>(count);
    if (static_cast<ByteCount>(filled) > maximumFileBytes) raise(EFBIG, path);
  }
  contents.resize(filled);
  return contents;
}

std::optional<std::string> readFileIfPossible(const std::string& path) {
  try {
    return readFile(path);
  } catch (const std::system_error&) {
    return std::nullopt;
  }
}

}  // namespace volbrin
