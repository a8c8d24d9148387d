#pragma once

#include <cstddef>
#include <memory>
#include <vector>

#include "DirectoryReader.hpp"
#include "TreeVisitor.hpp"
#include "WalkCrew.hpp"

namespace volbrin {

/// One thread's part of a walk: a stack of folders in work, the deepest on top. A folder is read to
/// its end at once and its files visited; the folders in it wait as names, so that an open handle
/// is held for each level only, and for no more levels than the limit.
class WalkLane {
 public:
  WalkLane(WalkCrew& crew, TreeVisitor& visitor) : crew_(crew), visitor_(visitor) {}

  void run();

 private:
  void startRoot(const WalkRoot& root);
  void drainStack();
  /// Looks at one name of the stack's top.
  void step();
  void visitName(WalkFrame& frame);
  /// Shows an entry to the visitor; false when nothing of it is to be entered.
  bool show(const WalkEntry& entry);
  void enterFolder(WalkFrame& frame, const char* name);
  /// The same in a walk for kinds alone, where the folder is opened only when it is wanted.
  void enterUnasked(WalkFrame& frame, const char* name, const SkipTree* skips);
  void tellUnreadable(const WalkFrame& frame, const char* name);
  /// Visits a folder's files; the folders in it become the new top of the stack.
  void readFolder(std::shared_ptr<const WalkFolder> folder, Descriptor handle);
  /// Visits the files of the batch just read, half of them by way of another lane.
  void visitSharing(WalkFrame& frame);
  /// Visits what the listing didn't call a folder; should it be one, it joins the frame's names.
  void visitListed(WalkFrame& frame, const ListedEntry& listed);

  void push(WalkFrame frame);
  void pop();
  [[nodiscard]] Descriptor openRoot(const std::string& path) const;
  [[nodiscard]] Descriptor open(const WalkFrame& frame, const char* name);
  void closeOldest(std::size_t keep);
  /// Opens the folder of the frame at `index` again, by way of its root, and makes sure that it is
  /// still the same folder; false when it isn't there any more.
  [[nodiscard]] bool reopen(std::size_t index);
  /// Opens the stack's top again, if it is closed, from a folder below it that is at hand: one call
  /// in place of the way down from the root. That it is the same folder is checked.
  void reopenAbove(const WalkFrame& frame);
  [[nodiscard]] std::size_t openFrames() const { return stack_.size() - firstOpen_; }
  /// Hands half of the uppermost folder's names to a hungry lane; false when there is nothing.
  bool shareStack();

  WalkCrew& crew_;
  TreeVisitor& visitor_;
  DirectoryBuffer buffer_;
  std::vector<WalkFrame> stack_;
  std::size_t firstOpen_ = 0;  ///< the frames before it have their handles closed
  std::size_t entriesSeen_ = 0;
};

}  // namespace volbrin
