#include "Scenario.hpp"

#include <filesystem>

#include "Acting/History.hpp"
#include "ICloud/CloudNames.hpp"
#include "Json.hpp"

namespace volbrin::faults {
namespace {

namespace fs = std::filesystem;
using Words = std::vector<std::string>;

const Words movePlain = {"clean", "personal-movies-trip", "--move-to", "Ext", "--agree", "--yes"};
const Words moveGame = {"clean", "game", "--yes"};
const Words moveSounds = {"clean", "sounds", "--move-to", "Ext", "--link-move", "--yes"};
const Words removeCopy = {"clean", "personal-movies-twice", "--agree", "--yes"};
const Words trashMany = {"clean", "many", "--yes"};
const Words removeCache = {"clean", "cache", "--permanent-caches", "--yes"};

/// The undo of the first id.
Words undoOf(const Words& clean) {
  return {"undo", clean.front() == "icloud" ? clean[2] : clean[1], "--yes"};
}

const std::string cloud = "~/Library/Mobile Documents/com~apple~CloudDocs";
const std::string moved = "/Volumes/Ext/Moved from Mac/Movies/Trip";
const std::string sounds = "/Volumes/Ext/Sound Libraries/Maker";

/// A scenario, and the one of undoing it.
void addBoth(std::vector<Scenario>& list, Scenario scenario, std::vector<std::string> undoPaths) {
  Scenario undo = scenario;
  undo.name = "undo of: " + scenario.name;
  undo.words = undoOf(scenario.words);
  undo.first = {scenario.words};
  undo.then = {undo.words, scenario.words, undo.words};
  undo.checkedPaths = std::move(undoPaths);
  undo.hasCopies = undo.usesDrive = false;
  scenario.then = {undo.words, scenario.words, undo.words};
  list.push_back(std::move(scenario));
  list.push_back(std::move(undo));
}

Catalog::Place place(const std::string& id, Words paths, Action action) {
  auto made = test::placeAt(id, std::move(paths));
  made.action = std::move(action);
  return made;
}

Catalog rules(const test::Machine& machine) {
  auto catalog = test::catalogOfPlaces();
  catalog.thresholds.personalFolder = 0;
  Action move, link;
  move.kind = Action::Kind::move;
  move.destination = machine.path("/Volumes/Ext/Steam/steamapps/common/Game");
  link.kind = Action::Kind::handOff;
  link.linkable = true;
  catalog.places = {place("game",
                          {"~/Steam/steamapps/common/Game", "~/Steam/steamapps/app_1.acf",
                           "~/Steam/steamapps/more"},
                          move),
                    place("sounds", {"/Library/Sounds/One", "/Library/Sounds/Two"}, link),
                    place("many", {"~/Piles/*"}, actions::trash),
                    place("cache", {"~/Library/Caches/tool"}, actions::remove)};
  catalog.places[1].owner = "Maker";
  return catalog;
}

}  // namespace

const std::vector<Scenario>& scenarios() {
  static const auto all = [] {
    std::vector<Scenario> list;
    const std::string ext = "/Volumes/Ext";
    addBoth(list,
            {.name = "move",
             .words = movePlain,
             .checkedPaths = {"~/Movies", "~/Movies/Trip", "~/Movies/Trip/deep", ext,
                              ext + "/Moved from Mac", ext + "/Moved from Mac/Movies", moved,
                              moved + "/deep", "~/.Trash"},
             .hasCopies = true,
             .usesDrive = true},
            {"~/.Trash", "~/.Trash/Trip", "~/Movies"});
    addBoth(list,
            {.name = "move with a record",
             .words = moveGame,
             .checkedPaths = {"~/Steam/steamapps", "~/Steam/steamapps/common/Game",
                              ext + "/Steam/steamapps", ext + "/Steam/steamapps/common/Game",
                              ext + "/Steam/steamapps/app_1.acf", "~/.Trash"},
             .hasCopies = true,
             .usesDrive = true},
            {"~/.Trash", "~/.Trash/Game", "~/Steam/steamapps/common", "~/Steam/steamapps"});
    addBoth(list,
            {.name = "link move",
             .words = moveSounds,
             .checkedPaths = {"/Library/Sounds", "/Library/Sounds/One", "/Library/Sounds/Two", ext,
                              ext + "/Sound Libraries", sounds, sounds + "/Two", "~/.Trash"},
             .hasCopies = true,
             .usesDrive = true},
            {"~/.Trash", "~/.Trash/One", "/Library/Sounds", "/Library/Sounds/One"});
    addBoth(list,
            {.name = "copy removal",
             .words = removeCopy,
             .checkedPaths = {"~/Movies", "~/Movies/Twice", ext, ext + "/Twice", "~/.Trash"}},
            {"~/.Trash", "~/.Trash/Twice", "~/Movies"});
    addBoth(list,
            {.name = "trash of many paths",
             .words = trashMany,
             .checkedPaths = {"~/Piles", "~/Piles/3", "~/.Trash"}},
            {"~/.Trash", "~/.Trash/3", "~/Piles"});
    list.push_back({.name = "removal for good",
                    .words = removeCache,
                    .then = {removeCache, undoOf(removeCache)},
                    .checkedPaths = {"~/Library/Caches", "~/Library/Caches/tool",
                                     "~/Library/Caches/tool/deep"}});
    list.push_back({.name = "undo from another drive",
                    .words = {"undo", "parked", "--yes"},
                    .then = {{"undo", "parked", "--yes"}},
                    .checkedPaths = {ext, ext + "/Parked", ext + "/Parked/Old", "~/Returned"},
                    .hasCopies = true,
                    .isAcrossDrives = true});
    addBoth(
        list,
        {.name = "out of iCloud Drive",
         .words = {"icloud", "clean", "@" + cloud + "/film", "@" + cloud + "/in/copy", "--drive",
                   "Ext", "--min-bytes", "0", "--big-bytes", "0", "--margin-bytes", "0", "--agree",
                   "--yes"},
         .checkedPaths = {cloud, cloud + "/film", cloud + "/in", ext, ext + "/Removed from iCloud",
                          ext + "/Removed from iCloud/iCloud Drive/in"},
         .hasCopies = true,
         .usesDrive = true,
         .isOnlyOnDrive = true},
        {cloud, cloud + "/in", ext + "/Removed from iCloud"});
    const std::string trash = "~/.local/share/Trash";
    addBoth(list,
            {.name = "trash of many paths, Linux",
             .words = trashMany,
             .checkedPaths = {"~/Piles", "~/Piles/3", trash, trash + "/files", trash + "/info"},
             .isReal = true},
            {trash, trash + "/files", trash + "/files/3", "~/Piles"});
    return list;
  }();
  return all;
}

Stage::Stage(const std::function<void(const std::string& drive)>& mount) {
  machine_.setFixture(R"({"drives":[{"name":"Disk","path":"/","total":9000000000,"free":9000000},
      {"name":"Ext","path":"/Volumes/Ext","total":9000000000,"free":1000000000}]})");
  machine_.folder("/Volumes/Ext");
  if (mount) mount(path("/Volumes/Ext"));
  const auto file = [&](const std::string& written, std::size_t bytes = 20) {
    std::string contents;
    while (contents.size() < bytes) contents += written + "\n";
    machine_.file(written, contents);
  };
  file("~/Movies/Trip/one"), file("~/Movies/Trip/deep/down/two", 300'000);
  file("~/Movies/Trip/bad\xFFname\n");
  fs::create_hard_link(path("~/Movies/Trip/one"), path("~/Movies/Trip/deep/one again"));
  machine_.link("~/Movies/Trip/link", "one");
  fs::resize_file(machine_.file("~/Movies/Trip/hollow", "begin"), 400'000);
  file("~/Steam/steamapps/common/Game/data", 50'000), file("~/Steam/steamapps/app_1.acf");
  file("~/Steam/steamapps/more"), machine_.folder("/Volumes/Ext/Steam/steamapps/common");
  file(cloud + "/film", 90'000), file(cloud + "/original", 3'000);
  fs::create_directories(path(cloud + "/in"));
  fs::copy_file(path(cloud + "/original"), path(cloud + "/in/copy"));
  file("/Library/Sounds/One/a"), file("/Library/Sounds/Two/b");
  for (const char* name : {"1", "2", "3", "4", "5", "6"}) file("~/Piles/" + std::string(name));
  file("~/Library/Caches/tool/deep/x"), file("~/Library/Caches/tool/y");
  for (const char* place : {"~/Movies", "/Volumes/Ext"}) {
    machine_.file(place + std::string("/Twice/photo"), "the same photo");
    machine_.file(place + std::string("/Twice/in/film"), "the same film");
  }
  file("/Volumes/Ext/Parked/Old/letter"), file("/Volumes/Ext/Parked/Old/in/more");
  HistoryEntry parked;
  parked.id = parked.title = "parked";
  parked.relocated = {{path("~/Returned/Old"), path("/Volumes/Ext/Parked/Old"), {}, true}};
  History::append(parked, machine_.mac());
  outside_.file("in/own", "nobody may touch this");
  machine_.link("~/Library/Caches/tool/deep/link", outside_.path());
  rules_.file("rules.json", jsonText(toJson(rules(machine_))));
}

Ending Stage::run(const Scenario& scenario, const std::vector<std::string>& words,
                  std::map<std::string, std::string> environment) const {
  auto all = words;
  for (auto& word : all) {
    if (word.starts_with('@')) word = cloudID(path(word.substr(1)));
  }
  environment["HOME"] = path("~");
  if (!scenario.isReal) all.insert(all.end(), {"--machine", root()});
  if (words.front() == "clean") {
    all.insert(all.end(), {"--catalog", rules_.at("rules.json"), "--now", "2100-01-01"});
  }
  return runTool(std::move(all), environment);
}

std::set<std::string> Stage::ownedByNobody() const {
  return {path("~/Library/Caches/tool"), path("~/Library/Application Support/Volbrin"),
          path("~/.local/share/Trash/info"), path("/volbrin-fixture.json")};
}

}  // namespace volbrin::faults
