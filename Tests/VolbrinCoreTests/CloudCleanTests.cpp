#include <gmock/gmock.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <functional>

#include "Acting/Cleaner.hpp"
#include "Acting/History.hpp"
#include "Files.hpp"
#include "ICloud/ICloud.hpp"
#include "Machine.hpp"
#include "Paths.hpp"
#include "RecordingPlatform.hpp"
#include "Text.hpp"

namespace volbrin::test {
namespace {

namespace fs = std::filesystem;
using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;

/// A cloud that plays: what is asked for arrives after so many looks, or never.
class PlayedCloud final : public RecordingPlatform {
 public:
  std::map<std::string, int> looksToArrive;  ///< by file name; -1 for never, absent for here
  std::function<void(const std::string&)> atCopy;

  void requestDownload(const std::string& path) const override {
    asked_.insert(path);
    note("download " + std::string(lastComponent(path)));
  }
  [[nodiscard]] bool isCurrent(const std::string& path) const override {
    const auto found = looksToArrive.find(std::string(lastComponent(path)));
    if (found == looksToArrive.end()) return true;
    return asked_.contains(path) && found->second >= 0 && ++looks_[path] > found->second;
  }
  void evict(const std::string& path) const override {
    note("evict " + std::string(lastComponent(path)));
  }
  std::optional<CopyFault> copyTree(const std::string& source, const std::string& target,
                                    CopyObserver* observer) const override {
    auto fault = RecordingPlatform::copyTree(source, target, observer);
    if (atCopy) atCopy(target);
    return fault;
  }

  mutable std::vector<std::string> notes;

 private:
  void note(std::string text) const { notes.push_back(std::move(text)); }

  mutable std::set<std::string> asked_;
  mutable std::map<std::string, int> looks_;
};

class PlayedClock final : public CloudClock {
 public:
  [[nodiscard]] double seconds() override { return now_; }
  void wait() override { ++now_; }

 private:
  double now_ = 0;
};

class CloudCleanTests : public testing::Test {
 protected:
  CloudCleanTests() {
    machine_.folder("/Volumes/Ext");
    cloud_->driveList = {{"Disk", machine_.root(), true, 9, 10'000, 10'000},
                         {"Ext", machine_.path("/Volumes/Ext"), false, 9, 1'000'000, 1'000'000}};
    options_.drive = "Ext";
    options_.chunkBytes = 1'000;
    options_.agreed = true;
    machine_.folder(root_);
  }

  /// A file in iCloud Drive that a scan has found.
  CloudItem& add(const std::string& name, std::string_view contents, bool onMac = true) {
    const auto path = machine_.file(root_ + "/" + name, contents);
    CloudItem item{"id-" + name, path, static_cast<ByteCount>(contents.size()), onMac, {}, {}, {}};
    scan_.biggest.push_back(std::move(item));
    return scan_.biggest.back();
  }

  Mac mac() const { return {machine_.root(), machine_.path("~"), cloud_}; }

  /// "id status: detail" of each result.
  std::vector<std::string> clean(const std::vector<std::string>& ids) {
    std::vector<std::string> lines;
    PlayedClock clock;
    progress_.clear();
    results_ = ICloud::clean(
        ids, scan_, mac(), options_, [&](const auto& line) { progress_.push_back(line); },
        [&] { return stop_ && stop_(); }, clock);
    for (const auto& result : results_) {
      lines.push_back(result.id + " " + toJson(result.status).get<std::string>() + ": " +
                      result.detail);
    }
    return lines;
  }

  std::string parked(const std::string& name) const {
    return machine_.path("/Volumes/Ext/Removed from iCloud/iCloud Drive/" + name);
  }
  bool isInCloud(const std::string& name) const {
    return exists(machine_.path(root_ + "/" + name));
  }

  const std::string root_ = "~/Library/Mobile Documents/com~apple~CloudDocs";
  const std::string done_ = " done: Checked byte for byte, parked on Ext and removed from iCloud.";
  Machine machine_;
  std::shared_ptr<PlayedCloud> cloud_ = std::make_shared<PlayedCloud>();
  CloudScan scan_;
  CloudOptions options_;
  std::function<bool()> stop_;
  std::vector<std::string> progress_;
  std::vector<CleanResult> results_;
};

TEST_F(CloudCleanTests, ParksProvesRemovesAndRecords) {
  add("in/film.mov", "film"), add("plain", "text");
  machine_.file("/Volumes/Ext/Removed from iCloud/iCloud Drive/in/film.mov", "older");
  EXPECT_THAT(clean({"id-in/film.mov", "id-plain"}),
              ElementsAre("id-in/film.mov" + done_, "id-plain" + done_));
  EXPECT_EQ(readFile(parked("in/film 2.mov")), "film");
  EXPECT_EQ(readFile(parked("in/film.mov")), "older");
  EXPECT_FALSE(isInCloud("in/film.mov") || isInCloud("plain"));
  EXPECT_THAT(progress_,
              ElementsAre("Chunk 1 of 1: downloading 0 KB", "Checking film.mov",
                          "Copying film.mov to Ext", "Checking plain", "Copying plain to Ext"));
  const auto entries = History::load(mac());
  ASSERT_EQ(entries.size(), 2U);
  EXPECT_EQ(entries[0].relocated[0].parked, true);
  EXPECT_EQ(entries[0].action, Action::Kind::move);
  EXPECT_EQ(Cleaner::undo("id-in/film.mov", mac(), false).detail, "Put back where it was.");
  EXPECT_TRUE(isInCloud("in/film.mov") && !exists(parked("in/film 2.mov")));
}

TEST_F(CloudCleanTests, RefusesBeforeItTouchesAnything) {
  add("a", "12345"), add("b", "123").caution = "Mind it.";
  options_.agreed = false;
  const std::string mind = "id-b refused: Mind it. It waits until you've agreed to that.";
  options_.dryRun = true;
  EXPECT_THAT(clean({"id-a", "none", "id-b"}),
              ElementsAre("none refused: Not in the last iCloud scan; scan again.", mind,
                          "id-a wouldDo: check it byte for byte, park it on Ext in Removed from "
                          "iCloud and remove it from iCloud."));
  scan_.biggest[0].onMac = false;
  scan_.biggest[0].keep = "/x";
  EXPECT_THAT(
      clean({"id-a"}),
      ElementsAre("id-a wouldDo: Would download it, check it byte for byte against the copy "
                  "that stays, park it on Ext in Removed from iCloud and remove it from "
                  "iCloud."));
  cloud_->driveList[1].freeBytes = 5;
  EXPECT_THAT(clean({"id-a"}), ElementsAre("id-a refused: Ext doesn't have room for all of them "
                                           "plus a margin."));
  options_.drive = "Disk";
  EXPECT_THAT(clean({"id-a", "none"}),
              ElementsAre("id-a refused: Say which drive to park the removed files on.",
                          "none refused: Say which drive to park the removed files on."));
  EXPECT_TRUE(isInCloud("a") && fs::is_empty(machine_.path("/Volumes/Ext")));
}

TEST_F(CloudCleanTests, DownloadsInChunksAndWaits) {
  const std::string large(900, 'x');
  add("one", large, false), add("two", large, false), add("here", large), add("three", "3", false);
  cloud_->looksToArrive = {{"one", 2}, {"two", -1}, {"three", 0}};
  options_.marginBytes = 9'000;
  EXPECT_THAT(clean({"id-one", "id-two", "id-here", "id-three"}),
              ElementsAre("id-one" + done_,
                          "id-two failed: It didn't finish downloading, so nothing was changed; "
                          "it's still in iCloud.",
                          "id-here" + done_, "id-three" + done_));
  EXPECT_THAT(progress_, Contains("Chunk 2 of 2: downloading 0 KB"));
  EXPECT_EQ(std::count_if(progress_.begin(), progress_.end(),
                          [](const auto& line) { return line.starts_with("Downloading:"); }),
            3 + 182);
  EXPECT_TRUE(isInCloud("two"));
  EXPECT_THAT(cloud_->notes, ElementsAre("download one", "download two", "download three"));

  add("big", large, false), add("little", "1", false);
  options_.marginBytes = 9'500;
  EXPECT_THAT(
      clean({"id-big", "id-little"}),
      ElementsAre("id-big refused: Downloading it needs 10 KB free on the Mac, which has 10 "
                  "KB; it's still in iCloud.",
                  "id-little refused: Downloading it needs 10 KB free on the Mac, which has "
                  "10 KB; it's still in iCloud."));
  options_.chunkBytes = 900;
  EXPECT_THAT(clean({"id-big", "id-little"})[1], "id-little" + done_);
}

TEST_F(CloudCleanTests, HoldsAgainstTheCopyThatStays) {
  const auto keeper = machine_.file("~/Movies/keeper", "same");
  const auto missing = machine_.path("~/Movies/none");
  add("a", "same").keep = keeper, add("b", "diff").keep = keeper, add("c", "same").keep = missing;
  add("d", "same", false).keep = keeper;
  fs::create_hard_link(keeper, machine_.path(root_ + "/e"));
  scan_.biggest.push_back({"id-e", machine_.path(root_ + "/e"), 4, true, keeper, {}, {}});
  const auto lines = clean({"id-a", "id-b", "id-c", "id-d", "id-e"});
  EXPECT_EQ(lines[0],
            "id-a done: Checked byte for byte against the copy that stays, parked on Ext "
            "and removed from iCloud.");
  EXPECT_EQ(lines[1],
            "id-b refused: It isn't identical to ~/Movies/keeper byte for byte, so it "
            "stays in iCloud.");
  EXPECT_EQ(lines[2],
            "id-c failed: The copy that stays (~/Movies/none) couldn't be read to "
            "compare, so nothing was changed.");
  EXPECT_THAT(lines[3], HasSubstr("done"));
  EXPECT_THAT(lines[4], HasSubstr("couldn't be read to compare"));
  EXPECT_TRUE(isInCloud("b") && isInCloud("c") && isInCloud("e"));

  // A keeper that is only in the cloud comes down for the comparison, and goes back.
  const auto inCloud = machine_.file(root_ + "/stays", "same");
  auto& item = add("f", "same");
  item.keep = inCloud;
  item.keepOnMac = false;
  cloud_->looksToArrive = {{"stays", 1}};
  EXPECT_THAT(clean({"id-f"})[0], HasSubstr("done"));
  EXPECT_THAT(progress_, Contains("Downloading the copy that stays, to compare"));
  EXPECT_EQ(cloud_->notes.back(), "evict stays");
}

TEST_F(CloudCleanTests, LeavesInICloudWhatChangedOrFailed) {
  add("a", "text"), add("b", "text"), add("c", "text"), add("d", "text"), add("e", "text", false);
  fs::resize_file(machine_.path(root_ + "/a"), 3);
  fs::remove(machine_.path(root_ + "/b"));
  machine_.link(root_ + "/b", "c");
  cloud_->atCopy = [&](const std::string& target) {
    if (target.ends_with("/c")) std::ofstream(target) << "tex!";
    if (target.ends_with("/d")) std::ofstream(machine_.path(root_ + "/d")) << "new!";
    if (target.ends_with("/e")) std::ofstream(target) << "bad!";
  };
  const auto lines = clean({"id-a", "id-b", "id-c", "id-d", "id-e"});
  EXPECT_EQ(lines[0], "id-a refused: It changed or moved since the scan; scan again.");
  EXPECT_EQ(lines[1], "id-b refused: It isn't in iCloud Drive any more; scan again.");
  EXPECT_EQ(lines[2],
            "id-c failed: The copy on Ext doesn't match, so c stays in iCloud; the partial copy is "
            "at /Volumes/Ext/Removed from iCloud/iCloud Drive/c.");
  EXPECT_EQ(lines[3],
            "id-d failed: Parked on Ext and checked, but it couldn't be removed from "
            "iCloud: it changed meanwhile");
  EXPECT_EQ(readFile(machine_.path(root_ + "/d")), "new!");
  EXPECT_EQ(results_[3].relocated.size(), 1U);
  EXPECT_EQ(History::load(mac()).size(), 1U);
  EXPECT_THAT(cloud_->notes, ElementsAre("download e", "evict e"));
}

TEST_F(CloudCleanTests, StopsBeforeTheNextFile) {
  add("a", std::string(900, 'a'), false), add("b", "b", false), add("c", std::string(900, 'c'));
  int asked = 0;
  stop_ = [&] { return ++asked > 2; };
  const std::string stopped = " refused: Stopped before this one; it's still in iCloud.";
  EXPECT_THAT(clean({"id-a", "id-b", "id-c"}),
              ElementsAre("id-a" + done_, "id-b" + stopped, "id-c" + stopped));
  EXPECT_EQ(cloud_->notes.back(), "evict b");
  EXPECT_TRUE(isInCloud("b") && isInCloud("c"));
}

}  // namespace
}  // namespace volbrin::test
