#include <dirent.h>
#include <fcntl.h>
#include <sys/attr.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <utility>

#include "../../DirectoryReader.hpp"
#include "../../Text.hpp"
#include "../LongWay.hpp"
#include "BulkListing.hpp"

namespace volbrin {
namespace {

static_assert(bulk::name == ATTR_CMN_NAME && bulk::device == ATTR_CMN_DEVID &&
              bulk::kind == ATTR_CMN_OBJTYPE && bulk::modified == ATTR_CMN_MODTIME &&
              bulk::flags == ATTR_CMN_FLAGS && bulk::fileID == ATTR_CMN_FILEID &&
              bulk::error == ATTR_CMN_ERROR && bulk::returned == ATTR_CMN_RETURNED_ATTRS);
static_assert(bulk::links == ATTR_FILE_LINKCOUNT && bulk::allocated == ATTR_FILE_ALLOCSIZE &&
              bulk::dataLength == ATTR_FILE_DATALENGTH);
static_assert(bulk::dataless == SF_DATALESS);

/// One call's worth: some 500 entries with their records.
constexpr std::size_t bufferBytes = 65536;

constexpr int folderFlags = O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC | O_NONBLOCK;

EntryKind kindOfMode(mode_t mode) {
  if (S_ISDIR(mode)) return EntryKind::folder;
  if (S_ISREG(mode)) return EntryKind::file;
  if (S_ISLNK(mode)) return EntryKind::link;
  return EntryKind::other;
}

EntryKind kindOfListing(std::uint8_t type) {
  return type == DT_UNKNOWN ? EntryKind::unknown : kindOfMode(DTTOIF(type));
}

EntryStat recordOf(const struct stat& status) {
  EntryStat result;
  result.kind = kindOfMode(status.st_mode);
  result.links = status.st_nlink;
  result.device = static_cast<std::uint64_t>(status.st_dev);
  result.inode = status.st_ino;
  result.size = status.st_size;
  result.modified = status.st_mtimespec;
  result.isDataless = (status.st_flags & SF_DATALESS) != 0;
  if (__builtin_mul_overflow(status.st_blocks, statBlockBytes, &result.allocatedBytes)) {
    overflowFault("the size of one file");
  }
  return result;
}

std::optional<EntryStat> statAt(int folder, const char* name) {
  struct stat status {};
  if (::fstatat(folder, name, &status, AT_SYMLINK_NOFOLLOW) != 0) return std::nullopt;
  return recordOf(status);
}

/// Whether something is mounted on the folder, or would be by opening it.
bool isMountPoint(int parent, const char* name) {
  attrlist wanted{};
  wanted.bitmapcount = ATTR_BIT_MAP_COUNT;
  wanted.dirattr = ATTR_DIR_MOUNTSTATUS;
  struct {
    std::uint32_t length, status;
  } answer{};
  const int asked = ::getattrlistat(parent, name, &wanted, &answer, sizeof answer, FSOPT_NOFOLLOW);
  constexpr std::uint32_t mounted = DIR_MNTSTATUS_MNTPOINT | DIR_MNTSTATUS_TRIGGER;
  return asked == 0 && answer.length == sizeof answer && (answer.status & mounted) != 0;
}

/// Opens a path of which no component may be a link, shorter than PATH_MAX.
int openWithoutLinks(int parent, const char* path, int flags) {
  // O_NOFOLLOW_ANY refuses links on the whole way; it doesn't go together with O_NOFOLLOW
  // (open(2)).
  return ::openat(parent, path, (flags & ~O_NOFOLLOW) | O_NOFOLLOW_ANY);
}

Descriptor openWay(const Descriptor& above, const std::string& path) {
  return Descriptor(openWithoutLinks(above.get(), path.c_str(), folderFlags));
}

}  // namespace

Descriptor openFolder(const std::string& path) {
  return Descriptor(::open(path.c_str(), folderFlags));
}

Descriptor openFolderBelow(const Descriptor& parent, const char* name, MountPoints mounts) {
  if (mounts == MountPoints::refuse && isMountPoint(parent.get(), name)) {
    errno = EXDEV;
    return {};
  }
  return Descriptor(::openat(parent.get(), name, folderFlags));
}

Descriptor openPathBelow(const Descriptor& folder, const std::string& relative) {
  Descriptor passing;
  std::size_t at = 0;
  const auto* above = shortenWay(folder, relative, at, passing, openWay);
  if (above == nullptr) return {};
  const char* rest = relative.empty() ? "." : relative.c_str() + at;
  return Descriptor(openWithoutLinks(above->get(), rest, folderFlags));
}

Descriptor holdFolderBelow(const Descriptor& parent, const char* name) {
  return Descriptor(::openat(parent.get(), name, O_SEARCH | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
}

Descriptor holdFolder(const std::string& path) {
  Descriptor folder(::open("/", O_SEARCH | O_DIRECTORY | O_CLOEXEC));
  for (const auto name : split(path, '/')) {
    if (!folder) break;
    folder = holdFolderBelow(folder, std::string(name).c_str());
  }
  return folder;
}

Descriptor openFileBelow(const Descriptor& folder, const std::string& relative) {
  Descriptor passing;
  std::size_t at = 0;
  const auto* above = shortenWay(folder, relative, at, passing, openWay);
  if (above == nullptr) return {};
  constexpr int flags = O_RDONLY | O_CLOEXEC | O_NONBLOCK;
  return Descriptor(openWithoutLinks(above->get(), relative.c_str() + at, flags));
}

std::optional<EntryStat> statPath(const std::string& path) {
  return statAt(AT_FDCWD, path.c_str());
}

std::optional<EntryStat> statBelow(const Descriptor& folder, const char* name) {
  return statAt(folder.get(), name);
}

std::optional<EntryStat> statOpen(const Descriptor& folder) {
  struct stat status {};
  if (::fstat(folder.get(), &status) != 0) return std::nullopt;
  return recordOf(status);
}

struct DirectoryBuffer::State {
  alignas(std::uint64_t) std::byte bytes[bufferBytes];
  BulkListing listing;
  EntryStat stat;  ///< of the entry that was given last
  /// For file systems that know no listing with records: a stream of names, one batch long.
  DIR* names = nullptr;
  bool haveNamesFailed = false;  ///< the batch isn't all that the folder holds

  ~State() { stopNames(); }

  void stopNames() {
    if (names != nullptr) ::closedir(names);
    names = nullptr;
  }

  /// The next name of the stream, without its record.
  std::optional<ListedEntry> nextName() {
    while (true) {
      errno = 0;  // readdir(3) tells an error from the end by it alone.
      const auto* entry = ::readdir(names);
      if (entry == nullptr) break;
      const char* name = entry->d_name;
      const bool isDots = name[0] == '.' && (name[1] == 0 || (name[1] == '.' && name[2] == 0));
      if (!isDots) return ListedEntry{name, kindOfListing(entry->d_type)};
    }
    haveNamesFailed = errno != 0;
    return std::nullopt;
  }
};

DirectoryBuffer::DirectoryBuffer() : state_(new State) {}
DirectoryBuffer::~DirectoryBuffer() = default;

DirectoryBuffer::Fill DirectoryBuffer::fill(const Descriptor& folder) {
  State& state = *state_;
  if (state.names != nullptr) {  // The one batch was all there is.
    state.stopNames();
    return std::exchange(state.haveNamesFailed, false) ? Fill::failed : Fill::end;
  }
  if (state.listing.isBroken()) {
    state.listing = {};
    return Fill::failed;
  }
  attrlist wanted{};
  wanted.bitmapcount = ATTR_BIT_MAP_COUNT;
  wanted.commonattr = bulk::common;
  wanted.fileattr = bulk::file;
  const int count = ::getattrlistbulk(folder.get(), &wanted, state.bytes, bufferBytes, 0);
  if (count >= 0) {
    state.listing = BulkListing(state.bytes, static_cast<std::size_t>(count));
    return count == 0 ? Fill::end : Fill::batch;
  }
  if (errno != ENOTSUP) return Fill::failed;
  // The stream closes its handle, so it gets one of its own.
  Descriptor own = openFolderBelow(folder, ".", MountPoints::cross);
  state.names = own ? ::fdopendir(own.get()) : nullptr;
  if (state.names == nullptr) return Fill::failed;
  own.release();
  return Fill::batch;
}

std::optional<ListedEntry> DirectoryBuffer::next() {
  if (state_->names != nullptr) return state_->nextName();
  const auto entry = state_->listing.next();
  if (!entry) return std::nullopt;
  if (entry->stat) state_->stat = *entry->stat;
  return ListedEntry{entry->name, entry->kind, entry->stat ? &state_->stat : nullptr};
}

}  // namespace volbrin
