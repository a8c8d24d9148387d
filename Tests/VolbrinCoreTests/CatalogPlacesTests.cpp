#include <gmock/gmock.h>

#include <map>
#include <set>

#include "Machine.hpp"
#include "OwnerResolver.hpp"
#include "PatternOverlap.hpp"
#include "RecordingPlatform.hpp"
#include "Scanner.hpp"
#include "Text.hpp"

/// Holds each record of the shipped rules against what it must know and what only looks like it.
namespace volbrin::test {
namespace {

using ::testing::UnorderedElementsAreArray;
using Verdict = OwnerResolver::Verdict;
using Form = Verdict::Form;
using Kind = OwnerResolver::Kind;

/// A name that a component of a pattern stands for.
std::string exampleOf(std::string component) {
  if (const auto set = component.find("[!"); set != std::string::npos) {
    component.replace(set, component.find(']') - set + 1, "7");
  }
  for (auto star = component.find('*'); star != std::string::npos; star = component.find('*')) {
    component.replace(star, 1, "24");
  }
  return component;
}

/// One that it doesn't stand for, and that looks much like one.
std::string lookAlikeOf(const std::string& component) {
  if (component == "*") return ".24";
  const auto example = exampleOf(component);
  return component.ends_with('*') ? "not" + example : example + "-old";
}

/// The path of the pattern's examples, with a look-alike in place of one of them if asked for.
std::string written(const std::string& pattern, std::optional<std::size_t> lookAlike = {}) {
  auto components = patternComponents(pattern);
  for (std::size_t i = 0; i < components.size(); ++i) {
    components[i] = i == lookAlike ? lookAlikeOf(components[i]) : exampleOf(components[i]);
  }
  return (pattern.starts_with('~') ? "" : "/") + joined(components, "/");
}

std::map<std::string, Finding> placesFound(const Machine& machine, const Catalog& catalog) {
  std::map<std::string, Finding> found;
  const auto report = Scanner::scan(machine.mac(), catalog, {0, {}, {}, false, nullptr});
  for (const auto& finding : report.findings) {
    if (finding.finder == "places") found.emplace(finding.id, finding);
  }
  return found;
}

TEST(ShippedPlacesTest, EachIsOfferedWhereItIs) {
  const auto catalog = Catalog::load();
  const Machine machine;
  Json running = Json::array(), tools = Json::array();
  for (const auto& place : catalog.places) {
    for (const auto& pattern : place.paths) {
      machine.file(written(pattern) + "/" + exampleOf(place.marker.value_or("data")));
    }
    for (const auto& id : place.ownerBundleIDs.value_or(std::vector<std::string>())) {
      running.push_back(id);
    }
    if (place.app) running.push_back(*place.app);
    if (place.tool) tools.push_back(*place.tool);
  }
  auto bare = placesFound(machine, catalog);
  const Json drive = {{"name", "Disk"}, {"path", "/"}, {"total", 1}, {"free", 1}};
  machine.setFixture(jsonText({{"drives", {drive}}, {"running", running}, {"tools", tools}}));
  auto busy = placesFound(machine, catalog);
  for (const auto& place : catalog.places) {
    SCOPED_TRACE(place.id);
    std::vector<std::string> paths;
    for (const auto& pattern : place.paths) paths.push_back(machine.path(written(pattern)));
    EXPECT_THAT(bare[place.id].paths, UnorderedElementsAreArray(paths));
    EXPECT_EQ(bare[place.id].action.kind, place.actionIfToolMissing.value_or(place.action).kind);
    EXPECT_EQ(busy[place.id].action.kind, place.action.kind);
    EXPECT_FALSE(bare[place.id].blockedBy);
    EXPECT_EQ(busy[place.id].blockedBy.has_value(), place.ownerBundleIDs || place.app);
  }
}

TEST(ShippedPlacesTest, WhatOnlyLooksLikeOneIsNot) {
  const auto catalog = Catalog::load();
  const Machine machine;
  for (const auto& place : catalog.places) {
    const auto inside = "/" + exampleOf(place.marker.value_or("data"));
    for (const auto& pattern : place.paths) {
      for (std::size_t i = 0; i < patternComponents(pattern).size(); ++i) {
        if (i > 0 || !pattern.starts_with('~')) machine.file(written(pattern, i) + inside);
      }
      if (place.marker) machine.file(written(pattern) + "/other");
    }
  }
  for (const auto& [id, finding] : placesFound(machine, catalog)) {
    ADD_FAILURE() << id << " takes " << jsonText(toJson(finding.paths));
  }
}

TEST(ShippedOwnersTest, TheFoldersOfEachAreItsOwnWithTheAppAndWithout) {
  const auto catalog = Catalog::load();
  const Mac mac("", "/nowhere", std::make_shared<RecordingPlatform>());
  for (const auto& owner : catalog.owners) {
    SCOPED_TRACE(owner.app);
    const auto ids = owner.bundleIDs.value_or(std::vector<std::string>());
    InstalledApp app;
    app.name = ids.empty() && !owner.bundlePrefix ? owner.names.front() : "My Favourite";
    if (owner.bundlePrefix) app.bundleID = *owner.bundlePrefix + "24";
    if (!ids.empty()) app.bundleID = ids.front();
    const AppIndex with({app}, {}), without;
    const std::vector<SteamGame> games = {{owner.steamAppID.value_or("0"), "Game", "game"}};
    const OwnerResolver isHere(owner.steamAppID ? without : with, catalog, games, mac);
    const OwnerResolver isGone(without, catalog, {}, mac);
    auto names = owner.names;
    names.insert(names.end(), ids.begin(), ids.end());
    for (const auto& name : names) {
      for (const Kind kind : {Kind::container, Kind::groupContainer, Kind::supportFolder}) {
        EXPECT_EQ(isHere.resolve(name, kind), (Verdict{Form::installed, owner.app})) << name;
        EXPECT_EQ(isGone.resolve(name, kind), (Verdict{Form::removed, owner.app})) << name;
        EXPECT_NE(isGone.resolve("24" + name, kind).name, owner.app) << name;
      }
    }
  }
}

}  // namespace
}  // namespace volbrin::test
