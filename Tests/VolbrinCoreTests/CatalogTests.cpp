#include "Catalog.hpp"

#include <gmock/gmock.h>

#include <filesystem>
#include <system_error>

#include "CatalogPaths.hpp"
#include "Files.hpp"
#include "Machine.hpp"
#include "PrivacyFence.hpp"

namespace volbrin::test {
namespace {

using ::testing::ElementsAre;
using ::testing::ElementsAreArray;
using ::testing::IsEmpty;
using Pointer = Json::json_pointer;

/// One of each record, with no key that may be missing.
Json smallestCatalog() {
  Catalog catalog;
  catalog.version = 7;
  catalog.protectedPaths = {{"~/Mail", "your mail"}};
  catalog.places = {placeAt("first", {"~/First"}), placeAt("second", {"~/Second"})};
  catalog.owners = {{{"Tool"}, "The Tool", {}, {}, {}}};
  catalog.appLibraries = {{"~/Library", "App", "Move it there."}};
  return toJson(catalog);
}

std::vector<JsonProblem> problemsOf(const Json& catalog) {
  const TemporaryFolder folder;
  try {
    (void)Catalog::load(folder.file("rules.json", jsonText(catalog)));
  } catch (const DecodingError& error) {
    return error.problems();
  }
  return {};
}

TEST(CatalogTest, EveryKeyIsRequiredButThoseThatMayBeMissing) {
  const auto whole = smallestCatalog();
  EXPECT_THAT(problemsOf(whole), IsEmpty());
  const std::map<std::string, std::string> records = {{"", ""},
                                                      {"/protected/0", "protected[0]."},
                                                      {"/places/1", "places[1]."},
                                                      {"/places/1/action", "places[1].action."},
                                                      {"/owners/0", "owners[0]."},
                                                      {"/appLibraries/0", "appLibraries[0]."},
                                                      {"/thresholds", "thresholds."}};
  for (const auto& [pointer, path] : records) {
    for (const auto& [key, value] : whole.at(Pointer(pointer)).items()) {
      auto json = whole;
      json.at(Pointer(pointer)).erase(key);
      EXPECT_THAT(problemsOf(json), ElementsAre(JsonProblem{path + key, "missing"}));
    }
  }
}

TEST(CatalogTest, IsReadFromWhereItIsSaidToBe) {
  const TemporaryFolder folder;
  auto json = smallestCatalog();
  json["places"][0]["unknown key"] = 5;
  const auto file = folder.file("rules.json", jsonText(json));
  EXPECT_EQ(Catalog::load(std::filesystem::relative(file).string()).version, 7);
  EXPECT_THROW((void)Catalog::load(folder.at("missing.json")), std::system_error);
}

TEST(CatalogTest, TheShippedRulesAreReadWholeAndWrittenBackTheSame) {
  // Unordered, since a rule file may write its keys in any order.
  auto written = nlohmann::json::parse(readFile(Catalog::defaultPath().value()));
  written.erase("$schema");
  EXPECT_EQ(nlohmann::json::parse(jsonText(toJson(Catalog::load()))), written);
}

TEST(CatalogPathsTest, ExpandTurnsAPatternIntoThePathsThatExist) {
  const Machine machine;
  for (const char* file : {"~/Caches/a/x", "~/Caches/b/x", "~/Caches/B/y", "~/Caches/.dot/x",
                           "~/Caches/deep/in/x", "~/note.txt", "~/lit[ab]/x"}) {
    machine.file(file);
  }
  const auto mac = machine.mac();
  const std::pair<const char*, std::vector<std::string>> cases[] = {
      {"~/Caches/*", {"~/Caches/B", "~/Caches/a", "~/Caches/b", "~/Caches/deep"}},
      {"~/Ca*/*/[xy]*", {"~/Caches/B/y", "~/Caches/a/x", "~/Caches/b/x"}},
      {"~/lit[ab]/*", {"~/lit[ab]/x"}}};
  for (const auto& [pattern, expected] : cases) {
    std::vector<std::string> paths;
    for (const auto& written : expected) paths.push_back(machine.path(written));
    EXPECT_THAT(expand(pattern, mac), ElementsAreArray(paths)) << pattern;
  }
  for (const char* pattern : {"~/missing/*", "~/note.txt/*", "~/Caches/.*", "~/Caches/[ab]"}) {
    EXPECT_THAT(expand(pattern, mac), IsEmpty()) << pattern;
  }
  const FenceGuard fence({machine.path("~/Caches")});
  EXPECT_THAT(expand("~/Caches", mac), ElementsAre(machine.path("~/Caches")));
  EXPECT_THAT(expand("~/Caches/*", mac), IsEmpty());
}

TEST(CatalogPathsTest, ContainsLooksTwoLevelsDeep) {
  const Machine machine;
  machine.file("~/f/.git/config");
  machine.file("~/f/sub/Cargo.toml/package.json");
  const auto folder = machine.path("~/f");
  for (const char* pattern : {".g*", "c*g", "[Cc]argo.*"}) {
    EXPECT_TRUE(contains(folder, pattern)) << pattern;
  }
  EXPECT_FALSE(contains(folder, "package.json") || contains(folder, "cargo.toml"));
  const FenceGuard fence({machine.path("~/f/sub")});
  EXPECT_FALSE(contains(folder, "Cargo.toml"));
}

}  // namespace
}  // namespace volbrin::test
