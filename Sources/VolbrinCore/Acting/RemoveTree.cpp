#include "RemoveTree.hpp"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <system_error>
#include <vector>

namespace volbrin {
namespace {

/// Folders whose handles are kept open on the way down; upper ones are opened again by "..".
constexpr std::size_t mostOpen = 64;

[[noreturn]] void raise(int error, const std::string& name) {
  throw std::system_error(error, std::generic_category(), name);
}

class Remover {
 public:
  explicit Remover(const HeldItem& item) : item_(item) {}

  void run() {
    if (removeEntry(item_.folder, item_.name)) return;
    enter(item_.folder, item_.name);
    while (!levels_.empty()) step();
  }

 private:
  /// A folder that is being emptied.
  struct Level {
    std::string name;
    Descriptor folder;
    std::uint64_t device, inode;
    std::vector<std::string> folders = {};  ///< in it, still to be emptied
    bool isMadeWritable = false;
    int readings = 0;
  };

  /// Removes what is no folder; false for a folder.
  bool removeEntry(const Descriptor& parent, const std::string& name, Level* level = nullptr) {
    if (::unlinkat(parent.get(), name.c_str(), 0) == 0 || errno == ENOENT) return true;
    const int error = errno;
    const auto stat = statBelow(parent, name.c_str());
    if (stat && stat->kind == EntryKind::folder) return false;
    if (error == EACCES && level != nullptr && makeWritable(*level)) {
      return removeEntry(parent, name, level);
    }
    raise(error, name);
  }

  /// What is to go may be in folders that keep their owner from changing them, as the stores of
  /// some package managers. Once for each folder.
  static bool makeWritable(Level& level) {
    if (level.isMadeWritable) return false;
    level.isMadeWritable = true;
    return ::fchmod(level.folder.get(), 0700) == 0;
  }

  void enter(const Descriptor& parent, const std::string& name) {
    Descriptor folder = openFolderBelow(parent, name.c_str(), MountPoints::refuse);
    if (!folder) raise(errno, name);
    const auto stat = statOpen(folder);
    if (!stat) raise(errno, name);
    levels_.push_back({name, std::move(folder), stat->device, stat->inode});
    if (levels_.size() > mostOpen) levels_[levels_.size() - mostOpen - 1].folder.close();
  }

  void step() {
    Level& level = levels_.back();
    if (!level.folders.empty()) {
      const std::string name = std::move(level.folders.back());
      level.folders.pop_back();
      enter(level.folder, name);
      return;
    }
    if (readAndRemove(level)) return;
    leave();
  }

  /// Removes what is no folder and notes what is one; false when the folder is empty. Some file
  /// systems pass over entries while others are removed, so a folder is read until it shows none.
  bool readAndRemove(Level& level) {
    constexpr int mostReadings = 1000;  // somebody may fill it as fast as it is emptied
    if (++level.readings > mostReadings) raise(ENOTEMPTY, level.name);
    if (::lseek(level.folder.get(), 0, SEEK_SET) != 0) raise(errno, level.name);
    bool isEmpty = true;
    auto fill = buffer_.fill(level.folder);
    for (; fill == DirectoryBuffer::Fill::batch; fill = buffer_.fill(level.folder)) {
      while (const auto entry = buffer_.next()) {
        isEmpty = false;
        const std::string name = entry->name;
        const bool isFolder = entry->kind == EntryKind::folder;
        if (isFolder || !removeEntry(level.folder, name, &level)) level.folders.push_back(name);
      }
    }
    if (fill == DirectoryBuffer::Fill::failed) raise(errno, level.name);
    return !isEmpty;
  }

  /// Removes the folder that has been emptied from the one above it, unless it has filled again.
  void leave() {
    Level* above = levels_.size() > 1 ? &levels_[levels_.size() - 2] : nullptr;
    if (above != nullptr) reopen(*above);
    const Descriptor& parent = above == nullptr ? item_.folder : above->folder;
    const std::string& name = levels_.back().name;
    while (::unlinkat(parent.get(), name.c_str(), AT_REMOVEDIR) != 0 && errno != ENOENT) {
      const int error = errno;
      if (error == ENOTEMPTY || error == EEXIST) return;
      if (error != EACCES || above == nullptr || !makeWritable(*above)) raise(error, name);
    }
    levels_.pop_back();
  }

  /// Opens the folder above the last one again if it was closed on the way down.
  void reopen(Level& above) {
    if (above.folder) return;
    above.folder = openFolderBelow(levels_.back().folder, "..", MountPoints::refuse);
    const auto stat = above.folder ? statOpen(above.folder) : std::nullopt;
    if (!stat || stat->device != above.device || stat->inode != above.inode) {
      raise(ESTALE, above.name);
    }
  }

  const HeldItem& item_;
  std::vector<Level> levels_;
  DirectoryBuffer buffer_;
};

}  // namespace

void removeTree(const HeldItem& item) { Remover(item).run(); }

}  // namespace volbrin
