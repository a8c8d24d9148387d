#include "CatalogCheck.hpp"

#include <gmock/gmock.h>

#include <algorithm>

#include "Machine.hpp"

namespace volbrin::test {
namespace {

using ::testing::AllOf;
using ::testing::Each;
using ::testing::IsEmpty;
using ::testing::Not;

Json soundCatalog() {
  Catalog catalog;
  catalog.protectedPaths = {{"~/Library/Mail", "your mail"}, {"~/.ssh", "your keys"}};
  catalog.protectedSuffixes = {{".photoslibrary", "your photos"}};
  catalog.places = {placeAt("caches", {"~/Library/Caches/*/Data"}),
                    placeAt("logs", {"~/Library/Logs", "/Library/Logs"})};
  catalog.owners = {{{"Photo Lab"}, "Photo Lab", {{"com.maker.lab"}}, "com.maker", {}},
                    {{"Other"}, "Other", {}, {}, {}}};
  catalog.pluginVendors = {"com.vendor"};
  catalog.systemPrefixes = {"com.apple."};
  catalog.personalMarkers = {{".git"}, {"psd"}};
  catalog.appLibraries = {{"~/Music", "Music", "Move it there."}};
  return toJson(catalog);
}

/// Where there are problems, as JSON pointers, in a sound catalog with another value at `pointer`.
std::vector<std::string> problemsWith(const std::string& pointer, const Json& value) {
  auto catalog = soundCatalog();
  catalog[Json::json_pointer(pointer)] = value;
  std::vector<std::string> pointers;
  for (const auto& [path, problem] : problemsIn(fromJson<Catalog>(catalog, "test"))) {
    auto& each = pointers.emplace_back("/" + path);
    std::erase(each, ']');
    std::replace_if(
        each.begin(), each.end(), [](char c) { return c == '.' || c == '['; }, '/');
  }
  return pointers;
}

void expectFault(const std::string& pointer, const Json& value, const char* at = "") {
  EXPECT_THAT(problemsWith(pointer, value), AllOf(Not(IsEmpty()), Each(pointer + at)))
      << pointer << " " << jsonText(value);
}

TEST(CatalogCheckTest, PatternsMustBeAbleToFindWhatMayBeOffered) {
  for (const char* pattern :
       {"~me/Logs", "/Library//Logs", "/Library/../Logs", "/Library/**", "/*", "~/*",
        "~/Library/Mail/V*/x", "~/Library", "~/*/Mail", "~/Library/M*l", "~/.ssh/cache",
        "~/P/x.photoslibrary/cache", "~/Library/Caches", "~/Library/Caches/x*/D*/in"}) {
    expectFault("/places/1/paths/0", pattern);
  }
  for (const char* pattern :
       {"~/Library/Mailbox", "/Library/Mail", "~/*/Logs", "~/s*", "~/Library/Caches/x/Other"}) {
    EXPECT_THAT(problemsWith("/places/1/paths/0", pattern), IsEmpty()) << pattern;
  }
}

TEST(CatalogCheckTest, ActionsMustBePossibleAndSafe) {
  const std::tuple<bool, const char*, const char*> cases[] = {
      {false, "reinstallable", R"({"kind": "delete"})"},
      {false, "personal", R"({"kind": "trash"})"},
      {false, "personal", R"({"kind": "command", "command": ["rm"]})"},
      {false, "rebuilds", R"({"kind": "command", "command": []})"},
      {false, "rebuilds", R"({"kind": "handOff", "app": "App"})"},
      {true, "personal", R"({"kind": "handOff", "app": "App", "steps": "Do it."})"},
      {true, "reinstallable", R"({"kind": "trash"})"}};
  for (const auto& [isSound, tier, action] : cases) {
    auto place = soundCatalog()["places"][0];
    place["tier"] = tier;
    place["tool"] = "brew";
    place["action"] = {{"kind", "review"}};
    place["actionIfToolMissing"] = Json::parse(action);
    if (isSound) {
      EXPECT_THAT(problemsWith("/places/0", place), IsEmpty()) << action;
    } else {
      expectFault("/places/0", place, "/actionIfToolMissing");
      place["action"].swap(place["actionIfToolMissing"]);
      expectFault("/places/0", place, "/action");
    }
  }
}

TEST(CatalogCheckTest, OtherFaults) {
  const auto faults = Json::parse(R"({
      "/protected/1/path": "~/.s*", "/protectedSuffixes/0/path": "x/.photoslibrary",
      "/places/1/id": "caches", "/places/1/marker": "", "/places/0/paths": [],
      "/places/0/actionIfToolMissing": {"kind": "trash"}, "/places/0/onlyIfUninstalled": true,
      "/places/0/minBytes": -1, "/owners/1/names/0": "photo-lab", "/owners/1/bundleIDs": [""],
      "/owners/0/bundlePrefix": "", "/pluginVendors/0": "", "/systemPrefixes/0": " ",
      "/personalMarkers/folders/0": ".Git", "/appLibraries/0/match": "",
      "/thresholds/installerDays": -1})");
  for (const auto& [pointer, value] : faults.items()) expectFault(pointer, value);
}

TEST(CatalogCheckTest, AFileIsJudgedByItsFormFirst) {
  const TemporaryFolder folder;
  const auto verdictOn = [&](const Json& catalog) {
    return jsonText(toJson(checkCatalog(folder.file("rules.json", jsonText(catalog)))));
  };
  auto json = soundCatalog();
  json["places"][1]["id"] = "caches";
  EXPECT_EQ(verdictOn(json),
            R"({"ok":false,"problems":[{"path":"places[1].id","problem":"is not unique"}]})");
  json["places"][0].erase("getBack");
  EXPECT_EQ(verdictOn(json),
            R"({"ok":false,"problems":[{"path":"places[0].getBack","problem":"missing"}]})");
}

}  // namespace
}  // namespace volbrin::test
