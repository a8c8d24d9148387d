#include <dirent.h>
#include <fcntl.h>
#include <linux/openat2.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/sysmacros.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>

#include "../../DirectoryReader.hpp"
#include "../../Text.hpp"
#include "../LongWay.hpp"

namespace volbrin {
namespace {

/// One getdents64(2) call's worth. Larger buffers gained nothing; smaller ones cost calls.
constexpr std::size_t bufferBytes = 65536;

constexpr int folderFlags = O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC | O_NONBLOCK;
constexpr unsigned wantedFields =
    STATX_TYPE | STATX_NLINK | STATX_INO | STATX_BLOCKS | STATX_SIZE | STATX_MTIME;

/// Kernels before 5.6, and some containers' filters, have no openat2(2).
std::atomic<bool> hasOpenat2 = true;

EntryKind kindOfMode(unsigned mode) {
  if (S_ISDIR(mode)) return EntryKind::folder;
  if (S_ISREG(mode)) return EntryKind::file;
  if (S_ISLNK(mode)) return EntryKind::link;
  return EntryKind::other;
}

EntryKind kindOfListing(unsigned char type) {
  switch (type) {
    case DT_DIR:
      return EntryKind::folder;
    case DT_REG:
      return EntryKind::file;
    case DT_LNK:
      return EntryKind::link;
    case DT_UNKNOWN:
      return EntryKind::unknown;
    default:
      return EntryKind::other;
  }
}

std::optional<EntryStat> statAt(int folder, const char* name, int flags) {
  struct statx record;  // Filled by the kernel; zeroing 256 bytes for every entry would show.
  if (::statx(folder, name, flags | AT_SYMLINK_NOFOLLOW | AT_NO_AUTOMOUNT | AT_STATX_DONT_SYNC,
              wantedFields, &record) != 0) {
    return std::nullopt;
  }
  EntryStat result;
  result.kind = kindOfMode(record.stx_mode);
  result.links = record.stx_nlink;
  result.device = ::makedev(record.stx_dev_major, record.stx_dev_minor);
  result.inode = record.stx_ino;
  result.size = static_cast<ByteCount>(record.stx_size);
  result.modified = {static_cast<std::time_t>(record.stx_mtime.tv_sec),
                     static_cast<long>(record.stx_mtime.tv_nsec)};
  if (__builtin_mul_overflow(record.stx_blocks, statBlockBytes, &result.allocatedBytes)) {
    overflowFault("the size of one file");
  }
  return result;
}

int openAt(int parent, const char* name, int flags, MountPoints mounts) {
  if (mounts == MountPoints::refuse && hasOpenat2.load(std::memory_order_relaxed)) {
    open_how how{};
    how.flags = static_cast<__u64>(flags);
    how.resolve = RESOLVE_NO_XDEV | RESOLVE_NO_SYMLINKS;
    const auto opened = ::syscall(SYS_openat2, parent, name, &how, sizeof how);
    if (opened >= 0 || errno != ENOSYS) return static_cast<int>(opened);
    hasOpenat2.store(false, std::memory_order_relaxed);
  }
  return ::openat(parent, name, flags);
}

/// O_NOATIME belongs to a folder's owner (open(2)): others get EPERM and open without it.
Descriptor openQuietly(int parent, const char* name, MountPoints mounts) {
  int opened = openAt(parent, name, folderFlags | O_NOATIME, mounts);
  if (opened < 0 && errno == EPERM) opened = openAt(parent, name, folderFlags, mounts);
  return Descriptor(opened);
}

}  // namespace

Descriptor openFolder(const std::string& path) {
  return openQuietly(AT_FDCWD, path.c_str(), MountPoints::cross);
}

Descriptor openFolderBelow(const Descriptor& parent, const char* name, MountPoints mounts) {
  return openQuietly(parent.get(), name, mounts);
}

namespace {

Descriptor openWay(const Descriptor& above, const std::string& path) {
  return openFolderBelow(above, path.c_str(), MountPoints::refuse);
}

}  // namespace

Descriptor openPathBelow(const Descriptor& folder, const std::string& relative) {
  Descriptor passing;
  std::size_t at = 0;
  const auto* above = shortenWay(folder, relative, at, passing, openWay);
  if (above == nullptr) return {};
  const char* rest = relative.empty() ? "." : relative.c_str() + at;
  return openFolderBelow(*above, rest, MountPoints::refuse);
}

Descriptor holdFolderBelow(const Descriptor& parent, const char* name) {
  return Descriptor(::openat(parent.get(), name, O_PATH | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
}

Descriptor holdFolder(const std::string& path) {
  Descriptor folder(::open("/", O_PATH | O_DIRECTORY | O_CLOEXEC));
  for (const auto name : split(path, '/')) {
    if (!folder) break;
    folder = holdFolderBelow(folder, std::string(name).c_str());
  }
  return folder;
}

Descriptor openFileBelow(const Descriptor& folder, const std::string& relative) {
  constexpr int flags = O_RDONLY | O_NOFOLLOW | O_CLOEXEC | O_NONBLOCK | O_NOATIME;
  Descriptor passing;
  std::size_t at = 0;
  const auto* above = shortenWay(folder, relative, at, passing, openWay);
  if (above == nullptr) return {};
  const char* rest = relative.c_str() + at;
  int opened = openAt(above->get(), rest, flags, MountPoints::refuse);
  if (opened < 0 && errno == EPERM) {
    opened = openAt(above->get(), rest, flags & ~O_NOATIME, MountPoints::refuse);
  }
  return Descriptor(opened);
}

std::optional<EntryStat> statPath(const std::string& path) {
  return statAt(AT_FDCWD, path.c_str(), 0);
}

std::optional<EntryStat> statBelow(const Descriptor& folder, const char* name) {
  return statAt(folder.get(), name, 0);
}

std::optional<EntryStat> statOpen(const Descriptor& folder) {
  return statAt(folder.get(), "", AT_EMPTY_PATH);
}

struct DirectoryBuffer::State {
  alignas(dirent64) std::byte bytes[bufferBytes];
  std::size_t at = 0;
  std::size_t end = 0;
};

DirectoryBuffer::DirectoryBuffer() : state_(new State) {}
DirectoryBuffer::~DirectoryBuffer() = default;

DirectoryBuffer::Fill DirectoryBuffer::fill(const Descriptor& folder) {
  state_->at = state_->end = 0;
  const auto count = ::getdents64(folder.get(), state_->bytes, bufferBytes);
  if (count < 0) return Fill::failed;
  state_->end = static_cast<std::size_t>(count);
  return count == 0 ? Fill::end : Fill::batch;
}

std::optional<ListedEntry> DirectoryBuffer::next() {
  while (state_->at < state_->end) {
    const auto* entry = reinterpret_cast<const dirent64*>(state_->bytes + state_->at);
    state_->at += entry->d_reclen;
    const char* name = entry->d_name;
    const bool isDots = name[0] == '.' && (name[1] == 0 || (name[1] == '.' && name[2] == 0));
    if (!isDots) return ListedEntry{name, kindOfListing(entry->d_type)};
  }
  return std::nullopt;
}

}  // namespace volbrin
