#include <algorithm>
#include <map>

#include "../Acting/History.hpp"
#include "../ByteText.hpp"
#include "../Paths.hpp"
#include "CloudNames.hpp"
#include "CloudRun.hpp"

namespace volbrin {
namespace {

constexpr const char* stoppedWords = "Stopped before this one; it's still in iCloud.";

using Items = std::vector<CloudItem>;

CleanResult resultOf(const CloudItem& item, Outcome outcome) {
  return {item.id,        std::string(lastComponent(item.path)),
          outcome.status, std::move(outcome.detail),
          item.bytes,     std::move(outcome.relocated)};
}

std::vector<CleanResult> resultsOf(const Items& items, const Outcome& outcome) {
  std::vector<CleanResult> results;
  for (const auto& item : items) results.push_back(resultOf(item, outcome));
  return results;
}

const DriveInfo* parkingDrive(const std::vector<DriveInfo>& drives, const std::string& wanted) {
  const auto found = std::find_if(drives.begin(), drives.end(), [&](const DriveInfo& drive) {
    return !drive.isStartup && (drive.name == wanted || drive.path == wanted);
  });
  return found == drives.end() ? nullptr : &*found;
}

/// What stands under an id that no scan knows.
CloudItem unknownItem(const std::string& id) {
  CloudItem item;
  item.id = item.path = id;
  return item;
}

/// What downloading the item takes on the Mac.
ByteCount costOf(const CloudItem& item) { return item.onMac ? 0 : item.bytes; }

ByteCount costOf(const Items& items) {
  ByteCount cost = 0;
  for (const auto& item : items) cost = addBytes(cost, costOf(item), "what is downloaded");
  return cost;
}

/// Cut so that no chunk of more than one item costs more than `chunkBytes`.
std::vector<Items> chunksOf(const Items& items, ByteCount chunkBytes) {
  std::vector<Items> chunks;
  ByteCount cost = 0;
  for (const auto& item : items) {
    const auto next = addBytes(cost, costOf(item), "what is downloaded");
    if (chunks.empty() || next > chunkBytes) {
      chunks.emplace_back();
      cost = costOf(item);
    } else {
      cost = next;
    }
    chunks.back().push_back(item);
  }
  return chunks;
}

std::string plan(const CloudItem& item, const DriveInfo& drive) {
  return std::string(item.onMac ? "" : "Would download it, ") + "check it byte for byte" +
         (item.keep ? " against the copy that stays" : "") + ", park it on " + drive.name + " in " +
         std::string(parkingFolder) + " and remove it from iCloud.";
}

void record(const CleanResult& result, const Mac& mac) {
  const bool isWorth = result.status == CleanResult::Status::done ||
                       (result.status == CleanResult::Status::failed && !result.relocated.empty());
  if (!isWorth) return;
  History::append({presentDate(), result.id, result.title, Action::Kind::move, result.bytes,
                   result.relocated, std::nullopt},
                  mac);
}

/// Takes the chunks' files out, one after the other; the results grow.
class ChunkWork {
 public:
  ChunkWork(CloudRun& run, const ICloud::Stop& stop, std::vector<CleanResult>& results)
      : run_(run), stop_(stop), results_(results) {}

  void take(const Items& chunk, std::size_t number, std::size_t count) {
    if (stop_()) return refuseAll(chunk, stoppedWords);
    const auto need = costOf(chunk);
    const auto free = run_.freeBytes();
    const auto margin = run_.options.marginBytes;
    if (free - margin < need) {
      const auto wanted = addBytes(need, margin, "what a download needs");
      return refuseAll(chunk, "Downloading it needs " + byteText(wanted) +
                                  " free on the Mac, which has " + byteText(free) +
                                  "; it's still in iCloud.");
    }
    run_.progress("Chunk " + std::to_string(number) + " of " + std::to_string(count) +
                  ": downloading " + byteText(need));
    std::vector<std::string> paths;
    for (const auto& item : chunk) {
      if (!item.onMac) paths.push_back(item.path);
    }
    run_.arrived = download(paths, run_);
    for (const auto& item : chunk) takeOne(item);
  }

 private:
  void takeOne(const CloudItem& item) {
    if (stop_()) {
      run_.giveBack(item.path);
      results_.push_back(resultOf(item, refused(stoppedWords)));
      return;
    }
    results_.push_back(resultOf(item, park(item, run_)));
    record(results_.back(), run_.mac);
  }

  void refuseAll(const Items& chunk, const std::string& why) {
    for (auto& result : resultsOf(chunk, refused(why))) results_.push_back(std::move(result));
  }

  CloudRun& run_;
  const ICloud::Stop& stop_;
  std::vector<CleanResult>& results_;
};

}  // namespace

ByteCount CloudRun::freeBytes() const {
  const auto drives = mac.drives();
  const auto startup = std::find_if(drives.begin(), drives.end(),
                                    [](const DriveInfo& each) { return each.isStartup; });
  return startup == drives.end() ? 0 : startup->freeBytes;
}

void CloudRun::giveBack(const std::string& path) {
  if (arrived.erase(path) > 0) mac.platform().evict(path);
}

std::vector<CleanResult> ICloud::clean(const std::vector<std::string>& ids, const CloudScan& scan,
                                       const Mac& mac, const CloudOptions& options,
                                       const Progress& progress, const Stop& stop,
                                       CloudClock& clock) {
  std::map<std::string, CloudItem> known;
  for (auto& item : scan.items()) known.emplace(item.id, item);
  const auto drives = mac.drives();
  const auto* drive = parkingDrive(drives, options.drive);

  std::vector<CleanResult> results;
  Items selected;
  for (const auto& id : ids) {
    const auto found = known.find(id);
    const auto item = found == known.end() ? unknownItem(id) : found->second;
    if (drive == nullptr) {
      results.push_back(resultOf(item, refused("Say which drive to park the removed files on.")));
    } else if (found == known.end()) {
      results.push_back(resultOf(item, refused("Not in the last iCloud scan; scan again.")));
    } else if (item.caution && !options.agreed) {
      results.push_back(
          resultOf(item, refused(*item.caution + " It waits until you've agreed to that.")));
    } else {
      selected.push_back(item);
    }
  }
  if (drive == nullptr || selected.empty()) return results;

  const auto append = [&](std::vector<CleanResult> more) {
    std::move(more.begin(), more.end(), std::back_inserter(results));
    return std::move(results);
  };
  ByteCount total = 0;
  for (const auto& item : selected) total = addBytes(total, item.bytes, "what is parked");
  if (addBytes(total, total / 10, "what is parked") >= drive->freeBytes) {
    return append(resultsOf(
        selected, refused(drive->name + " doesn't have room for all of them plus a margin.")));
  }
  if (options.dryRun) {
    for (const auto& item : selected)
      results.push_back(resultOf(item, wouldDo(plan(item, *drive))));
    return results;
  }
  CloudRun run{mac, options, progress, clock, *drive, roots(mac)};
  ChunkWork work(run, stop, results);
  const auto chunks = chunksOf(selected, options.chunkBytes);
  for (std::size_t i = 0; i < chunks.size(); ++i) work.take(chunks[i], i + 1, chunks.size());
  return results;
}

}  // namespace volbrin
