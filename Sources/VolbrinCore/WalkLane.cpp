#include "WalkLane.hpp"

#include <algorithm>
#include <cerrno>

namespace volbrin {
namespace {

/// Below this many entries a walk is over before another thread has started.
constexpr std::size_t entriesBeforeHelpers = 256;
/// Characters of "../../.." that are still cheaper than the way down from a root.
constexpr std::size_t farthestClimb = 600;
/// Fewer names of a huge folder aren't worth handing to another lane.
constexpr std::size_t namesWorthSharing = 64;

bool isFolderBehind(const std::string& link) {
  const auto stat = statPath(link + "/.");
  return stat && stat->kind == EntryKind::folder;
}

}  // namespace

void WalkLane::run() {
  while (true) {
    while (const WalkRoot* root = crew_.nextRoot()) {
      startRoot(*root);
      drainStack();
    }
    visitor_.pause();
    auto frame = crew_.awaitWork();
    if (!frame) return;
    push(std::move(*frame));
    drainStack();
  }
}

void WalkLane::drainStack() {
  while (!stack_.empty() && !crew_.isEnded()) step();
  stack_.clear();
  firstOpen_ = 0;
}

void WalkLane::startRoot(const WalkRoot& root) {
  const auto& [position, path, skips] = root;
  const bool followsLink = crew_.options().rootLinks == WalkOptions::RootLinks::follow;
  const auto stat = path.find('\0') == std::string::npos ? statPath(path) : std::nullopt;
  if (!stat) {
    visitor_.unreadable(position, nullptr);
    return;
  }
  const bool isFolder = stat->kind == EntryKind::folder ||
                        (stat->kind == EntryKind::link && followsLink && isFolderBehind(path));
  if (!isFolder || skips.isSkipped()) {
    show({position, path, nullptr, *stat});
    return;
  }
  Descriptor handle = openRoot(path);
  const auto opened = handle ? statOpen(handle) : std::nullopt;
  if (!opened) {
    visitor_.unreadable(position, nullptr);
    return;
  }
  const WalkEntry entry{position, path, nullptr, *opened};
  if (!show(entry)) return;
  readFolder(
      std::make_shared<WalkFolder>(nullptr, path, position, *opened, &skips, visitor_.mark(entry)),
      std::move(handle));
}

Descriptor WalkLane::openRoot(const std::string& path) const {
  // With a component behind it, the system follows a link.
  const bool followsLink = crew_.options().rootLinks == WalkOptions::RootLinks::follow;
  return openFolder(followsLink ? path + "/." : path);
}

bool WalkLane::show(const WalkEntry& entry) {
  const Onward onward = visitor_.visit(entry);
  if (onward == Onward::end) crew_.end();
  return onward == Onward::into;
}

void WalkLane::tellUnreadable(const WalkFrame& frame, const char* name) {
  const bool isRefused = errno == EACCES || errno == EPERM;
  const auto stat = isRefused ? statBelow(frame.handle, name) : std::nullopt;
  visitor_.unreadable(frame.folder->root(), stat ? &*stat : nullptr);
}

void WalkLane::step() {
  const bool isLastName = stack_.size() == 1 && stack_.front().names.count() < 2;
  if (crew_.isHungry() && !isLastName) shareStack();
  const std::size_t top = stack_.size() - 1;
  if (stack_[top].names.count() == 0) {
    pop();
    return;
  }
  if (!stack_[top].handle && !reopen(top)) {
    while (stack_[top].names.take()) visitor_.unreadable(stack_[top].folder->root(), nullptr);
    return;
  }
  if (stack_[top].names.count() > 1) {
    visitName(stack_[top]);
  } else {
    // The last name's frame leaves the stack first, so that a chain of folders doesn't pile up.
    WalkFrame last = std::move(stack_[top]);
    pop();
    reopenAbove(last);
    visitName(last);
    if (last.names.count() > 0) push(std::move(last));
  }
}

void WalkLane::visitName(WalkFrame& frame) {
  const auto listed = *frame.names.take();
  if (listed.kind == EntryKind::folder) {
    enterFolder(frame, listed.name);
  } else {
    visitListed(frame, listed);
  }
}

void WalkLane::enterFolder(WalkFrame& frame, const char* name) {
  if (crew_.isEnded()) return;
  const auto& parent = frame.folder;
  const std::size_t root = parent->root();
  const SkipTree* skips = parent->skips() != nullptr ? parent->skips()->below(name) : nullptr;
  if (crew_.options().detail == WalkOptions::Detail::kind) return enterUnasked(frame, name, skips);
  const bool isSkipped = skips != nullptr && skips->isSkipped();

  Descriptor handle;
  std::optional<EntryStat> stat;
  if (!isSkipped) {
    handle = open(frame, name);
    if (handle) stat = statOpen(handle);
  }
  if (isSkipped || (!handle && errno == EXDEV)) stat = statBelow(frame.handle, name);
  if (!stat) {
    tellUnreadable(frame, name);
    return;
  }
  const bool isMountPoint = !isSkipped && (!handle || stat->device != parent->device());
  const WalkEntry entry{root, name, parent.get(), *stat, isMountPoint};
  ++entriesSeen_;
  if (!show(entry) || !handle || isMountPoint) return;
  readFolder(std::make_shared<WalkFolder>(parent, name, root, *stat, skips, visitor_.mark(entry)),
             std::move(handle));
}

void WalkLane::enterUnasked(WalkFrame& frame, const char* name, const SkipTree* skips) {
  const auto& parent = frame.folder;
  EntryStat kind;
  kind.kind = EntryKind::folder;
  const WalkEntry entry{parent->root(), name, parent.get(), kind};
  ++entriesSeen_;
  if (!show(entry) || (skips != nullptr && skips->isSkipped())) return;
  Descriptor handle = open(frame, name);
  if (!handle && errno == EXDEV) return;
  const auto stat = handle ? statOpen(handle) : std::nullopt;
  if (!stat) {
    visitor_.unreadable(parent->root(), nullptr);
  } else if (stat->device == parent->device()) {
    readFolder(std::make_shared<WalkFolder>(parent, name, parent->root(), *stat, skips,
                                            visitor_.mark(entry)),
               std::move(handle));
  }
}

void WalkLane::readFolder(std::shared_ptr<const WalkFolder> folder, Descriptor handle) {
  const bool isOrdered = crew_.options().order == WalkOptions::Order::byName;
  WalkFrame frame{std::move(folder), std::move(handle), {}};
  while (!crew_.isEnded()) {
    const auto filled = buffer_.fill(frame.handle);
    if (filled == DirectoryBuffer::Fill::failed) {
      visitor_.unreadable(frame.folder->root(), nullptr);
    }
    if (filled != DirectoryBuffer::Fill::batch) break;
    if (entriesSeen_ > entriesBeforeHelpers) crew_.callHelpers();

    if (crew_.isHungry() && !shareStack()) {
      visitSharing(frame);
      continue;
    }
    while (const auto listed = buffer_.next()) {
      if (isOrdered || listed->kind == EntryKind::folder) {
        frame.names.add(listed->name, listed->kind);
      } else {
        visitListed(frame, *listed);
      }
    }
  }
  if (isOrdered) frame.names.sort();
  visitor_.pause();
  if (frame.names.count() > 0) push(std::move(frame));
}

void WalkLane::visitSharing(WalkFrame& frame) {
  NameList files;
  while (const auto listed = buffer_.next()) {
    NameList& list = listed->kind == EntryKind::folder ? frame.names : files;
    list.add(listed->name, listed->kind);
  }
  if (files.count() >= namesWorthSharing) {
    // A handle of its own, and not a duplicate: two threads on one open file slow each other down.
    if (Descriptor handle = openFolderBelow(frame.handle, ".", MountPoints::cross)) {
      crew_.handOver({frame.folder, std::move(handle), files.takeHalf()});
    }
  }
  while (const auto listed = files.take()) visitListed(frame, *listed);
}

void WalkLane::visitListed(WalkFrame& frame, const ListedEntry& listed) {
  if (crew_.isEnded()) return;
  std::optional<EntryStat> stat;
  if (crew_.options().detail == WalkOptions::Detail::kind && listed.kind != EntryKind::unknown) {
    stat.emplace().kind = listed.kind;
  } else if (listed.stat != nullptr) {
    stat = *listed.stat;
  } else {
    stat = statBelow(frame.handle, listed.name);
  }
  ++entriesSeen_;
  if (!stat) {
    visitor_.unreadable(frame.folder->root(), nullptr);
  } else if (stat->kind != EntryKind::folder) {
    show({frame.folder->root(), listed.name, frame.folder.get(), *stat});
  } else if (crew_.options().order == WalkOptions::Order::byName) {
    enterFolder(frame, listed.name);
  } else {
    frame.names.add(listed.name, EntryKind::folder);
  }
}

void WalkLane::push(WalkFrame frame) {
  stack_.push_back(std::move(frame));
  closeOldest(crew_.openLimit());
}

void WalkLane::pop() {
  stack_.pop_back();
  firstOpen_ = std::min(firstOpen_, stack_.size());
}

Descriptor WalkLane::open(const WalkFrame& frame, const char* name) {
  while (true) {
    Descriptor handle = openFolderBelow(frame.handle, name, MountPoints::refuse);
    const bool outOfHandles = !handle && (errno == EMFILE || errno == ENFILE);
    if (!outOfHandles || openFrames() < 2) return handle;
    closeOldest(openFrames() / 2);
  }
}

void WalkLane::closeOldest(std::size_t keep) {
  while (openFrames() > keep) stack_[firstOpen_++].handle.close();
}

bool WalkLane::reopen(std::size_t index) {
  std::vector<const WalkFolder*> chain;
  for (const auto* folder = stack_[index].folder.get(); folder != nullptr;
       folder = folder->parent()) {
    chain.push_back(folder);
  }
  // The frames just below are needed next, so they get their handles on the way: a comb of any
  // depth is walked with a few passes from its root.
  const std::size_t first = index - std::min(index, crew_.openLimit() / 2);
  std::size_t frame = first;
  Descriptor passing;
  const Descriptor* above = &passing;
  for (auto folder = chain.rbegin(); folder != chain.rend(); ++folder) {
    const auto& name = (*folder)->name();
    Descriptor handle = (*folder)->parent() == nullptr
                            ? openRoot(name)
                            : openFolderBelow(*above, name.c_str(), MountPoints::refuse);
    const auto stat = handle ? statOpen(handle) : std::nullopt;
    if (!stat || stat->inode != (*folder)->inode() || stat->device != (*folder)->device()) {
      for (std::size_t i = first; i <= index; ++i) stack_[i].handle.close();
      firstOpen_ = stack_.size();
      return false;
    }
    if (frame <= index && stack_[frame].folder.get() == *folder) {
      stack_[frame].handle = std::move(handle);
      above = &stack_[frame++].handle;
    } else {
      passing = std::move(handle);
      above = &passing;
    }
  }
  firstOpen_ = first;
  return true;
}

void WalkLane::reopenAbove(const WalkFrame& frame) {
  if (stack_.empty() || stack_.back().handle || !frame.handle) return;
  const WalkFolder& above = *stack_.back().folder;
  std::string way;
  for (const auto* folder = frame.folder.get(); folder != &above; folder = folder->parent()) {
    if (folder == nullptr || way.size() > farthestClimb) return;
    way += way.empty() ? ".." : "/..";
  }
  Descriptor handle = openFolderBelow(frame.handle, way.c_str(), MountPoints::cross);
  const auto stat = handle ? statOpen(handle) : std::nullopt;
  if (!stat || stat->inode != above.inode() || stat->device != above.device()) return;
  stack_.back().handle = std::move(handle);
  firstOpen_ = stack_.size() - 1;
}

bool WalkLane::shareStack() {
  for (std::size_t i = firstOpen_; i < stack_.size(); ++i) {
    WalkFrame& frame = stack_[i];
    if (frame.names.count() == 0) continue;
    Descriptor handle = openFolderBelow(frame.handle, ".", MountPoints::cross);
    if (!handle) return false;
    crew_.handOver({frame.folder, std::move(handle), frame.names.takeHalf()});
    return true;
  }
  return false;
}

}  // namespace volbrin
