#include "Finders/Leftovers.hpp"

#include <gmock/gmock.h>
#include <filesystem>

#include "FinderTest.hpp"
#include "PrivacyFence.hpp"

namespace volbrin::test {
namespace {

namespace fs = std::filesystem;
using ::testing::IsEmpty;
using LeftoversFinderTest = FinderTest;
const std::string containers = "~/Library/Containers/", groups = "~/Library/Group Containers/",
                  support = "~/Library/Application Support/";

TEST_F(LeftoversFinderTest, TellsWhatIsSurelyGoneFromWhatNobodyKnows) {
  const auto size = fill(support + "Mystery");
  EXPECT_EQ(
      told(onlyOne(LeftoversFinder(), catalog_.thresholds.unknownLeftover)),
      "unknown-libraryapplicationsupportmystery|leftovers|Mystery (owner unknown)|This folder "
      "doesn't match any installed app; it may be left over from something you removed.|Look "
      "inside before deciding; if it goes, it goes to the Trash first.|reinstallable|" +
          support + "Mystery|review|unsure");
  fill(support + "Mystery 2");
  catalog_.thresholds.unknownLeftover = size + 1;
  EXPECT_THAT(listed(LeftoversFinder()), IsEmpty());
  for (const char* name : {"Mystery", "Mystery 2"}) fs::remove_all(machine_.path(support + name));

  catalog_.owners = {{{"Gone Data", "group.com.gone.app"}, "Gone App", {{"com.gone.app"}}, {}, {}}};
  catalog_.personalMarkers = {{"projects"}, {"song"}};
  fill(support + "gone-data/Projects");
  fill(containers + "com.gone.app");
  machine_.file(groups + "group.com.gone.app/b.SONG");
  const auto gone = onlyOne(LeftoversFinder(), catalog_.thresholds.leftover);
  EXPECT_EQ(told(gone),
            "leftover-goneapp|leftovers|Gone App leftovers|Gone App is no longer installed, but "
            "its data stayed behind.|It stays in the Trash until you empty it. Reinstalled, Gone "
            "App would start fresh without it.|reinstallable|" +
                containers + "com.gone.app, " + groups + "group.com.gone.app, " + support +
                "gone-data|trash|owner=Gone App|caution=Inside: 1 file that looks like your own, "
                "b.SONG. Check before removing.");
  ByteCount bytes = 0;
  for (const auto& path : gone.paths) bytes += machine_.mac().usage(path).bytes;
  EXPECT_EQ(gone.bytes, bytes);
}

TEST_F(LeftoversFinderTest, NamesWhatIsGoneAndPutsTogetherWhatHasOneKey) {
  std::vector<std::string> expected = {
      "com.maker.a b leftovers: " + containers + "com.maker.a b",
      "Bar leftovers: " + containers + "com.maker.bar.helper",
      "Foo leftovers: " + containers + "com.maker.foo, " + groups + "GROUP.com.Maker.foo, " +
          support + "com.maker.FOO",
      "Late leftovers: " + groups + "ABCDE12345.Late",
      "Thing leftovers: " + containers + "Net.team.thing, " + groups + "ABCDE12345.net.team.thing"};
  for (const auto& line : expected) {
    for (auto at = line.find('~'); at != std::string::npos; at = line.find('~', at + 1)) {
      machine_.folder(line.substr(at, line.find(", ", at) - at));
    }
  }
  EXPECT_EQ(listed(LeftoversFinder()), expected);
  for (const auto& name : hostileNames) {
    expected.push_back(name +
                       " leftovers: " + machine_.mac().display(machine_.folder(containers + name)));
    expected.push_back(
        name + " (owner unknown): " + machine_.mac().display(machine_.folder(support + name)));
  }
  EXPECT_THAT(listed(LeftoversFinder()), ::testing::UnorderedElementsAreArray(expected));
}

TEST_F(LeftoversFinderTest, PassesOverWhatIsHereOrClaimedOrNoFolder) {
  machine_.app("/Applications/The Tool.app", "com.maker.tool");
  for (const auto& folder : {containers + "com.maker.tool.x", support + "The Tool", support + "Sys",
                             support + "Claimed", support + "Above/in", support + ".hidden"}) {
    fill(folder);
  }
  catalog_.systemNames = {"sys"};
  catalog_.places = {placeAt("p", {support + "Claimed", support + "Above/in"})};
  for (const auto& place : {support, groups, containers}) {
    machine_.file(place + "com.gone.file");
    machine_.link(place + "com.gone.link", machine_.path("/Applications"));
    machine_.link(place + "com.gone.dangling", "nowhere");
  }
  EXPECT_THAT(listed(LeftoversFinder()), IsEmpty());
  machine_.folder(containers + "com.gone.app");
  EXPECT_EQ(listed(LeftoversFinder()).size(), 1);
  const FenceGuard fence({machine_.path("~/Library/Containers")});
  EXPECT_THAT(listed(LeftoversFinder()), IsEmpty());
}

TEST_F(LeftoversFinderTest, LooksAtSoManyEntriesAndNoFurther) {
  catalog_.personalMarkers.extensions = {"song"};
  addFiles(support + "Huge", 49'999);
  machine_.file(support + "Huge/z.song");
  EXPECT_EQ(find(LeftoversFinder()).findings.at(0).caution,
            "Inside: 1 file that looks like your own, z.song. Check before removing.");
  machine_.file(support + "Huge/one more");
  EXPECT_EQ(find(LeftoversFinder()).findings.at(0).caution, std::nullopt);
}

}  // namespace
}  // namespace volbrin::test
