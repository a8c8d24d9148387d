#include "Finders/Places.hpp"

#include <gmock/gmock.h>
#include <unistd.h>

#include <filesystem>

#include "FinderTest.hpp"

namespace volbrin::test {
namespace {

using ::testing::ElementsAre;
using ::testing::Field;
using ::testing::IsEmpty;

class PlacesFinderTest : public FinderTest {
 protected:
  FinderResult find() const { return FinderTest::find(PlacesFinder()); }

  /// The first finding; raises an error when there is none.
  Finding findOne() const { return find().findings.at(0); }

  /// A place that is there, as the catalog's only one.
  Catalog::Place& onlyPlace() {
    machine_.fileOfSize("~/place/data", 65536);
    catalog_.places = {placeAt("place", {"~/place"})};
    return catalog_.places.front();
  }
};

TEST_F(PlacesFinderTest, MakesAFindingOfAPlaceAndOfAllItsPaths) {
  for (const char* file : {"~/b/1/x", "~/b/2/x", "~/b/y", "~/a/x"})
    machine_.fileOfSize(file, 65536);
  auto place = placeAt("many", {"~/missing", "~/b/*", "~/a"});
  place.tier = Tier::reinstallable;
  place.marker = "x*";
  place.caution = "Careful.";
  catalog_.places = {placeAt("absent", {"~/c"}), place};

  auto found = toJson(findOne());
  ByteCount bytes = 0;
  for (const auto& path : findOne().paths) bytes += machine_.mac().usage(path).bytes;
  EXPECT_EQ(found["bytes"], bytes);
  EXPECT_EQ(found["paths"],
            Json({machine_.path("~/b/1"), machine_.path("~/b/2"), machine_.path("~/a")}));
  found.erase("bytes");
  found.erase("paths");
  EXPECT_EQ(jsonText(found),
            R"({"id":"many","finder":"places","title":"Title of many","reason":"Reason of many.",)"
            R"("getBack":"Comes back by itself.","tier":"reinstallable","drive":"",)"
            R"("action":{"kind":"delete"},"caution":"Careful.","unsure":false})");
}

TEST_F(PlacesFinderTest, TheLimitIsTheScansOrThePlacesOrTheCatalogs) {
  auto& place = onlyPlace();
  const ByteCount size = findOne().bytes;
  const auto expectLimit = [&](ByteCount& limit) {
    for (const bool isFound : {true, false}) {
      limit = isFound ? size : size + 1;
      EXPECT_EQ(find().findings.size(), isFound);
    }
  };
  expectLimit(catalog_.thresholds.place);
  expectLimit(place.minBytes.emplace());
  expectLimit(options_.minimumBytes.emplace());
}

TEST_F(PlacesFinderTest, WhatCannotBeReadIsToldOnceAndTheRestOffered) {
  namespace fs = std::filesystem;
  machine_.file("~/open/data");
  const auto closed = machine_.folder("~/closed/a");
  catalog_.places = {placeAt("partly", {"~/open", "~/closed/*"}), placeAt("small", {"~/closed"})};
  catalog_.places[1].minBytes = ByteCount{1} << 40;
  fs::permissions(machine_.root(), fs::perms(0755));
  fs::permissions(closed, fs::perms::none);
  const uid_t self = ::geteuid();
  ASSERT_TRUE(self != 0 || ::seteuid(65534) == 0);  // root reads everything
  const auto result = find();
  ASSERT_EQ(::seteuid(self), 0);
  fs::permissions(closed, fs::perms::owner_all);
  EXPECT_THAT(result.skipped,
              ElementsAre(Skipped{machine_.path("~/open"),
                                  "partly unreadable (Full Disk Access would show all of it)"}));
  EXPECT_THAT(result.findings, ElementsAre(Field(&Finding::id, "partly")));
}

TEST_F(PlacesFinderTest, TheActionDependsOnTheToolAndTheAppThatAreThere) {
  auto& place = onlyPlace();
  place.action.kind = Action::Kind::handOff;
  place.action.app = "Cleaner";
  place.action.steps = "Press the button.";
  place.tool = "brew";
  EXPECT_EQ(findOne().action.steps,
            "Press the button. Cleaner isn't on this Mac yet; it's free from its maker.");
  machine_.app("/Applications/Cleaner.app", "com.maker.cleaner");
  place.actionIfToolMissing = actions::trash;
  EXPECT_EQ(findOne().action, actions::trash);
  machine_.setFixture(R"({"drives": [], "tools": ["brew"]})");
  EXPECT_EQ(findOne().action, place.action);
  place.action.app = "Finder";
  EXPECT_EQ(findOne().action, place.action);
}

TEST_F(PlacesFinderTest, TellsWhetherTheAppIsInstalled) {
  auto& place = onlyPlace();
  place.app = "com.maker.tool";
  place.owner = "Tool";
  place.reasonIfUninstalled = "Nobody uses it.";
  place.onlyIfUninstalled = true;
  EXPECT_EQ(findOne().reason, "Nobody uses it.");
  EXPECT_EQ(findOne().owner, "Tool (uninstalled)");
  machine_.app("/Applications/Tool.app", "com.Maker.tool");
  EXPECT_THAT(find().findings, IsEmpty());
  place.onlyIfUninstalled = false;
  EXPECT_EQ(findOne().reason, "Reason of place.");
  EXPECT_EQ(findOne().owner, "Tool");
}

TEST_F(PlacesFinderTest, AnOpenAppBlocks) {
  auto& place = onlyPlace();
  place.app = "com.maker.tool";
  place.ownerBundleIDs = {{"com.other.one", "com.known.helper", "com.unknown.thing.app"}};
  catalog_.owners = {{{}, "Known", {{"COM.known.helper"}}, {}, {}}};
  machine_.app("/Applications/The Tool.app", "com.maker.tool");
  const std::pair<const char*, std::optional<std::string>> cases[] = {
      {R"(["com.maker", "com.maker.tool.helper"])", std::nullopt},
      {R"(["COM.Maker.Tool"])", "The Tool is open. Quit it first."},
      {R"(["com.unknown.thing.app", "com.KNOWN.helper"])", "Known is open. Quit it first."},
      {R"(["com.unknown.thing.app"])", "Thing is open. Quit it first."}};
  for (const auto& [running, expected] : cases) {
    machine_.setFixture(std::string(R"({"drives": [], "running": )") + running + "}");
    EXPECT_EQ(findOne().blockedBy, expected) << running;
  }
}

}  // namespace
}  // namespace volbrin::test
