#pragma once

#include <gmock/gmock.h>

#include <filesystem>
#include <string>
#include <vector>

#include "Acting/Dispatch.hpp"
#include "Acting/History.hpp"
#include "Machine.hpp"
#include "RecordingPlatform.hpp"
#include "Text.hpp"
#include "TreeRecord.hpp"

namespace volbrin::test {

/// Findings made by hand, acted on as after a scan: on a fake machine with a drive "Ext", or on a
/// real one whose system is made of answers.
class ActTest : public testing::Test {
 protected:
  ActTest() {
    machine_.setFixture(R"({"drives":[{"name":"Disk","path":"/","total":9,"free":9},
        {"name":"Ext","path":"/Volumes/Ext","total":9,"free":1000}]})");
    machine_.folder("/Volumes/Ext");
    catalog_.protectedPaths = {{"~/Documents/Kept", "a kept thing"}};
    catalog_.protectedSuffixes = {{".kept", "a kept ending"}};
  }

  /// Of what rebuilds itself, 100 bytes, to be trashed.
  [[nodiscard]] Finding finding(const std::vector<std::string>& written) const {
    Finding finding;
    finding.id = "id";
    finding.title = "Title";
    finding.tier = Tier::rebuilds;
    finding.bytes = 100;
    finding.action = actions::trash;
    for (const auto& path : written) finding.paths.push_back(machine_.path(path));
    return finding;
  }

  /// One to be moved, as the user agreed by `options_.moveTo`.
  Finding move(const std::vector<std::string>& written) {
    auto result = finding(written);
    result.tier = Tier::personal;
    result.action.kind = Action::Kind::move;
    options_.moveTo = "Ext";
    return result;
  }

  /// A hand-off to be moved with links.
  Finding linkMove(const std::vector<std::string>& written) {
    auto result = move(written);
    result.owner = "Maker";
    result.action.kind = Action::Kind::handOff;
    result.action.linkable = true;
    options_.linkMove = true;
    return result;
  }

  CleanResult act(const Finding& finding) {
    const auto mac = this->mac();
    const PathGuard guard(catalog_, mac, {});
    const auto report = statusOf(mac);
    return treat(finding, {mac, report, guard, options_});
  }

  /// "done: words".
  std::string told(const Finding& finding) {
    const auto result = act(finding);
    relocated_ = result.relocated;
    return toJson(result.status).get<std::string>() + ": " + result.detail;
  }

  /// The same, for what must change nothing, and what a dry run must answer in the same words.
  std::string toldTwice(const Finding& finding) {
    const auto before = recordOf(machine_.root());
    auto text = told(finding);
    options_.dryRun = true;
    EXPECT_EQ(told(finding), text);
    options_.dryRun = false;
    EXPECT_TRUE(relocated_.empty());
    EXPECT_EQ(recordOf(machine_.root()), before);
    return text;
  }

  /// What a dry run says; it must change nothing.
  std::string toldDry(const Finding& finding) {
    const auto before = recordOf(machine_.root());
    options_.dryRun = true;
    auto text = told(finding);
    options_.dryRun = false;
    EXPECT_EQ(recordOf(machine_.root()), before);
    return text;
  }

  /// "from -> to" of each relocation of the last result, links and parked ones marked.
  [[nodiscard]] std::vector<std::string> moves() const {
    std::vector<std::string> lines;
    const auto mac = this->mac();
    for (const auto& [from, to, link, parked] : relocated_) {
      lines.push_back(mac.display(from) + (link.value_or(false) ? " => " : " -> ") +
                      mac.display(to) + (parked.value_or(false) ? " parked" : ""));
    }
    return lines;
  }

  /// From now on the machine is a real one, its system made of answers, with the same drives.
  void makeReal() {
    platform_ = std::make_shared<RecordingPlatform>();
    platform_->driveList = machine_.mac().drives();
    platform_->trashPath = machine_.path("~/.Trash");
  }

  [[nodiscard]] Mac mac() const {
    return platform_ == nullptr ? machine_.mac()
                                : Mac(machine_.root(), machine_.path("~"), platform_);
  }

  Machine machine_;
  Catalog catalog_;
  CleanOptions options_;
  std::vector<Relocation> relocated_;
  std::shared_ptr<RecordingPlatform> platform_;
};

}  // namespace volbrin::test
