#include "TreeSnapshot.hpp"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <system_error>

#include "../HeldItem.hpp"
#include "../Paths.hpp"
#include "../TreeWalk.hpp"

namespace volbrin {
namespace {

class SnapshotVisitor final : public TreeVisitor {
 public:
  Onward visit(const WalkEntry& entry) override {
    if (entry.isMountPoint) isWhole = false;
    entries.emplace_back(pathOf(entry), entry.stat);
    return Onward::into;
  }
  void unreadable(std::size_t /*root*/, const EntryStat* /*closed*/) override { isWhole = false; }

  std::vector<std::pair<std::string, EntryStat>> entries;
  bool isWhole = true;

 private:
  static std::string pathOf(const WalkEntry& entry) {
    if (entry.folder == nullptr) return "";
    const auto folder = entry.folder->relativePath();
    return folder.empty() ? std::string(entry.name) : below(folder, entry.name);
  }
};

/// Whether the entry is still what it was. A folder's own record changes with what is in it.
bool isUnchanged(const EntryStat& then, const std::optional<EntryStat>& now) {
  if (!now || now->kind != then.kind || now->device != then.device || now->inode != then.inode) {
    return false;
  }
  return then.kind == EntryKind::folder ||
         (now->size == then.size && now->modified.tv_sec == then.modified.tv_sec &&
          now->modified.tv_nsec == then.modified.tv_nsec);
}

bool removeIfUnchanged(const Descriptor& folder, const std::string& name, const EntryStat& then) {
  if (!isUnchanged(then, statBelow(folder, name.c_str()))) return false;
  const int flags = then.kind == EntryKind::folder ? AT_REMOVEDIR : 0;
  return ::unlinkat(folder.get(), name.c_str(), flags) == 0;
}

}  // namespace

TreeSnapshot::TreeSnapshot(const std::string& path) : path_(path) {
  SnapshotVisitor visitor;
  walkTrees({path}, {.order = WalkOptions::Order::byName},
            [&]() -> TreeVisitor& { return visitor; });
  if (!visitor.isWhole || visitor.entries.empty()) {
    throw std::system_error(EACCES, std::generic_category(), path);
  }
  entries_ = std::move(visitor.entries);
}

bool TreeSnapshot::removeUnchanged() const {
  const HeldItem item = holdItem(path_);
  const Descriptor top = openFolderBelow(item.folder, item.name.c_str(), MountPoints::refuse);
  Descriptor folder;
  std::string folderPath;  // of the one that `folder` holds; empty for none
  for (auto entry = entries_.rbegin(); entry + 1 != entries_.rend(); ++entry) {
    const auto& [path, stat] = *entry;
    const auto slash = path.rfind('/');
    const bool isDirect = slash == std::string::npos;
    if (!isDirect && path.substr(0, slash) != folderPath) {
      folderPath = path.substr(0, slash);
      folder = openPathBelow(top, folderPath);
    }
    (void)removeIfUnchanged(isDirect ? top : folder, isDirect ? path : path.substr(slash + 1),
                            stat);
  }
  return removeIfUnchanged(item.folder, item.name, entries_.front().second);
}

}  // namespace volbrin
