#include <algorithm>
#include <map>
#include <set>
#include <unordered_map>
#include <unordered_set>

#include "../Files.hpp"
#include "../Paths.hpp"
#include "../Text.hpp"
#include "CloudNames.hpp"
#include "CloudWalk.hpp"
#include "ICloud.hpp"

namespace volbrin {
namespace {

constexpr std::size_t mostBiggest = 50;
constexpr std::string_view driveFolder = "com~apple~CloudDocs";
constexpr const char* onThisMac = "this Mac";

/// A place outside iCloud where copies may lie.
struct Place {
  std::string path;
  std::string name;  ///< "this Mac", or the drive's
  bool isDrive;
};

/// A file outside iCloud.
struct Outsider {
  CloudEntry entry;
  const Place* place;
};

/// All that has one key.
struct Candidates {
  std::vector<CloudEntry> inCloud;
  std::vector<Outsider> outside;
};

std::vector<Place> placesOutside(const Mac& mac, const std::vector<DriveInfo>& drives) {
  std::vector<Place> places;
  for (const char* written :
       {"~/Movies", "~/Music", "~/Pictures", "~/Downloads", "~/Desktop", "~/Documents"}) {
    const auto path = mac.path(written);
    if (isDirectory(path) && !mac.cloudFolderOf(path)) places.push_back({path, onThisMac, false});
  }
  for (const auto& drive : drives) {
    if (!drive.isStartup) places.push_back({drive.path, drive.name, true});
  }
  return places;
}

/// Two files of one key are taken for copies until their contents tell.
std::string keyOf(const CloudEntry& entry, const CloudSizes& sizes) {
  auto key = std::to_string(entry.bytes);
  if (entry.bytes < sizes.sizeOnly) key += "|" + normalizedCopyName(lastComponent(entry.path));
  return key;
}

/// The oldest first, then the shortest path; the order of paths decides what is left.
bool isKeptBefore(const CloudEntry& a, const CloudEntry& b) {
  if (a.modified != b.modified) return a.modified < b.modified;
  const auto lengthOfA = characterCount(a.path), lengthOfB = characterCount(b.path);
  return lengthOfA != lengthOfB ? lengthOfA < lengthOfB : precedesInTree(a.path, b.path);
}

CloudItem itemOf(const CloudEntry& entry) {
  return {cloudID(entry.path), entry.path, entry.bytes, entry.onMac, {}, {}, {}};
}

bool haveOneName(const Candidates& all) {
  const auto first = normalizedCopyName(lastComponent(all.inCloud.front().path));
  const auto isSame = [&](const CloudEntry& entry) {
    return normalizedCopyName(lastComponent(entry.path)) == first;
  };
  return std::all_of(all.inCloud.begin(), all.inCloud.end(), isSame) &&
         std::all_of(all.outside.begin(), all.outside.end(),
                     [&](const Outsider& each) { return isSame(each.entry); });
}

CopyGroup groupKeeping(const CloudEntry& kept, std::string place, const Candidates& all) {
  return {std::string(lastComponent(kept.path)),
          kept.bytes,
          kept.path,
          std::move(place),
          {},
          haveOneName(all)};
}

/// One file in iCloud that has a copy elsewhere, on a drive rather than on the Mac.
CopyGroup groupOutside(const Candidates& all) {
  const auto& outside = all.outside;
  const auto onDrive = std::find_if(outside.begin(), outside.end(),
                                    [](const Outsider& each) { return each.place->isDrive; });
  const auto& kept = onDrive == outside.end() ? outside.front() : *onDrive;
  auto group = groupKeeping(kept.entry, kept.place->name, all);
  auto item = itemOf(all.inCloud.front());
  item.keep = kept.entry.path;
  item.keepOnMac = true;
  item.caution = "Afterwards it's no longer in iCloud: the copy on " + kept.place->name +
                 " is the one that stays.";
  group.items.push_back(std::move(item));
  return group;
}

CopyGroup groupInside(Candidates all) {
  std::sort(all.inCloud.begin(), all.inCloud.end(), isKeptBefore);
  const auto& kept = all.inCloud.front();
  auto group = groupKeeping(kept, "iCloud", all);
  for (auto entry = all.inCloud.begin() + 1; entry != all.inCloud.end(); ++entry) {
    auto item = itemOf(*entry);
    item.keep = kept.path;
    item.keepOnMac = kept.onMac;
    group.items.push_back(std::move(item));
  }
  return group;
}

/// What a group frees is compared by; may leave 64 bits.
__extension__ using Worth = __int128;
Worth worthOf(const CopyGroup& group) {
  return static_cast<Worth>(group.bytes) * static_cast<Worth>(group.items.size());
}

class CloudSearch {
 public:
  CloudSearch(const Mac& mac, const std::vector<DriveInfo>& drives, const CloudSizes& sizes)
      : mac_(mac), sizes_(sizes), places_(placesOutside(mac, drives)) {
    result_.roots = ICloud::roots(mac);
  }

  CloudScan run() {
    lookInside();
    lookOutside();
    makeGroups();
    findBiggest();
    return std::move(result_);
  }

 private:
  [[nodiscard]] std::vector<CloudEntry> walk(const std::string& top,
                                             std::unordered_set<std::string> passedOver,
                                             CloudTally& tally) const {
    passedOver.erase(top);
    return walkCloud(top, {sizes_.minimum, mac_.isFake(), std::move(passedOver)}, tally);
  }

  /// Whether the file was met before, under another name or on another way.
  bool isKnown(const CloudEntry& entry) {
    return !known_.insert({entry.device, entry.inode}).second;
  }

  /// A root within another is walked by itself.
  void lookInside() {
    CloudTally tally;
    const std::unordered_set<std::string> roots(result_.roots.begin(), result_.roots.end());
    for (const auto& root : result_.roots) {
      for (auto& entry : walk(root, roots, tally)) {
        if (!isKnown(entry)) inCloud_.push_back(std::move(entry));
      }
    }
    result_.files = tally.files;
    result_.bytes = tally.bytes;
    result_.onMacBytes = tally.onMacBytes;
    result_.packages = tally.packages;
    for (const auto& entry : inCloud_) {
      candidates_[keyOf(entry, sizes_)].inCloud.push_back(entry);
    }
  }

  void lookOutside() {
    if (candidates_.empty()) return;
    std::unordered_set<std::string> clouds(result_.roots.begin(), result_.roots.end());
    for (const auto& folder : mac_.cloud()) clouds.insert(folder.path);
    for (const auto& place : places_) {
      CloudTally ignored;
      for (auto& entry : walk(place.path, clouds, ignored)) {
        const auto found = candidates_.find(keyOf(entry, sizes_));
        if (found == candidates_.end() || isKnown(entry)) continue;
        found->second.outside.push_back({std::move(entry), &place});
      }
    }
  }

  void makeGroups() {
    for (auto& [key, all] : candidates_) {
      if (all.inCloud.size() + all.outside.size() < 2) continue;
      for (const auto& entry : all.inCloud) grouped_.insert(entry.path);
      result_.groups.push_back(all.inCloud.size() == 1 ? groupOutside(all)
                                                       : groupInside(std::move(all)));
    }
    std::sort(
        result_.groups.begin(), result_.groups.end(), [](const CopyGroup& a, const CopyGroup& b) {
          const auto worthOfA = worthOf(a), worthOfB = worthOf(b);
          return worthOfA != worthOfB ? worthOfA > worthOfB
                                      : precedesInTree(a.items.front().path, b.items.front().path);
        });
  }

  void findBiggest() {
    for (const auto& entry : inCloud_) {
      if (entry.bytes < sizes_.big || grouped_.contains(entry.path)) continue;
      auto item = itemOf(entry);
      item.caution =
          "Afterwards it's no longer in iCloud: the copy moved to your drive is the only one.";
      result_.biggest.push_back(std::move(item));
    }
    std::stable_sort(result_.biggest.begin(), result_.biggest.end(),
                     [](const CloudItem& a, const CloudItem& b) { return a.bytes > b.bytes; });
    if (result_.biggest.size() > mostBiggest) result_.biggest.resize(mostBiggest);
  }

  const Mac& mac_;
  const CloudSizes& sizes_;
  std::vector<Place> places_;
  CloudScan result_;
  std::set<std::pair<std::uint64_t, std::uint64_t>> known_;
  std::vector<CloudEntry> inCloud_;
  std::map<std::string, Candidates> candidates_;  ///< by key
  std::unordered_set<std::string> grouped_;
};

}  // namespace

std::vector<CloudItem> CloudScan::items() const {
  std::vector<CloudItem> all;
  for (const auto& group : groups) all.insert(all.end(), group.items.begin(), group.items.end());
  all.insert(all.end(), biggest.begin(), biggest.end());
  return all;
}

std::vector<std::string> ICloud::roots(const Mac& mac) {
  std::vector<std::string> paths = {
      mac.path("~/Library/Mobile Documents/" + std::string(driveFolder))};
  const auto library = mac.path("~/Library");
  for (const auto& folder : mac.cloud()) {
    const bool isNew = std::find(paths.begin(), paths.end(), folder.path) == paths.end();
    if (isNew && folder.name == "iCloud Drive" && !isInside(folder.path, library)) {
      paths.push_back(folder.path);
    }
  }
  std::erase_if(paths, [](const std::string& path) { return !isDirectory(path); });
  return paths;
}

std::string ICloud::display(const std::string& path, const Mac& mac) {
  for (const auto& root : roots(mac)) {
    if (!isInside(path, root)) continue;
    const auto name =
        root.ends_with(driveFolder) ? "iCloud Drive" : std::string(lastComponent(root));
    return name + path.substr(root.size());
  }
  return mac.display(path);
}

CloudScan ICloud::scan(const Mac& mac, const std::vector<DriveInfo>& drives,
                       const CloudSizes& sizes) {
  return CloudSearch(mac, drives, sizes).run();
}

}  // namespace volbrin
