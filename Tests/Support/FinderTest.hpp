#pragma once

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <string>
#include <vector>

#include "Machine.hpp"
#include "ScanScene.hpp"
#include "Text.hpp"

namespace volbrin::test {

/// Names that folders may well have, in the order of their bytes: line ends, blanks, both forms of
/// an accent, bytes that are no UTF-8.
inline const std::vector<std::string> hostileNames = {"\n -rf *", "\"quo'te$(x)", "cafe\u0301",
                                                      "caf\u00e9", "\xff\xfe"};

/// Dates the item itself, a link as any other.
inline void setDate(const std::string& path, Date date) {
  const auto seconds = std::chrono::system_clock::to_time_t(date);
  const timespec times[2] = {{seconds, 0}, {seconds, 0}};
  ASSERT_EQ(::utimensat(AT_FDCWD, path.c_str(), times, AT_SYMLINK_NOFOLLOW), 0) << path;
}

/// A fake machine and a catalog that a finder is let loose on. At first both are empty, all
/// thresholds 0.
class FinderTest : public ::testing::Test {
 protected:
  [[nodiscard]] FinderResult find(const SpaceFinder& finder) const {
    const auto mac = machine_.mac();
    const ScanScene scene(mac, catalog_, options_);
    return finder.find(scene.context());
  }

  /// A startup drive "Disk", and "Ext" and "Two" in /Volumes with so much free; `more` is JSON,
  /// with a comma before it.
  void setDrives(const std::string& more = "", ByteCount onExt = 1, ByteCount onTwo = 1) const {
    machine_.setFixture(
        R"({"drives": [{"name": "Disk", "path": "/", "total": 9, "free": 1000000000},
        {"name": "Ext", "path": "/Volumes/Ext", "total": 9, "free": )" +
        std::to_string(onExt) +
        R"(}, {"name": "Two", "path": "/Volumes/Two", "total": 9, "free": )" +
        std::to_string(onTwo) + "}]" + more + "}");
  }

  /// What the folder takes, once it holds a file.
  ByteCount fill(const std::string& written) const {
    machine_.fileOfSize(written + "/data", 65536);
    return machine_.mac().usage(machine_.path(written)).bytes;
  }

  /// So many empty files, named by numbers.
  void addFiles(const std::string& written, int count) const {
    const auto folder = machine_.folder(written) + "/";
    for (int i = 0; i < count; ++i) {
      const int file = ::open((folder + std::to_string(i)).c_str(), O_CREAT | O_WRONLY, 0600);
      ASSERT_EQ(::close(file), 0);
    }
  }

  /// All that the finding says but its bytes, in the order of its record: "id|finder|title|...".
  /// What may be absent stands behind its name, paths as the machine shows them.
  [[nodiscard]] std::string told(const Finding& finding) const {
    const auto mac = machine_.mac();
    const auto& action = finding.action;
    std::string text = joined(
        std::vector{
            finding.id, finding.finder, finding.title, finding.reason, finding.getBack,
            toJson(finding.tier).get<std::string>(), pathsOf(finding),
            toJson(action.kind).get<std::string>() + (action.moves == true ? " moves" : "")},
        "|");
    const auto add = [&](const char* name, const std::optional<std::string>& value) {
      if (value) text += std::string("|") + name + "=" + mac.display(*value);
    };
    if (action.command) add("command", joined(*action.command, " "));
    add("destination", action.destination);
    add("app", action.app);
    add("steps", action.steps);
    add("owner", finding.owner);
    add("caution", finding.caution);
    add("blockedBy", finding.blockedBy);
    add("duplicateOf", finding.duplicateOf);
    if (finding.unsure) text += "|unsure";
    return text + finding.drive;
  }

  /// What `told` tells of the finder's first finding.
  [[nodiscard]] std::string toldFirst(const SpaceFinder& finder) const {
    const auto found = find(finder).findings;
    return found.empty() ? "" : told(found.front());
  }

  /// "title: path, path" of each finding.
  [[nodiscard]] std::vector<std::string> listed(const SpaceFinder& finder) const {
    std::vector<std::string> lines;
    for (const auto& finding : find(finder).findings) {
      lines.push_back(finding.title + ": " + pathsOf(finding));
    }
    return lines;
  }

  /// The finder's only finding of 64 KB or more, held to be there from `limit` on, and from the
  /// scan's own limit on in its place.
  Finding onlyOne(const SpaceFinder& finder, ByteCount& limit) {
    limit = 65536;
    const auto found = find(finder).findings;
    EXPECT_EQ(found.size(), 1);
    limit = found.at(0).bytes;
    EXPECT_EQ(find(finder).findings, found);
    ++limit;
    EXPECT_TRUE(find(finder).findings.empty());
    options_.minimumBytes = found[0].bytes;
    EXPECT_EQ(find(finder).findings, found);
    ++*options_.minimumBytes;
    limit = 0;
    EXPECT_TRUE(find(finder).findings.empty());
    options_.minimumBytes.reset();
    return found[0];
  }

  Machine machine_;
  Catalog catalog_ = emptyCatalog();
  ScanOptions options_;

 private:
  [[nodiscard]] std::string pathsOf(const Finding& finding) const {
    const auto mac = machine_.mac();
    std::vector<std::string> paths;
    for (const auto& path : finding.paths) paths.push_back(mac.display(path));
    return joined(paths, ", ");
  }
};

}  // namespace volbrin::test
