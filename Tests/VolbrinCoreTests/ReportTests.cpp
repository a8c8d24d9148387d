#include "Report.hpp"

#include <gmock/gmock.h>

#include <limits>

#include "RecordingPlatform.hpp"

namespace volbrin::test {
namespace {

using ::testing::EndsWith;

constexpr ByteCount gigabyte = 1'000'000'000;
constexpr ByteCount megabyte = 1'000'000;

TEST(ReportTest, WritesByteCountsForPeople) {
  using Limits = std::numeric_limits<ByteCount>;
  std::string texts;
  for (const ByteCount count : std::vector<ByteCount>{
           Limits::min(), 999, 1999, 1'499'999, 1'500'000, 2'499'999, 999'999'999, gigabyte,
           2'260'000'000, 99'940'000'000, 99'960'000'000, 100'499'999'999, Limits::max()}) {
    texts += Report::bytes(count) + ", ";
  }
  EXPECT_EQ(texts,
            "0 KB, 0 KB, 1 KB, 1 MB, 2 MB, 2 MB, 1000 MB, 1 GB, 2.3 GB, 99.9 GB, 100 GB, 100 GB, "
            "9223372037 GB, ");
}

Finding finding(std::string id, Tier tier, ByteCount bytes, Action::Kind kind) {
  Finding result;
  result.title = "Title " + id;
  result.reason = "Reason " + id + ".";
  result.id = std::move(id);
  result.tier = tier;
  result.bytes = bytes;
  result.action.kind = kind;
  return result;
}

class ReportTextTest : public ::testing::Test {
 protected:
  ReportTextTest() {
    // The figure without what the system would purge is never shown.
    report_.drives = {{"Disk", "/", true, 1000 * gigabyte, 120 * gigabyte, 1},
                      {"Ext", "/Volumes/Ext", false, 500 * gigabyte, 20'500 * megabyte, 1}};
  }

  ScanReport report_;
  Mac mac_{"", "/Users/me", std::make_shared<RecordingPlatform>()};
};

TEST_F(ReportTextTest, AnEmptyReportSaysThatNothingWasFound) {
  report_.skipped = {{"/a", "partly unreadable"}, {"/b", "partly unreadable"}};
  EXPECT_EQ(Report::text(report_, mac_, Goal::ofBytes(120'002 * megabyte)),
            R"(Disk: 120 GB free of 1000 GB (goal 120 GB: 2 MB short)
Ext: 20.5 GB free of 500 GB

Nothing worth freeing found.

2 places couldn't be fully read (Full Disk Access would show more).
)");
}

TEST_F(ReportTextTest, AWholeReport) {
  using Kind = Action::Kind;
  report_.trashBytes = 3 * gigabyte;
  auto careful = finding("b", Tier::rebuilds, 2'340'000'000, Kind::remove);
  careful.caution = "It takes an hour.";
  careful.blockedBy = "Tool is open. Quit it first.";
  careful.action.steps = "Not shown.";
  auto handOff = finding("d", Tier::personal, 9000 * gigabyte, Kind::handOff);
  handOff.action.steps = "Open it.";
  report_.findings = {handOff, careful,
                      finding("e", Tier::personal, 123'456 * gigabyte, Kind::handOff)};
  report_.notes = {"A note."};
  report_.skipped = {{"/Users/me/x", "partly unreadable (Full Disk Access would show all of it)"},
                     {"/Users/me/l", "reached through a link; acting on it could reach elsewhere"},
                     {"/opt/l", "reached through a link"},
                     {"/Users/me", "never looked into: iCloud Drive syncs it"},
                     {"/Users/me/y", "Partly unreadable"}};
  EXPECT_EQ(Report::text(report_, mac_, Goal::ofShare(0.1)),
            R"(Disk: 120 GB free of 1000 GB (goal 10% of the drive: met)
Ext: 20.5 GB free of 500 GB
Trash: 3 GB, freed when you empty it

Rebuilds itself (2.3 GB)
  2.3 GB   Title b  [b]
           Reason b.
           ⚠︎ It takes an hour.
           ⏸ Tool is open. Quit it first.

Your files (132456 GB)
  9000 GB  Title d  [d]
           Reason d.
           → Open it.
  123456 G Title e  [e]
           Reason e.

• A note.

1 place couldn't be fully read (Full Disk Access would show more).

Left alone because they're reached through a link: ~/l, /opt/l.

Not looked into, because a cloud drive syncs them: ~.
)");
}

TEST_F(ReportTextTest, APlanTellsTheRoutesAndTheFewestSteps) {
  report_.findings = {finding("a", Tier::rebuilds, 4 * gigabyte, Action::Kind::remove),
                      finding("b", Tier::personal, 500 * megabyte, Action::Kind::move)};
  Plan plan{report_.drives[0], "13% of the drive", 130 * gigabyte, 120 * gigabyte, 0, {}, {}, {}};
  plan.routes = {{"safe", "Only what rebuilds itself", {"a"}, 4 * gigabyte, 124 * gigabyte, false}};
  EXPECT_EQ(Report::text(plan, report_), R"(Disk: 120 GB free, goal 13% of the drive (130 GB)

· Only what rebuilds itself: +4 GB → 124 GB free

No route reaches the goal; the rest is your own files to decide about.
)");
  plan.routes.push_back({"x", "More", {"a", "b"}, 9 * gigabyte, 130 * gigabyte, true});
  EXPECT_THAT(Report::text(plan, report_), EndsWith(R"(
✓ More: +9 GB → 130 GB free

The goal needs your own files moved or other apps' help: see the routes marked ✓.
)"));
  plan.trashBytes = 1;
  plan.fewest = Route{"fewest", "Fewest steps to the goal", {"b", "gone", "a"}, 0, 0, true};
  plan.routes.clear();
  EXPECT_EQ(Report::text(plan, report_), R"(Disk: 120 GB free, goal 13% of the drive (130 GB)
Every route includes emptying the Trash (0 KB).


Fewest steps to 130 GB:
  empty the Trash (0 KB)
  Title b (500 MB)  [b]
  Title a (4 GB)  [a]
)");
}

}  // namespace
}  // namespace volbrin::test
