#include "TreeWriter.hpp"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <span>
#include <system_error>

#include "Chance.hpp"
#include "Failure.hpp"

namespace volbrin::demo {

namespace {

constexpr std::string_view homeFolder = "Users/me";
/// What an empty folder counts as, in days, when nobody gave it an age.
constexpr double emptyFolderAge = 420;

std::string parentOf(const std::string& path) {
  const std::size_t slash = path.rfind('/');
  return slash == std::string::npos ? std::string() : path.substr(0, slash);
}

void writeAll(int fd, std::span<const char> bytes) {
  while (!bytes.empty()) {
    const ssize_t count = ::write(fd, bytes.data(), bytes.size());
    if (count < 0 && errno == EINTR) continue;
    if (count < 0) throw std::system_error(errno, std::generic_category());
    bytes = bytes.subspan(static_cast<std::size_t>(count));
  }
}

/// Writes `bytes` bytes in pieces, each made by `fill`.
template <typename FillPiece>
void writePieces(int fd, std::int64_t bytes, FillPiece fill) {
  std::array<char, 65536> buffer{};
  while (bytes > 0) {
    const auto count = static_cast<std::size_t>(
        std::min<std::int64_t>(bytes, static_cast<std::int64_t>(buffer.size())));
    const std::span<char> piece(buffer.data(), count);
    fill(piece);
    writeAll(fd, piece);
    bytes -= static_cast<std::int64_t>(count);
  }
}

void setLength(int fd, std::int64_t bytes) {
  if (::ftruncate(fd, bytes) != 0) throw std::system_error(errno, std::generic_category());
}

}  // namespace

TreeWriter::TreeWriter(const Handle& top, Seconds now) : top_(top), now_(now) {
  folders_.emplace("", Folder{now, true});
}

std::string TreeWriter::relative(std::string_view path) {
  if (path == "~") return std::string(homeFolder);
  if (path.starts_with("~/")) return std::string(homeFolder) + std::string(path.substr(1));
  return std::string(path.substr(1));
}

TreeWriter::Folder& TreeWriter::ensureFolder(const std::string& path) {
  const auto known = folders_.find(path);
  if (known != folders_.end()) return known->second;
  ensureFolder(parentOf(path));
  if (::mkdirat(top_.get(), path.c_str(), 0755) != 0) failWithErrno("make the folder", path);
  ++totals_.folders;
  return folders_[path];
}

void TreeWriter::noteChild(const std::string& path, Seconds moment) {
  Folder& parent = ensureFolder(parentOf(path));
  if (!parent.fixed) parent.newest = std::max(parent.newest, moment);
}

void TreeWriter::stamp(const std::string& path, Seconds moment) const {
  const std::array<timespec, 2> times{timespec{.tv_sec = moment, .tv_nsec = 0},
                                      timespec{.tv_sec = moment, .tv_nsec = 0}};
  const char* name = path.empty() ? "." : path.c_str();
  if (::utimensat(top_.get(), name, times.data(), AT_SYMLINK_NOFOLLOW) != 0) {
    failWithErrno("date", path);
  }
}

void TreeWriter::folder(std::string_view path, double daysAgo) {
  ensureFolder(relative(path)) = Folder{daysBefore(now_, daysAgo), true};
}

void TreeWriter::writeFile(std::string_view path, double daysAgo, mode_t mode,
                           const std::function<void(int)>& write) {
  const std::string name = relative(path);
  const Seconds moment = daysBefore(now_, daysAgo);
  noteChild(name, moment);
  const Handle file(::openat(top_.get(), name.c_str(),
                             O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, mode));
  if (!file.isOpen()) failWithErrno("make the file", name);
  try {
    write(file.get());
  } catch (const std::system_error& error) {
    throw Failure("can't write " + name + ": " + error.code().message());
  }
  struct stat info {};
  if (::fstat(file.get(), &info) != 0) failWithErrno("look at", name);
  ++totals_.files;
  totals_.allocatedBytes += std::int64_t{info.st_blocks} * 512;
  stamp(name, moment);
}

void TreeWriter::file(std::string_view path, std::int64_t bytes, double daysAgo,
                      std::string_view content, mode_t mode) {
  writeFile(path, daysAgo, mode, [&](int fd) {
    Chance chance(content.empty() ? path : content);
    writePieces(fd, bytes, [&](std::span<char> piece) { chance.fill(piece); });
  });
}

void TreeWriter::text(std::string_view path, std::string_view contents, double daysAgo) {
  writeFile(path, daysAgo, 0644, [&](int fd) { writeAll(fd, contents); });
}

void TreeWriter::hollow(std::string_view path, std::int64_t bytes, double daysAgo) {
  writeFile(path, daysAgo, 0644, [&](int fd) { setLength(fd, bytes); });
}

void TreeWriter::partly(std::string_view path, std::int64_t bytes, std::int64_t written, Fill fill,
                        double daysAgo) {
  writeFile(path, daysAgo, 0644, [&](int fd) {
    Chance chance(path);
    writePieces(fd, written, [&](std::span<char> piece) {
      if (fill == Fill::random) chance.fill(piece);
    });
    setLength(fd, bytes);
  });
}

void TreeWriter::link(std::string_view path, std::string_view target, double daysAgo) {
  const std::string name = relative(path);
  const Seconds moment = daysBefore(now_, daysAgo);
  noteChild(name, moment);
  if (::symlinkat(std::string(target).c_str(), top_.get(), name.c_str()) != 0) {
    failWithErrno("make the link", name);
  }
  ++totals_.links;
  stamp(name, moment);
}

void TreeWriter::hardLink(std::string_view path, std::string_view existing) {
  const std::string name = relative(path);
  const std::string source = relative(existing);
  struct stat info {};
  if (::fstatat(top_.get(), source.c_str(), &info, AT_SYMLINK_NOFOLLOW) != 0) {
    failWithErrno("look at", source);
  }
  noteChild(name, info.st_mtime);
  if (::linkat(top_.get(), source.c_str(), top_.get(), name.c_str(), 0) != 0) {
    failWithErrno("make the second name", name);
  }
}

void TreeWriter::finish() {
  // A folder's path sorts after that of the folder above it, so backwards is from the leaves up.
  for (auto entry = folders_.rbegin(); entry != folders_.rend(); ++entry) {
    const auto& [path, folder] = *entry;
    const Seconds moment = folder.newest != 0 ? folder.newest : daysBefore(now_, emptyFolderAge);
    if (!path.empty()) noteChild(path, moment);
    stamp(path, moment);
    struct stat info {};
    const char* name = path.empty() ? "." : path.c_str();
    if (::fstatat(top_.get(), name, &info, AT_SYMLINK_NOFOLLOW) == 0) {
      totals_.allocatedBytes += std::int64_t{info.st_blocks} * 512;
    }
  }
}

}  // namespace volbrin::demo
