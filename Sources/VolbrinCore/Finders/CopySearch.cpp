#include "CopySearch.hpp"

#include <algorithm>
#include <deque>
#include <unordered_set>

#include "../Compare.hpp"
#include "../Files.hpp"
#include "../Paths.hpp"
#include "../TreeWalk.hpp"

namespace volbrin {
namespace {

constexpr std::size_t searchDepth = 3;

struct Namesake {
  std::size_t depth;
  std::string path;
};

class NameVisitor final : public TreeVisitor {
 public:
  explicit NameVisitor(const std::set<std::string, std::less<>>& names) : names_(names) {}

  Onward visit(const WalkEntry& entry) override {
    if (entry.folder == nullptr) return Onward::into;
    if (entry.name.starts_with('.') || entry.stat.kind == EntryKind::link) return Onward::around;
    if (names_.contains(entry.name)) {
      found.push_back({entry.depth(), below(entry.folder->path(), entry.name)});
    }
    const bool isTooDeep = entry.depth() >= searchDepth || entry.name.ends_with(".app");
    return isTooDeep ? Onward::around : Onward::into;
  }
  void unreadable(std::size_t /*root*/, const EntryStat* /*closed*/) override {}

  std::vector<Namesake> found;

 private:
  const std::set<std::string, std::less<>>& names_;
};

bool isCopy(const std::string& path, const std::string& namesake) {
  if (isDirectory(path) != isDirectory(namesake)) return false;
  const auto diff = compareCopies(path, namesake, CompareBy::size);
  return diff && diff->isProof();
}

}  // namespace

std::optional<std::string> CopySearch::findCopy(const std::string& path, const DriveInfo& drive) {
  for (const auto& namesake : namesakes(std::string(lastComponent(path)), drive)) {
    const bool isOffered = std::any_of(searched_.begin(), searched_.end(), [&](const auto& folder) {
      return isAtOrInside(namesake, folder);
    });
    if (isOffered || mac_.cloudFolderOf(namesake)) continue;
    if (isCopy(path, namesake)) return namesake;
  }
  return std::nullopt;
}

const std::vector<std::string>& CopySearch::namesakes(const std::string& name,
                                                      const DriveInfo& drive) {
  const auto [entry, isNew] = found_.try_emplace(drive.path);
  auto& byName = entry->second;
  if (isNew) {
    std::unordered_set<std::string> cloud;
    for (const auto& folder : mac_.cloud()) cloud.insert(folder.path);
    std::deque<NameVisitor> lanes;
    walkTrees({drive.path}, {.passedOver = cloud, .detail = WalkOptions::Detail::kind},
              [&]() -> TreeVisitor& { return lanes.emplace_back(names_); });
    std::vector<Namesake> all;
    for (auto& lane : lanes)
      std::move(lane.found.begin(), lane.found.end(), std::back_inserter(all));
    std::sort(all.begin(), all.end(), [](const Namesake& a, const Namesake& b) {
      return a.depth != b.depth ? a.depth < b.depth : precedesInTree(a.path, b.path);
    });
    for (auto& each : all) byName[std::string(lastComponent(each.path))].push_back(each.path);
  }
  return byName[name];
}

}  // namespace volbrin
