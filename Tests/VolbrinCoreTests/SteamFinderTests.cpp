#include "Finders/Steam.hpp"

#include <fmt/format.h>
#include <gmock/gmock.h>

#include <filesystem>

#include "ByteText.hpp"
#include "FinderTest.hpp"

namespace volbrin::test {
namespace {

using ::testing::ElementsAre;
const std::string own = "~/Library/Application Support/Steam", ext = "/Volumes/Ext/Steam",
                  mods = "/steamapps/workshop/content/", common = own + "/steamapps/common/",
                  manifest = own + "/steamapps/workshop/appworkshop_5.acf";

class SteamFinderTest : public FinderTest {
 protected:
  SteamFinderTest() { setDrives(R"(, "running": ["com.valvesoftware.Steam"])"); }

  /// Steam's list of libraries: VDF text.
  void list(const std::string& libraries) const {
    machine_.file(own + "/steamapps/libraryfolders.vdf", "libraryfolders {" + libraries + "}");
  }
  void game(const std::string& library, char id, const std::string& name,
            const std::string& folder = "") const {
    machine_.file(
        library + "/steamapps/appmanifest_" + id + ".acf",
        fmt::format(R"(AppState {{ appid {} name "{}" installdir "{}" }})", id, name, folder));
  }
  /// What is told of the only mods, those of the game 5, with `blockedBy` left out.
  void expectMods(const std::string& story) const {
    EXPECT_EQ(toldFirst(SteamFinder()), "steam-workshop-5|steam|Five workshop mods" + story +
                                            "|blockedBy=Valvesoftware is open. Quit it first.");
  }
};

TEST_F(SteamFinderTest, ModsOfAGameThatIsNotInstalled) {
  const auto bytes = fill(own + mods + "5");
  catalog_.owners = {{{}, "X", {}, {}, "55"}, {{}, "Five", {}, {}, "5"}, {{}, "Y", {}, {}, "5"}};
  list(
      "a { path /Volumes/Gone apps { 55 1 } } b { path /Volumes/Extra apps { 5 1 } } c { path "
      "/Volumes/Ext/Old apps { 5 1 } }");
  const std::string unplugged = " whose drive isn't plugged in, so it wasn't checked.";
  EXPECT_EQ(toldFirst(SteamFinder()), "");
  EXPECT_THAT(
      find(SteamFinder()).notes,
      ElementsAre("Steam has a library at /Volumes/Gone" + unplugged,
                  "Steam has a library at /Volumes/Extra" + unplugged,
                  "Steam still lists a library at /Volumes/Ext/Old, but that folder is gone.",
                  "Five's workshop mods (" + byteText(bytes) +
                      ") are on the Mac, and the game is in the Steam library at /Volumes/Extra, "
                      "which isn't plugged in. Plug it in to compare."));
  list("a { path /Volumes/Ext/Steam apps { 5 1 } } b { path /Volumes/Gone apps { 55 1 } }");
  machine_.folder(ext + "/steamapps");
  machine_.link(manifest, "nowhere");
  EXPECT_EQ(onlyOne(SteamFinder(), catalog_.thresholds.workshop).bytes, bytes);
  expectMods(
      "|Workshop mods for Five, which isn't installed anymore.|Steam downloads them again if you "
      "reinstall the game while still subscribed to them.|reinstallable|" +
      own + mods + "5|trash|owner=Steam");
  std::vector<std::string> expected = {"Five workshop mods: " + own + mods + "5"};
  for (const auto& name : hostileNames) {
    expected.push_back("Steam app " + name + " workshop mods: " +
                       machine_.mac().display(machine_.folder(own + mods + name)));
  }
  EXPECT_THAT(listed(SteamFinder()), ::testing::UnorderedElementsAreArray(expected));
}

TEST_F(SteamFinderTest, LeavesModsThatAGameStillUses) {
  fill(own + mods + "5");
  list("a { path /Volumes/Ext/Steam }");
  machine_.file(ext + "/steamapps/appmanifest_5.acf", "\xFF");  // a game, whatever it is called
  EXPECT_THAT(listed(SteamFinder()), ElementsAre());
  game(ext, '5', "Five");
  machine_.folder(ext + mods);
  machine_.link(ext + mods + "5", machine_.path(own + mods + "5"));  // these are the ones it uses
  EXPECT_THAT(listed(SteamFinder()), ElementsAre());
}

TEST_F(SteamFinderTest, ModsOfAGameThatMovedAway) {
  const auto make = [this](const std::string& library, const char* a, const char* b) {
    machine_.file(library + mods + "5/in/a", a);
    machine_.file(library + mods + "5/b", b);
  };
  make(own, "12", "12");
  list("a { path /Volumes/Ext/Steam } b { path /Volumes/Gone apps { 5 1 } }");
  game(ext, '5', "Five");
  machine_.file(manifest);
  const std::string left = "|Steam left Five's workshop mods here when the game moved to Ext";
  const std::string paths = "|reinstallable|" + own + mods + "5, " + manifest;
  expectMods(left + ".|Moved, not removed: they go next to the game on Ext." + paths +
             "|move|destination=" + ext + mods + "5|owner=Steam");
  const auto expectDifferent = [&](const char* count) {
    expectMods(
        " (two different copies)" + left + "; Ext has its own copy, and " + count +
        " files differ.|Keep whichever copy is newer; the other can go." + paths +
        "|review|owner=Steam|caution=The copies differ: compare dates before removing either.");
  };
  machine_.file(ext + mods + "5/in/a", "123");
  machine_.file(ext + mods + "5/more");
  expectDifferent("2");
  make(ext, "34", "34");
  expectDifferent("0");
  std::filesystem::remove(machine_.path(ext + mods + "5/more"));
  expectMods(
      " (second copy)|Steam keeps a second copy of Five's workshop mods here; the game and an "
      "identical copy are on Ext.|The copy on Ext stays, and it's the one the game uses." +
      paths + "|trash|owner=Steam");
}

TEST_F(SteamFinderTest, LooksForModsOnTheMacAwayFromTheirGame) {
  const std::string games = "~/Games", next = "/Volumes/Ext/Next";
  list("a { path ~/Games } b { path /Volumes/Ext/Steam } c { path /Volumes/Ext/Next }");
  game(own, '1', "Beside");
  game(games, '2', "Two");
  game(ext, '3', "Three");
  for (const auto& library : {games, next}) game(library, '4', "Four");
  for (const auto& folder : {own + mods + "1", own + mods + "2", own + mods + "3", own + mods + "4",
                             ext + mods + "2", next + mods + "4", games + mods + "4"}) {
    machine_.file(folder + "/x");
  }
  machine_.file(own + mods + "6");
  machine_.link(own + mods + "7", "nowhere");
  std::string getBacks;
  for (const auto& each : find(SteamFinder()).findings) getBacks += each.id + each.getBack;
  EXPECT_EQ(getBacks,
            "steam-workshop-2Moved, not removed: they go next to the game on "
            "Disk.steam-workshop-3Moved, not removed: they go next to the game on "
            "Ext.steam-workshop-4The copy on Disk stays, and it's the one the game uses.");
}

TEST_F(SteamFinderTest, AGameMayMoveToTheFirstLibraryOnADrive) {
  list("a { path ~/Games } b { path /Volumes/Two } c { path /Volumes/Ext/Steam }");
  game("~/Games", '3', "Beta", "beta");
  game(own, '1', "Zeta\n", "z");
  game(own, '2', "Alpha", "alpha");
  game(own, '4', "No folder");
  fill(common + "alpha");
  EXPECT_EQ(toldFirst(SteamFinder()), "");
  for (const auto& library : {ext, std::string("/Volumes/Two")})
    game(library, '5', "There", "there");
  EXPECT_THAT(listed(SteamFinder()),
              ElementsAre("Alpha: " + common + "alpha", "Zeta\n: " + common + "z",
                          "Beta: ~/Games/steamapps/common/beta"));
  EXPECT_EQ(
      told(onlyOne(SteamFinder(), catalog_.thresholds.personalFolder)),
      "steam-game-2|steam|Alpha|Alpha is installed on your Mac, and you have a Steam library on "
      "Two.|Moved, not removed: it plays from Two whenever it's plugged in.|reinstallable|" +
          common +
          "alpha|handOff moves|app=Steam|steps=In Steam: Settings → Storage → pick Alpha → Move, "
          "and choose Two.|owner=Steam");
}

}  // namespace
}  // namespace volbrin::test
