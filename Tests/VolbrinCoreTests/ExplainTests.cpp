#include "Explain.hpp"

#include <fmt/format.h>
#include <gmock/gmock.h>

#include "Machine.hpp"

namespace volbrin::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class ExplainTests : public testing::Test {
 protected:
  ExplainTests() {
    machine_.setFixture(R"({"drives":[{"name":"Disk","path":"/","total":9,"free":1},
        {"name":"Outer","path":"/Volumes/Ext","total":9,"free":1},
        {"name":"Inner","path":"/Volumes/Ext/in","total":9,"free":1}],
        "cloud":["~/Team"]})");
    machine_.app("/Applications/Photo Lab.app", "com.maker.photolab");
    catalog_.systemNames = {"com.apple.bird"};
    catalog_.protectedPaths = {{"~/kept/mail", "your mail"}};
    catalog_.places = {placeAt("broad", {"~/none", "~/place*"}), placeAt("late", {"~/place"})};
  }

  Explanation explain(std::string_view written) const {
    return Explainer::explain(machine_.path(written), machine_.mac(), catalog_);
  }

  Machine machine_;
  Catalog catalog_;
};

TEST_F(ExplainTests, KnowsDrivesPlacesAndOwners) {
  for (const char* folder : {"~/place/in", "~/placement", "~/Library/Containers",
                             "~/Library/Group Containers/group.com.maker.gone"}) {
    machine_.folder(folder);
  }
  using Text = std::optional<std::string>;
  struct Case {
    const char* path;
    Text drive, knownAs, owner;
  };
  const Text broad = "Title of broad [broad]";
  for (const auto& [path, drive, knownAs, owner] :
       {Case{"~/place", "Disk", broad, {}}, Case{"~/place/in/none", "Disk", broad, {}},
        Case{"~/placement", "Disk", broad, {}}, Case{"~/none", "Disk", {}, {}},
        Case{"/Volumes/Ext/in/x", "Inner", {}, {}}, Case{"/Volumes/Ext", "Outer", {}, {}},
        Case{"~/Library/Containers/com.maker.photolab/Data", "Disk", {}, "installed: Photo Lab"},
        Case{"~/Library/Containers", "Disk", {}, {}}, Case{"~/Library/Caches/", "Disk", {}, {}},
        Case{"~/Library/Caches/com.apple.bird", "Disk", {}, "macOS"},
        Case{"~/Library/Group Containers/group.com.maker.gone", "Disk", {}, "uninstalled: Gone"},
        Case{"~/Library/Application Support/Nobody", "Disk", {}, "unknown"}}) {
    const auto found = explain(path);
    EXPECT_EQ(found.drive, drive) << path;
    EXPECT_EQ(found.knownAs, knownAs) << path;
    EXPECT_EQ(found.owner, owner) << path;
    EXPECT_FALSE(found.throughLink) << path;
  }
  EXPECT_EQ(explain("~/none").unreadable, 1);
}

TEST_F(ExplainTests, TellsWhatIsProtected) {
  machine_.file("~/kept/mail/x");
  EXPECT_EQ(explain("~/kept").neverTouch, std::nullopt);
  EXPECT_THAT(explain("~/kept").holdsNeverTouch, testing::Contains("your mail"));
  for (const char* path : {"~/kept/mail", "~/kept/mail/x"}) {
    EXPECT_EQ(explain(path).neverTouch, "your mail");
    EXPECT_THAT(explain(path).holdsNeverTouch, IsEmpty());
  }
}

TEST_F(ExplainTests, ListsTheBiggestAndWhatItKeptOutOf) {
  for (int i = 0; i < 13; ++i) {
    machine_.fileOfSize(fmt::format("~/{:02}", i), i == 5 ? 40'960 : i == 12 ? 4'096 : 8'192);
  }
  machine_.fileOfSize("~/Team/in", 80'000);
  machine_.folder("~/Library/Mobile Documents");
  machine_.link("~/link", "05");
  const auto home = explain("~");
  std::vector<std::string> names;
  for (const auto& child : home.biggest) names.push_back(child.name);
  EXPECT_THAT(names,
              ElementsAre("05", "00", "01", "02", "03", "04", "06", "07", "08", "09", "10", "11"));
  EXPECT_EQ(home.biggest.front().bytes, machine_.mac().usage(machine_.path("~/05")).bytes);
  EXPECT_EQ(home.bytes, machine_.mac().usage(machine_.path("~")).bytes);
  EXPECT_THAT(home.notLookedInto, ElementsAre("~/Library/Mobile Documents", "~/Team"));
  EXPECT_THAT(explain("~/05").biggest, IsEmpty());
  EXPECT_TRUE(explain("~/link").throughLink);

  const auto cloud = explain("~/Team/in");
  EXPECT_EQ(jsonText(toJson(cloud)),
            fmt::format(R"({{"path":"{}","bytes":0,"unreadable":0,"drive":"Disk",)"
                        R"("holdsNeverTouch":[],"throughLink":false,"biggest":[],)"
                        R"("notLookedInto":["~/Team/in"]}})",
                        machine_.path("~/Team/in")));
}

}  // namespace
}  // namespace volbrin::test
