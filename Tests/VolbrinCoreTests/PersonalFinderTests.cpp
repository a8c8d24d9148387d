#include "Finders/Personal.hpp"

#include <fmt/format.h>
#include <gmock/gmock.h>

#include <filesystem>
#include <regex>

#include "Files.hpp"
#include "FinderTest.hpp"
#include "PrivacyFence.hpp"

namespace volbrin::test {
namespace {

namespace fs = std::filesystem;
using ::testing::ElementsAre;

class PersonalFinderTest : public FinderTest {
 protected:
  PersonalFinderTest() { options_.now = presentDate() + std::chrono::days(60); }

  /// As if nothing but the drive "Home" were there.
  void setHome(const std::string& path) const {
    machine_.setFixture(R"({"drives": [{"name": "Home", "total": 9, "free": 1, "path": ")" + path +
                        "\"}]}");
  }
  Finding first() const { return find(PersonalFinder()).findings.at(0); }
  bool isOffered() const { return first().action.kind == Action::Kind::move; }
  /// Where the first finding has its copy; empty for nowhere.
  std::string copy() const { return machine_.mac().display(first().duplicateOf.value_or("")); }
};

TEST_F(PersonalFinderTest, TellsTheStoryThatIsTrueOfEachItem) {
  const auto expect = [this](const std::string& story) {
    EXPECT_EQ(toldFirst(PersonalFinder()),
              "personal-movies-itlib|personal|It.lib (Movies)|Your It.lib " + story);
  };
  const std::string used = "|Still in use, so it isn't offered for moving.",
                    path = "|personal|~/Movies/It.lib|";
  const std::string only =
      " Two holds the only copy; worth a second one somewhere if it can't be replaced.";
  fill("~/Movies/It.lib");
  expect("folder.|Nothing is removed; there's no drive with room to move it to right now." + path +
         "review");
  setDrives("", 1, 1'000'000);
  expect("folder.|Moved, not removed: it stays on Two, there whenever the drive is plugged in." +
         path + "move|caution=After the move," + only);
  setDate(machine_.path("~/Movies/It.lib/data"), options_.now - std::chrono::days(29));
  expect("folder; you've changed things in it this month." + used + path + "review");
  fill("/Volumes/Two/a/It.lib");
  expect("folder; an identical copy is on Two (/Volumes/Two/a/It.lib).|The copy on Two stays." +
         path + "review|caution=After this," + only + "|duplicateOf=/Volumes/Two/a/It.lib");
  catalog_.appLibraries = {{"~/Music/It.lib", "No", "no"},
                           {".LIB", "No", "no"},
                           {"Movies/It.lib", "No", "no"},
                           {".lib", "Cut", "Do this."},
                           {"~/Movies/It.lib", "No", "no"}};
  const std::string library = " belongs to Cut; moved by hand, Cut would lose track of it";
  expect("folder" + library + ", and you've changed things in it this month." + used + path +
         "review|owner=Cut");
  fs::remove_all(machine_.path("~/Movies/It.lib"));
  setDate(machine_.fileOfSize("~/Movies/It.lib", 65536), options_.now - std::chrono::days(30));
  catalog_.appLibraries[3].match = "~/Movies/It.lib";
  expect("file" + library + ".|Moved from inside Cut, it keeps working." + path +
         "handOff moves|app=Cut|steps=Do this.|owner=Cut");
}

TEST_F(PersonalFinderTest, AMoveNeedsMoreThanATenthOfRoomBesides) {
  machine_.fileOfSize("~/Desktop/film", 65536);
  const ByteCount size = onlyOne(PersonalFinder(), catalog_.thresholds.personalFolder).bytes;
  const ByteCount room = size + size / 10;
  setDrives("", room, room);
  EXPECT_FALSE(isOffered());
  setDrives("", room, room + 1);
  EXPECT_THAT(first().getBack, ::testing::HasSubstr("stays on Two,"));
  setDrives("", room + 1, 2 * room);
  EXPECT_THAT(first().getBack, ::testing::HasSubstr("stays on Ext,"));
}

TEST_F(PersonalFinderTest, WhatChangedInThirtyDaysOrHoldsTooMuchIsInUse) {
  setDrives("", 1'000'000'000, 0);
  const auto file = machine_.file("~/Music/Set/in/file");
  const Date since = std::chrono::floor<std::chrono::days>(presentDate()) + std::chrono::days(2);
  options_.now = since + std::chrono::days(30);
  setDate(file, since + std::chrono::seconds(1));
  EXPECT_FALSE(isOffered());
  setDate(file, since);
  addFiles("~/Music/Set/in", 99'998);
  EXPECT_TRUE(isOffered());
  machine_.file("~/Music/Set/in/one more");
  EXPECT_FALSE(isOffered());
}

TEST_F(PersonalFinderTest, FindsACopyByNameDownToTheThirdLevel) {
  setDrives("", 1'000'000'000, 0);
  for (const auto& name : {std::string("It"), hostileNames.front(), hostileNames.back()}) {
    const auto onDrive = [&](std::string_view place) {
      return "/Volumes/Ext/" + std::regex_replace(std::string(place), std::regex("It"), name);
    };
    const auto make = [&](const std::string& folder, char sign) {
      machine_.file(folder + "/data", sign == '~' ? "1234" : sign == '=' ? "54321" : "12345");
      if (sign != '-') machine_.file(folder + "/sub/b", "bb");
      if (sign == '+') machine_.file(folder + "/sub/more");
    };
    make("~/Movies/" + name, ' ');
    // Folders on the drive, a sign behind what sets one apart; then the copy.
    for (const char* each : {"It:It", "It=:It", "It+:", "It-:", "It~:", "a/b/It:a/b/It",
                             "a/b/c/It:", "Foo.app/It,.hidden/It,it:", "It+,It/It:It/It",
                             "a/b/It,z/It,y/It:y/It", "a/It-,b/It:b/It"}) {
      const auto parts = split(each, ':', EmptyPieces::keep);
      for (const auto folder : split(parts[0], ',')) {
        make(onDrive(folder.substr(0, folder.find_first_of("=+-~"))), folder.back());
      }
      EXPECT_EQ(copy(), parts[1].empty() ? "" : onDrive(parts[1])) << each;
      fs::remove_all(machine_.path("/Volumes/Ext"));
    }
    fs::remove_all(machine_.path("~/Movies"));
  }
}

TEST_F(PersonalFinderTest, NothingIsItsOwnCopyByWhateverWay) {
  const auto film = machine_.file("~/Movies/film.mov", "12345");
  machine_.file("~/Movies/set/x");
  setDrives("", 1'000'000'000, 0);
  machine_.link("/Volumes/Ext/a/film.mov", film);
  machine_.link("/Volumes/Ext/c/film.mov", "54321");  // a link as long as the film
  machine_.link("/Volumes/Ext/a/set", machine_.path("~/Movies/set"));
  machine_.link("/Volumes/Ext/Movies", machine_.path("~/Movies"));
  machine_.file("/Volumes/Ext/b/film.mov", "123456");
  machine_.file("/Volumes/Ext/film.mov/in", "12345");
  machine_.fileOfSize("/Volumes/Ext/set",
                      static_cast<std::size_t>(*sizeOf(machine_.path("~/Movies/set"))));
  const auto expectNone = [this] {
    for (const auto& finding : find(PersonalFinder()).findings)
      EXPECT_EQ(finding.duplicateOf, std::nullopt);
  };
  expectNone();
  fs::create_directory(machine_.path("~/Backup"));
  fs::create_hard_link(film, machine_.path("~/Backup/film.mov"));
  for (const char* drive : {"/Users", "/Users/me/Movies", "/Users/me"}) {
    setHome(drive);
    expectNone();
  }
  machine_.file("~/Backup/old/film.mov", "54321");
  EXPECT_EQ(copy(), "~/Backup/old/film.mov");
  setDrives("", 0, 0);
  machine_.file("/Volumes/Two/film.mov", "54321");
  EXPECT_EQ(copy(), "/Volumes/Two/film.mov");
  machine_.file("/Volumes/Ext/a/b/film.mov", "54321");
  EXPECT_EQ(copy(), "/Volumes/Ext/a/b/film.mov");
}

TEST_F(PersonalFinderTest, NeitherCopiesNorMovesLieWhereTheItemIs) {
  machine_.file("~/Desktop/trip", "12345");
  machine_.file("~/Documents/trip", "54321");
  machine_.setFixture(R"({"drives": [
      {"name": "Home", "total": 1000000000, "free": 900000000, "path": "/Users"},
      {"name": "In", "total": 9, "free": 1, "path": "/Users/me/Movies/in/drive"}],
      "cloud": ["/Users/cloud"]})");
  machine_.file("/Users/cloud/trip", "12345");
  machine_.file("~/Movies/in/drive/x");
  const auto found = find(PersonalFinder()).findings;
  ASSERT_EQ(found.size(), 2U);  // and not what holds a drive
  for (const auto& finding : found) {
    EXPECT_EQ(finding.duplicateOf, std::nullopt);  // not the other, which is offered as well
    EXPECT_EQ(finding.action, actions::review);    // it is on the only drive with room
  }
}

TEST_F(PersonalFinderTest, LooksAtWhatStandsInTheUsersOwnFolders) {
  std::vector<std::string> expected;
  for (const std::string path :
       {"~/Desktop/x", "~/Documents/d", "~/Movies/a", "~/Movies/z", "~/Music/m", "~/Pictures/s"}) {
    machine_.file(path);
    expected.push_back(
        fmt::format("{} ({}): {}", path.back(), path.substr(2, path.size() - 4), path));
  }
  for (const auto& name : hostileNames) {
    machine_.file("~/Downloads/" + name + "/in/file");
    expected.push_back(name + " (Downloads): ~/Downloads/" + name);
  }
  for (const char* file : {"~/Movies/.x", "~/Music/Claimed", "~/Music/Above/in", "~/Public/p"})
    machine_.file(file);
  machine_.link("~/Desktop/link", machine_.path("~/Public"));
  machine_.link("~/Movies/dangling", "nowhere");
  catalog_.places = {placeAt("p", {"~/Music/Claimed", "~/Music/Above/in"})};
  EXPECT_EQ(listed(PersonalFinder()), expected);

  setDrives(R"(, "cloud": ["~/Desktop", "~/Documents", "~/Movies/a/b", "~/Musi"])");
  fs::remove_all(machine_.path("~/Desktop"));
  expected.erase(expected.begin(), expected.begin() + 2);
  EXPECT_EQ(listed(PersonalFinder()), expected);
  EXPECT_THAT(
      find(PersonalFinder()).skipped,
      ElementsAre(Skipped{machine_.path("~/Documents"), "never looked into: iCloud Drive"}));
  const FenceGuard fence({machine_.path("~/Downloads"), machine_.path("~/Documents")});
  expected.resize(4);
  EXPECT_EQ(listed(PersonalFinder()), expected);
}

}  // namespace
}  // namespace volbrin::test
