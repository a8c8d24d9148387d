#include <fcntl.h>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <map>
#include <memory>
#include <vector>

#include "../../Descriptor.hpp"
#include "../../DirectoryReader.hpp"
#include "../../Paths.hpp"
#include "../../System.hpp"
#include "../../TreeCopy.hpp"
#include "../../TreeWalk.hpp"
#include "WriteBehind.hpp"

namespace volbrin {
namespace {

constexpr std::size_t pieceBytes = 8U << 20U;
/// Folders whose handles are kept open on the way down; upper ones are opened again when needed.
constexpr std::size_t mostOpen = 64;

/// Raised within a copy.
struct Failure {
  int error;
  std::string path;
};

/// `path` below the top of a tree; the top itself for an empty one.
std::string pathAt(const std::string& top, const std::string& path) {
  return path.empty() ? top : below(top, path);
}

[[noreturn]] void fail(const std::string& path) { throw Failure{errno, path}; }

std::string wordsOf(const Failure& failure) {
  return failure.path + ": " + std::error_code(failure.error, std::generic_category()).message();
}

/// Whether a file system or the user's rights, and no fault, keep an attribute from being set.
bool isUnable(int error) {
  return error == ENOTSUP || error == EPERM || error == EACCES || error == EINVAL ||
         error == ENOSYS || error == ERANGE || error == E2BIG;
}

void copyExtendedAttributes(int source, int target, const std::string& path) {
  const auto length = ::flistxattr(source, nullptr, 0);
  if (length <= 0) return;
  std::string names(static_cast<std::size_t>(length), '\0');
  const auto listed = ::flistxattr(source, names.data(), names.size());
  names.resize(static_cast<std::size_t>(std::max<ssize_t>(listed, 0)));
  for (std::size_t at = 0; at < names.size();
       at += std::char_traits<char>::length(&names[at]) + 1) {
    const char* name = &names[at];
    const auto size = ::fgetxattr(source, name, nullptr, 0);
    if (size < 0) continue;
    std::string value(static_cast<std::size_t>(size), '\0');
    if (::fgetxattr(source, name, value.data(), value.size()) != size) continue;
    if (::fsetxattr(target, name, value.data(), value.size(), 0) != 0 && !isUnable(errno)) {
      fail(path);
    }
  }
}

/// Owner, extended attributes, mode, times: in this order, since each may disturb the next.
void copyAttributes(int source, int target, const struct stat& status, const std::string& path) {
  if (::fchown(target, status.st_uid, status.st_gid) != 0 && !isUnable(errno)) fail(path);
  copyExtendedAttributes(source, target, path);
  // Without its owner, a file must not lend anybody else's rights.
  struct stat made {};
  if (::fstat(target, &made) != 0) fail(path);
  const bool isOwned = made.st_uid == status.st_uid && made.st_gid == status.st_gid;
  const mode_t mode = status.st_mode & (isOwned ? 07777U : 01777U);
  if (::fchmod(target, mode) != 0 && !isUnable(errno)) fail(path);
  const timespec times[2] = {status.st_atim, status.st_mtim};
  if (::futimens(target, times) != 0 && !isUnable(errno)) fail(path);
}

class Copier final : public TreeVisitor {
 public:
  Copier(std::string source, std::string target, CopyObserver* observer)
      : source_(std::move(source)), target_(std::move(target)), observer_(observer) {}

  Onward visit(const WalkEntry& entry) override {
    try {
      finish(entry.depth());
      copy(entry);
      return Onward::into;
    } catch (const Failure& failure) {
      fault_ = failure;
      return Onward::end;
    }
  }

  void unreadable(std::size_t /*root*/, const EntryStat* /*closed*/) override {
    if (!fault_) fault_ = Failure{EACCES, pathNow()};  // or gone meanwhile: not whole either way
  }

  /// Finishes what is still open and brings everything to the drive.
  [[nodiscard]] std::optional<CopyFault> end() {
    try {
      if (!fault_) finish(0);
      if (!fault_) sync();
    } catch (const Failure& failure) {
      fault_ = failure;
    }
    if (!fault_) return std::nullopt;
    return CopyFault{hasStarted_, wordsOf(*fault_)};
  }

 private:
  /// A folder that is being copied; the root's is the first.
  struct OpenFolder {
    std::string path;  ///< below the root
    Descriptor source, target;
  };

  [[nodiscard]] std::string pathNow() const {
    return folders_.empty() ? source_ : pathAt(source_, folders_.back().path);
  }

  void copy(const WalkEntry& entry) {
    if (observer_ != nullptr && observer_->isStopped()) throw Failure{ECANCELED, pathNow()};
    if (entry.folder == nullptr) return copyRoot(entry);
    OpenFolder& folder = folders_.back();
    reopen(folder);
    auto path =
        folder.path.empty() ? std::string(entry.name) : folder.path + "/" + std::string(entry.name);
    const std::string name(entry.name);
    copyItem(entry, folder.source, name, folder.target, name, std::move(path));
  }

  void copyRoot(const WalkEntry& entry) {
    const Descriptor above = holdFolder(std::string(parentFolder(source_)));
    if (!above) fail(source_);
    targetAbove_ = holdFolder(std::string(parentFolder(target_)));
    if (!targetAbove_) fail(target_);
    copyItem(entry, above, std::string(lastComponent(source_)), targetAbove_,
             std::string(lastComponent(target_)), "");
  }

  void copyItem(const WalkEntry& entry, const Descriptor& source, const std::string& name,
                const Descriptor& target, const std::string& newName, std::string path) {
    switch (entry.stat.kind) {
      case EntryKind::folder:
        return beginFolder(source, name, target, newName, std::move(path));
      case EntryKind::file:
        return copyFile(entry.stat, source, name, target, newName, path);
      case EntryKind::link:
        return copyLink(source, name, target, newName, path);
      case EntryKind::unknown:
      case EntryKind::other:
        throw Failure{ENOTSUP, pathAt(source_, path)};
    }
  }

  void beginFolder(const Descriptor& source, const std::string& name, const Descriptor& target,
                   const std::string& newName, std::string path) {
    const auto shown = pathAt(source_, path);
    OpenFolder folder{
        std::move(path), openFolderBelow(source, name.c_str(), MountPoints::cross), {}};
    if (!folder.source) fail(shown);
    if (::mkdirat(target.get(), newName.c_str(), 0700) != 0) fail(pathAt(target_, folder.path));
    hasStarted_ = true;
    folder.target = openFolderBelow(target, newName.c_str(), MountPoints::refuse);
    if (!folder.target) fail(pathAt(target_, folder.path));
    if (folders_.size() > mostOpen) {
      auto& upper = folders_[folders_.size() - mostOpen];
      upper.source.close();
      upper.target.close();
    }
    folders_.push_back(std::move(folder));
  }

  /// Opens the folder again if it was closed on the way down.
  void reopen(OpenFolder& folder) {
    if (folder.source) return;
    folder.source = openPathBelow(folders_.front().source, folder.path);
    folder.target = openPathBelow(folders_.front().target, folder.path);
    if (!folder.source || !folder.target) fail(pathAt(source_, folder.path));
  }

  /// Gives their attributes to the folders that nothing more goes into, down to `depth` of them.
  void finish(std::size_t depth) {
    while (folders_.size() > depth) {
      OpenFolder& folder = folders_.back();
      reopen(folder);
      struct stat status {};
      const auto path = pathAt(source_, folder.path);
      if (::fstat(folder.source.get(), &status) != 0) fail(path);
      copyAttributes(folder.source.get(), folder.target.get(), status, path);
      folders_.pop_back();
    }
  }

  void copyFile(const EntryStat& stat, const Descriptor& source, const std::string& name,
                const Descriptor& target, const std::string& newName, const std::string& path) {
    const auto shown = pathAt(source_, path);
    if (observer_ != nullptr) observer_->copying(path.empty() ? newName : path);
    const bool mayRepeat = stat.links > 1 && !folders_.empty();
    if (mayRepeat) {
      const auto [first, isNew] = linked_.try_emplace({stat.device, stat.inode}, path);
      if (!isNew && linkTo(first->second, target, newName)) return;
    }
    const Descriptor from = openFileBelow(source, name);
    struct stat status {};
    if (!from || ::fstat(from.get(), &status) != 0) fail(shown);
    if (!S_ISREG(status.st_mode)) throw Failure{ENOTSUP, shown};
    const Descriptor to(::openat(target.get(), newName.c_str(),
                                 O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, 0600));
    if (!to) fail(pathAt(target_, path));
    hasStarted_ = true;
    copyContents(from, to, status, shown);
    copyAttributes(from.get(), to.get(), status, shown);
    if (folders_.empty() && ::fsync(to.get()) != 0) fail(target_);
  }

  /// Makes a further name of a file that is copied already; false where that can't be.
  [[nodiscard]] bool linkTo(const std::string& first, const Descriptor& target,
                            const std::string& newName) const {
    const auto slash = first.rfind('/');
    const Descriptor& root = folders_.front().target;
    const Descriptor folder =
        slash == std::string::npos ? Descriptor() : openPathBelow(root, first.substr(0, slash));
    const auto name = slash == std::string::npos ? first : first.substr(slash + 1);
    const int from = slash == std::string::npos ? root.get() : folder.get();
    return ::linkat(from, name.c_str(), target.get(), newName.c_str(), 0) == 0;
  }

  void copyContents(const Descriptor& from, const Descriptor& to, const struct stat& status,
                    const std::string& path) {
    const bool hasHoles = status.st_blocks * statBlockBytes < status.st_size;
    WriteBehind flow(to);
    off_t at = 0;
    while (at < status.st_size) {
      off_t end = status.st_size;
      if (hasHoles) {
        const off_t data = ::lseek(from.get(), at, SEEK_DATA);
        if (data < 0 && errno == ENXIO) break;  // a hole to the end
        if (data >= 0) {
          at = data;
          end = ::lseek(from.get(), data, SEEK_HOLE);
          if (end < 0) fail(path);
        }
      }
      if (!copyRange(from, to, at, end, flow, path)) break;  // shorter than it was
      at = end;
    }
    if (hasHoles && ::ftruncate(to.get(), status.st_size) != 0) fail(path);
  }

  /// False when the file ends before `end`.
  bool copyRange(const Descriptor& from, const Descriptor& to, off_t at, off_t end,
                 WriteBehind& flow, const std::string& path) {
    while (at < end) {
      if (observer_ != nullptr && observer_->isStopped()) throw Failure{ECANCELED, path};
      const auto wanted = std::min(static_cast<std::size_t>(end - at), pieceBytes);
      off_t readAt = at;
      off_t writeAt = at;
      auto count = ::copy_file_range(from.get(), &readAt, to.get(), &writeAt, wanted, 0);
      if (count < 0 && (errno == EXDEV || errno == EINVAL || errno == ENOSYS ||
                        errno == EOPNOTSUPP || errno == EPERM)) {
        count = copyByHand(from, to, at, wanted, path);
      }
      if (count < 0 && errno == EINTR) continue;
      if (count < 0) fail(path);
      if (count == 0) return false;
      if (!flow.wrote(at, at + count)) fail(path);
      at += count;
      if (observer_ != nullptr) observer_->copied(count);
    }
    return true;
  }

  ssize_t copyByHand(const Descriptor& from, const Descriptor& to, off_t at, std::size_t wanted,
                     const std::string& path) {
    constexpr std::size_t bufferBytes = 1U << 20U;
    if (!buffer_) buffer_.reset(new char[bufferBytes]);
    const auto count = ::pread(from.get(), buffer_.get(), std::min(wanted, bufferBytes), at);
    for (ssize_t written = 0; written < count;) {
      const auto more = ::pwrite(to.get(), buffer_.get() + written,
                                 static_cast<std::size_t>(count - written), at + written);
      if (more < 0 && errno == EINTR) continue;
      if (more <= 0) fail(path);
      written += more;
    }
    return count;
  }

  void copyLink(const Descriptor& source, const std::string& name, const Descriptor& target,
                const std::string& newName, const std::string& path) {
    struct stat status {};
    if (::fstatat(source.get(), name.c_str(), &status, AT_SYMLINK_NOFOLLOW) != 0) {
      fail(pathAt(source_, path));
    }
    std::string text(static_cast<std::size_t>(status.st_size) + 1, '\0');
    const auto length = ::readlinkat(source.get(), name.c_str(), text.data(), text.size());
    if (length < 0) fail(pathAt(source_, path));
    text.resize(static_cast<std::size_t>(length));
    if (::symlinkat(text.c_str(), target.get(), newName.c_str()) != 0) {
      // A drive that knows no links (FAT) keeps all contents all the same; symlink(2).
      if (!folders_.empty() && (errno == EPERM || errno == ENOTSUP || errno == ENOSYS)) return;
      fail(pathAt(target_, path));
    }
    hasStarted_ = true;
    const char* link = newName.c_str();
    if (::fchownat(target.get(), link, status.st_uid, status.st_gid, AT_SYMLINK_NOFOLLOW) != 0 &&
        !isUnable(errno)) {
      fail(pathAt(target_, path));
    }
    const timespec times[2] = {status.st_atim, status.st_mtim};
    if (::utimensat(target.get(), link, times, AT_SYMLINK_NOFOLLOW) != 0 && !isUnable(errno)) {
      fail(pathAt(target_, path));
    }
  }

  void sync() const {
    const Descriptor above = openFolderBelow(targetAbove_, ".", MountPoints::cross);
    // One call for the whole drive costs less than one for each of many files.
    if (!above || ::syncfs(above.get()) != 0) fail(target_);
  }

  std::string source_, target_;
  CopyObserver* observer_;
  Descriptor targetAbove_;
  std::vector<OpenFolder> folders_;
  std::map<std::pair<std::uint64_t, std::uint64_t>, std::string> linked_;  ///< first path of each
  std::unique_ptr<char[]> buffer_;
  bool hasStarted_ = false;
  std::optional<Failure> fault_;
};

/// Looks for what can't be copied.
class SpecialFileVisitor final : public TreeVisitor {
 public:
  Onward visit(const WalkEntry& entry) override {
    if (entry.stat.kind != EntryKind::other) return Onward::into;
    found =
        entry.folder == nullptr ? std::string(entry.name) : below(entry.folder->path(), entry.name);
    return Onward::end;
  }
  void unreadable(std::size_t /*root*/, const EntryStat* /*closed*/) override {}

  std::string found;
};

std::string findSpecialFile(const std::string& source) {
  SpecialFileVisitor visitor;
  walkTrees({source}, {.detail = WalkOptions::Detail::kind, .order = WalkOptions::Order::byName},
            [&]() -> TreeVisitor& { return visitor; });
  return visitor.found;
}

}  // namespace

std::optional<CopyFault> copyTree(const std::string& source, const std::string& target,
                                  CopyObserver* observer) {
  if (const auto special = findSpecialFile(source); !special.empty()) {
    return CopyFault{false, special + " is a pipe, a socket or a device, which can't be copied"};
  }
  Copier copier(source, target, observer);
  walkTrees({source}, {.order = WalkOptions::Order::byName},
            [&]() -> TreeVisitor& { return copier; });
  return copier.end();
}

}  // namespace volbrin
