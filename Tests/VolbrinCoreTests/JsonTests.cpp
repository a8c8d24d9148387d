#include "Json.hpp"

#include <gmock/gmock.h>

#include "Fixture.hpp"
#include "Model.hpp"

namespace volbrin::test {
namespace {

using namespace std::string_literals;
using testing::AllOf;
using testing::ElementsAre;
using testing::FieldsAre;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

template <class Record>
Record readRecord(const std::string& text) {
  return fromJson<Record>(parseJson(text, "test"), "test");
}

template <class Record>
std::vector<JsonProblem> problemsOf(const std::string& text) {
  try {
    std::ignore = readRecord<Record>(text);
  } catch (const DecodingError& error) {
    EXPECT_THAT(error.what(), AllOf(StartsWith("test: "), Not(HasSubstr("\n"))));
    return error.problems();
  }
  return {};
}

const std::string minimalFinding =
    R"({"id":"i","finder":"f","title":"t","reason":"r","getBack":"g","tier":"rebuilds","bytes":1,)"
    R"("paths":[],"drive":"","action":{"kind":"delete"},"unsure":false})";

const std::string fullFinding =
    R"({"id":"i","finder":"f","title":"t","reason":"r","getBack":"g","tier":"personal",)"
    R"("bytes":-9223372036854775808,"paths":["/a","/b\n"],"drive":"/d","owner":"o",)"
    R"("action":{"kind":"handOff","command":["a",""],"destination":"/x","app":"A","steps":"s",)"
    R"("moves":false,"linkable":true},"caution":"c","blockedBy":"b","unsure":true,)"
    R"("duplicateOf":"/c"})";

TEST(JsonTests, WritesKeysInOrderAndReadsThemBack) {
  for (const auto& text : {minimalFinding, fullFinding}) {
    EXPECT_EQ(jsonText(toJson(readRecord<Finding>(text))), text);
  }

  ScanReport report;
  report.drives = {{"Disk", "/m", true, 3, 2, 1}};
  report.findings = {readRecord<Finding>(fullFinding)};
  const auto text = jsonText(toJson(report));
  EXPECT_THAT(text, StartsWith(R"({"engine":"volbrin 0.1.0","scannedAt":"1970-01-01T00:00:00Z",)"
                               R"("drives":[{"name":"Disk","path":"/m","isStartup":true,)"));
  EXPECT_EQ(readRecord<ScanReport>(text), report);
}

TEST(JsonTests, ReadsTiersActionsAndFixturesBack) {
  for (const char* kind : {"delete", "trash", "command", "move", "handOff", "review"}) {
    const std::string text = R"({"kind":")"s + kind + R"("})";
    EXPECT_EQ(jsonText(toJson(readRecord<Action>(text))), text);
  }
  for (const Tier tier : allTiers) EXPECT_EQ(fromJson<Tier>(toJson(tier), ""), tier);
  const std::string fixture =
      R"({"drives":[],"lastUsed":{"/A":null,"/B":"2026-03-01"},"tools":[],)"
      R"("simRuntimes":[{"id":"r","name":"n","bytes":5}],"scale":2.5,"cloud":["~/C"]})";
  EXPECT_EQ(jsonText(toJson(readRecord<Fixture>(fixture))), fixture);
}

TEST(JsonTests, NamesThePlaceOfEachProblem) {
  struct Case {
    std::string key, value, path, problem;
  };
  const Case cases[] = {{"scannedAt", "\"today\"", "scannedAt", "date"},
                        {"trashBytes", "9223372036854775808", "trashBytes", "64-bit integer"},
                        {"notes", R"(["a\u0000b"])", "notes[0]", "contains a NUL character"},
                        {"findings", "[" + minimalFinding + R"(, {"tier":"other"}])",
                         "findings[1].tier", "rebuilds, reinstallable, personal"},
                        {"findings", R"([{}])", "findings[0].action", "missing"}};
  for (const auto& [key, value, path, problem] : cases) {
    SCOPED_TRACE(key + ": " + value);
    Json report = toJson(ScanReport());
    report[key] = parseJson(value, "value");
    EXPECT_THAT(problemsOf<ScanReport>(jsonText(report)),
                testing::Contains(FieldsAre(path, HasSubstr(problem))));
  }
  EXPECT_THAT(problemsOf<Fixture>(R"({"drives":[],"lastUsed":{"/A\n\"b":3}})"),
              ElementsAre(FieldsAre(R"(lastUsed["/A\n\"b"])", HasSubstr("a string"))));
  EXPECT_EQ(problemsOf<Finding>("{}").size(), 11U);
}

TEST(JsonTests, RefusesWhatIsNoJson) {
  for (const auto& text : {""s, "[1,]"s, "{} {}"s, "[\"\xFF\"]"s, "[\"\\ud800\"]"s, "[1\0]"s,
                           "[\"\0\"]"s, "[1e999]"s, "[NaN]"s, "// note\n[]"s}) {
    EXPECT_THAT(problemsOf<Fixture>(text), ElementsAre(FieldsAre("", StartsWith("not valid JSON"))))
        << text;
  }
}

TEST(JsonTests, LimitsTheDepth) {
  const auto nested = [](std::size_t n) { return std::string(n, '[') + std::string(n, ']'); };
  EXPECT_NO_THROW(std::ignore = parseJson(nested(maximumJsonDepth), ""));
  EXPECT_THROW(std::ignore = parseJson(nested(maximumJsonDepth + 1), ""), DecodingError);
}

TEST(JsonTests, KeepsAnyTextInTheOutput) {
  EXPECT_EQ(jsonText(toJson("a\0\"\n\x7F"s)), "\"a\\u0000\\\"\\n\x7F\"");
  const std::map<std::string, bool> map = {{"k\xF0", true}};
  EXPECT_EQ(jsonText(toJson(map), JsonLayout::indented), "{\n  \"k\uFFFD\": true\n}");
}

}  // namespace
}  // namespace volbrin::test
