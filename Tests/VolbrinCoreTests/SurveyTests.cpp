#include "Survey.hpp"

#include <fcntl.h>
#include <fmt/format.h>
#include <gmock/gmock.h>
#include <sys/stat.h>

#include <filesystem>

#include "Changes.hpp"
#include "Machine.hpp"
#include "Parallel.hpp"
#include "PrivacyFence.hpp"
#include "RandomTree.hpp"
#include "Text.hpp"

namespace volbrin::test {
namespace {

namespace fs = std::filesystem;

const FileMarkers markers{{"drafts"}, {"txt"}};

class SurveyTests : public testing::Test {
 protected:
  ~SurveyTests() override { HelperThread::setWidth(0); }

  Machine machine_;
};

/// The look inside in its plainest form.
struct PlainLook {
  void add(const fs::path& folder, bool isMarked) {
    std::vector<fs::path> paths;
    for (const auto& entry : fs::directory_iterator(folder)) paths.push_back(entry.path());
    std::sort(paths.begin(), paths.end(),
              [](const auto& a, const auto& b) { return a.string() < b.string(); });
    for (const auto& path : paths) {
      if (++entries > limit) return;
      const auto status = fs::symlink_status(path);
      const auto name = path.filename().string();
      if (fs::is_directory(status)) add(path, isMarked || lowercased(name) == "drafts");
      const bool counts = isMarked || lowercased(name).ends_with(".txt");
      if (fs::is_regular_file(status) && counts && count++ == 0) first = path.string();
    }
  }

  std::int64_t limit;
  std::int64_t entries = 0;
  int count = 0;
  std::string first = {};
};

std::optional<std::string> plainContent(const std::string& top, std::int64_t limit) {
  PlainLook look{limit};
  look.add(top, false);
  if (look.count == 0) return std::nullopt;
  const auto first = look.first.substr(top.size() + 1);
  if (look.count == 1) return "1 file that looks like your own, " + first;
  return fmt::format("{} files that look like your own, such as {}", look.count, first);
}

TEST_F(SurveyTests, AnswersAsAWalkForEachQuestionWould) {
  const auto mac = machine_.mac();
  int overLimit = 0;
  for (std::uint32_t seed = 1; seed <= 12; ++seed) {
    const auto top = machine_.folder(fmt::format("~/{}", seed));
    RandomTree tree(top, seed);
    machine_.file(fmt::format("~/{}/DRAFTS/deep/a.bin", seed));
    for (const std::size_t width : {1U, 3U}) {
      SCOPED_TRACE(testing::Message() << "seed " << seed << ", width " << width);
      HelperThread::setWidth(width);
      const Survey survey(mac, markers);
      EXPECT_EQ(survey.usage(top), mac.usage(top));
      for (const std::int64_t limit : {5, 120, 100'000}) {
        const auto wanted = plainContent(top, limit);
        overLimit += wanted != plainContent(top, 100'000);
        EXPECT_EQ(survey.personalContent(top, limit), wanted);
        EXPECT_EQ(personalContent(top, markers, limit), wanted);
        for (const Date since : {presentDate() - std::chrono::days(1), presentDate()}) {
          EXPECT_EQ(survey.changedRecently(top, since, limit), changedRecently(top, since, limit));
        }
      }
    }
  }
  EXPECT_GT(overLimit, 0);
}

TEST_F(SurveyTests, WalksATreeOnce) {
  const auto mac = machine_.mac();
  const auto top = machine_.folder("~/top");
  machine_.fileOfSize("~/top/in/a.txt", 8192);
  const Survey survey(mac, markers);
  const auto usage = survey.usageOf({top, top}).at(top);
  fs::remove_all(top + "/in");
  EXPECT_EQ(survey.usage(top), usage);
  EXPECT_EQ(survey.personalContent(top, 10), "1 file that looks like your own, in/a.txt");
}

void setDate(const std::string& path, std::time_t seconds) {
  const timespec times[2] = {{seconds, 0}, {seconds, 0}};
  ASSERT_EQ(::utimensat(AT_FDCWD, path.c_str(), times, AT_SYMLINK_NOFOLLOW), 0);
}

TEST_F(SurveyTests, ATreeHasChangedWithWhateverIsInIt) {
  const auto mac = machine_.mac();
  const auto top = machine_.folder("~/top");
  const auto file = machine_.file("~/top/in/file");
  const auto link = machine_.link("~/top/in/link", "nowhere");
  const auto folder = machine_.path("~/top/in");
  const auto cloud = machine_.file("~/Library/Mobile Documents/file");
  const Date since = *parseIso8601("2026-01-31");
  const auto at = [](Date date) { return std::chrono::system_clock::to_time_t(date); };
  const std::vector<std::string> all = {file,
                                        link,
                                        folder,
                                        top,
                                        cloud,
                                        machine_.path("~/Library/Mobile Documents"),
                                        machine_.path("~/Library")};
  const auto isChanged = [&](const std::string& path, std::int64_t limit = 100) {
    const bool answer = Survey(mac, markers).changedRecently(path, since, limit);
    EXPECT_EQ(changedRecently(path, since, limit), answer) << path;
    return answer;
  };
  for (const auto& path : all) setDate(path, at(since));
  for (const auto& path : {top, file, machine_.path("~/Library")}) EXPECT_FALSE(isChanged(path));
  EXPECT_FALSE(isChanged(top, 3));
  EXPECT_TRUE(isChanged(top, 2));  // too much to look at
  for (const auto& newer : {file, link, folder, top}) {
    setDate(newer, at(since) + 1);
    EXPECT_TRUE(isChanged(top)) << newer;
    setDate(newer, at(since));
  }
  setDate(cloud, at(since) + 1);
  EXPECT_TRUE(isChanged(machine_.path("~/Library")));  // a measurement leaves the cloud out
  setDate(file, at(since) + 1);
  const FenceGuard fence({top});
  EXPECT_FALSE(isChanged(top));
  EXPECT_FALSE(isChanged(file));
}

TEST_F(SurveyTests, LooksForTheUsersOwnFiles) {
  struct Case {
    std::vector<const char*> files;
    std::optional<std::string> note;
  };
  const Case cases[] = {
      {{"drafts", "txt", ".txt", "a.txtx"}, std::nullopt},
      {{"Drafts/x/.hidden"}, "1 file that looks like your own, Drafts/x/.hidden"},
      {{"b/a.TXT", "b.txt", "b/c/0.txt"}, "3 files that look like your own, such as b/a.TXT"},
      {{"a\xFF\n.txt"}, "1 file that looks like your own, a\xFF\n.txt"}};
  for (const auto& [files, note] : cases) {
    const auto top = machine_.folder("~/drafts/" + std::to_string(&note - &cases[0].note));
    for (const auto* file : files)
      machine_.file("~" + top.substr(machine_.path("~").size()) + "/" + file);
    EXPECT_EQ(personalContent(top, markers, 100), note);
    EXPECT_EQ(Survey(machine_.mac(), markers).personalContent(top, 100), note);
    const FenceGuard fence({top});
    EXPECT_EQ(personalContent(top, markers, 100), std::nullopt);
  }
}

}  // namespace
}  // namespace volbrin::test
