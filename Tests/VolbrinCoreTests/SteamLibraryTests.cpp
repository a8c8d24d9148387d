#include "SteamLibrary.hpp"

#include <fmt/format.h>
#include <gmock/gmock.h>

#include "Machine.hpp"

namespace volbrin::test {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

const std::string steam = "~/Library/Application Support/Steam";

/// "path id=name/folder ... {listed ids}" of each library, "-" for the games of an absent one.
std::vector<std::string> described(const Machine& machine) {
  const auto mac = machine.mac();
  std::vector<std::string> lines;
  for (const auto& library : SteamLibrary::load(mac)) {
    std::string games;
    for (const auto& [id, game] : library.games) {
      games += fmt::format("{}={}/{} ", id, game.name, game.installDir);
    }
    lines.push_back(fmt::format("{} {}{{{}}}", mac.display(library.path),
                                library.mounted ? games : "- ",
                                fmt::join(library.listedAppIDs, ", ")));
  }
  return lines;
}

TEST(SteamLibraryTest, WithoutAReadableListTheSteamFolderIsTheOnlyLibrary) {
  const Machine machine;
  machine.folder("/Volumes/Ext/Games/steamapps");
  EXPECT_THAT(described(machine), IsEmpty());
  machine.folder(steam + "/steamapps");
  EXPECT_THAT(described(machine), ElementsAre(steam + " {}"));
  for (const char* list : {"\xff", "libraryfolders text", "other { 0 { path /x } }"}) {
    machine.file(steam + "/steamapps/libraryfolders.vdf", list);
    EXPECT_THAT(described(machine), ElementsAre(steam + " {}")) << list;
  }
}

TEST(SteamLibraryTest, MergesTheListedLibrariesByPath) {
  const Machine machine;
  machine.folder(steam + "/steamapps");
  machine.folder("/Volumes/Ext/Games/steamapps");
  machine.file(steam + "/steamapps/libraryfolders.vdf", R"("LibraryFolders" {
    "2" { "path" "/Volumes/Ext/Games/" "apps" { "20" "1" } }
    "10" { "path" "/Volumes/Gone//Games" "apps" "none" }
    "0" { "Path" "~/Library/Application Support/./Steam" "Apps" { "10" "99" "11" "5" } }
    "3" { "path" "/Volumes/Ext/Other/../Games" "apps" { "30" "1" } }
  })");
  EXPECT_THAT(described(machine), ElementsAre(steam + " {10, 11}", "/Volumes/Gone/Games - {}",
                                              "/Volumes/Ext/Games {20, 30}"));
}

TEST(SteamLibraryTest, ReadsTheManifestsOnDisk) {
  const Machine machine;
  const std::pair<const char*, const char*> files[] = {
      {"appmanifest_4.acf", R"("AppState" { "appid" "4" "Name" "Great" "installdir" "GG" })"},
      {"appmanifest_2.acf", "AppState { appid 2 name { } installdir { } }"},
      {"appmanifest_5.acf", "AppState { appid 7 name Early }"},
      {"appmanifest_6.acf", "AppState { appid 7 name Late }"},
      {"appmanifest_b.acf", "AppState { appid { } }"},
      {"xappmanifest_f.acf", "AppState { appid f }"}};
  for (const auto& [file, text] : files) {
    machine.file(fmt::format("{}/steamapps/{}", steam, file), text);
  }
  EXPECT_THAT(described(machine), ElementsAre(steam + " 2=Steam app 2/ 4=Great/GG 7=Late/ {}"));
}

}  // namespace
}  // namespace volbrin::test
