#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "DirectoryReader.hpp"
#include "SkipTree.hpp"

/// What looks at a tree, and what it is told; TreeWalk.hpp does the walking.
namespace volbrin {

/// One folder of a walk. Lives as long as anything below it is still to be visited.
class WalkFolder {
 public:
  WalkFolder(std::shared_ptr<const WalkFolder> parent, std::string name, std::size_t root,
             const EntryStat& stat, const SkipTree* skips, unsigned mark);
  ~WalkFolder();
  WalkFolder(const WalkFolder&) = delete;
  WalkFolder& operator=(const WalkFolder&) = delete;

  /// Null for a root of the walk.
  [[nodiscard]] const WalkFolder* parent() const { return parent_.get(); }
  /// The last component; a root's whole path.
  [[nodiscard]] const std::string& name() const { return name_; }
  /// Which of the walk's roots it belongs to, by position.
  [[nodiscard]] std::size_t root() const { return root_; }
  [[nodiscard]] std::uint64_t device() const { return device_; }
  [[nodiscard]] std::uint64_t inode() const { return inode_; }
  /// How many folders of the walk lie above it; 0 for a root.
  [[nodiscard]] std::size_t depth() const { return depth_; }
  /// What the visitor's `mark` gave for it.
  [[nodiscard]] unsigned mark() const { return mark_; }
  /// Null when nothing below is passed over.
  [[nodiscard]] const SkipTree* skips() const { return skips_; }
  /// The whole path, built anew at each call.
  [[nodiscard]] std::string path() const;
  /// The path below the walk's root, built anew at each call; empty for the root.
  [[nodiscard]] std::string relativePath() const;

 private:
  std::shared_ptr<const WalkFolder> parent_;
  std::string name_;
  std::size_t root_;
  std::uint64_t device_;
  std::uint64_t inode_;
  std::size_t depth_;
  const SkipTree* skips_;
  unsigned mark_;
};

/// One thing that a walk met.
struct WalkEntry {
  std::size_t root;           ///< which of the walk's roots it belongs to, by position
  std::string_view name;      ///< the last component; a root's whole path
  const WalkFolder* folder;   ///< the folder it lies in; null for a root itself
  const EntryStat& stat;      ///< its own record; in a walk for kinds alone only the kind
  bool isMountPoint = false;  ///< something else is mounted here, which is not entered

  /// How many folders of the walk lie above it.
  [[nodiscard]] std::size_t depth() const { return folder == nullptr ? 0 : folder->depth() + 1; }
};

/// How a walk goes on from an entry.
enum class Onward {
  into,    ///< with what lies in it, if it is a folder
  around,  ///< not into this folder
  end,     ///< not at all: the walk is over
};

/// What looks at a tree. A walk uses one visitor for each lane, never from two threads at once, so
/// a visitor needs no locks for what is its own.
class TreeVisitor {
 public:
  virtual ~TreeVisitor() = default;

  /// An entry, once; a folder before anything in it, also when it is not entered. The order of the
  /// entries, and which lane meets which, is open where the walk's options leave it so. After
  /// `Onward::end` this visitor is shown nothing more, others only what they are at.
  virtual Onward visit(const WalkEntry& entry) = 0;

  /// What shall stand on a folder that is about to be entered, for whoever visits what lies in it.
  [[nodiscard]] virtual unsigned mark(const WalkEntry& /*folder*/) { return 0; }

  /// Something that couldn't be looked at: a folder that can't be opened or read to its end, an
  /// entry that vanished, a root that isn't there. `closed` is the record of a folder below the
  /// root that can't be opened and hasn't been visited; null for all else.
  virtual void unreadable(std::size_t root, const EntryStat* closed) = 0;

  /// A folder's entries have all been visited, but for the folders in it; or the lane has nothing
  /// more to do for now. For progress.
  virtual void pause() {}
};

}  // namespace volbrin
