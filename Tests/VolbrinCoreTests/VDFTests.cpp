#include "VDF.hpp"

#include <gmock/gmock.h>

#include "Json.hpp"
#include "TemporaryFolder.hpp"

namespace volbrin::test {
namespace {

/// As JSON: blocks as objects, texts as strings.
Json jsonOf(const VDF& value) {
  if (const auto* text = value.text()) return *text;
  Json object = Json::object();
  for (const auto& [key, inner] : *value.block()) object[key] = jsonOf(inner);
  return object;
}

TEST(VDFTest, ReadsBlocksHoweverBroken) {
  const std::pair<std::string, Json> cases[] = {
      {"", Json::object()},
      {"key", Json::object()},
      {"//\n//\nÄ\u00a0b//c // comment\n\u2003b{d}", {{"b", Json::object()}, {"ä", "b//c"}}},
      {"say\"hi\" x/{", {{"say\"hi\"", "x/"}}},
      {R"("a b" """c""{ // }")", {{"a b", ""}, {"c", "{ // }"}}},
      {R"("C:\\x" "\"" "\q" "\n\t")", {{"c:\\x", "\""}, {"q", "\n\t"}}},
      {"a \"never\nends", {{"a", "never\nends"}}},
      {"a \"ends in \\", {{"a", "ends in \\"}}},
      {"a { b 1 } a { c 2 }", {{"a", {{"c", "2"}}}}},
      {"A { B { c 1 } } d 2", {{"a", {{"b", {{"c", "1"}}}}}, {"d", "2"}}},
      {"a { b { c", {{"a", {{"b", Json::object()}}}}},
      {"a 1 } b 2", {{"a", "1"}}},
      {"{ a 1 { b 2", {{"a", "1"}, {"b", "2"}}},
      {"a { key } b 2", {{"a", Json::object()}, {"b", "2"}}},
      {"a 1 key } b 2", {{"a", "1"}}},
  };
  for (const auto& [text, expected] : cases) {
    EXPECT_EQ(jsonText(jsonOf(VDF::parseText(text))), jsonText(expected)) << text;
  }
}

TEST(VDFTest, DepthTakesNoStack) {
  constexpr std::size_t levels = 300000;
  std::string text;
  for (std::size_t i = 0; i < levels; ++i) text += "a{";
  for (const auto& each : {text, text + "b 1" + std::string(levels, '}') + "c 2"}) {
    auto value = VDF::parseText(each);
    std::size_t depth = 0;
    for (const VDF* at = &value; at->blockAt("a") != nullptr; at = at->at("a")) ++depth;
    EXPECT_EQ(depth, levels);
    EXPECT_EQ(value.textAt("c") != nullptr, each.ends_with("c 2"));
    value = VDF("replaced");
    EXPECT_EQ(*value.text(), "replaced");
  }
}

TEST(VDFTest, AFileMustBeReadableUtf8) {
  const TemporaryFolder folder;
  const auto parsed = VDF::parse(folder.file("good.vdf", "LibraryFolders { 0 \"ä\" }"));
  ASSERT_TRUE(parsed.has_value());
  EXPECT_EQ(*parsed->at("libraryfolders")->textAt("0"), "ä");
  EXPECT_TRUE(VDF::parse(folder.file("empty.vdf")).has_value());
  EXPECT_FALSE(VDF::parse(folder.file("bad.vdf", "a \"\xff\"")).has_value());
  EXPECT_FALSE(VDF::parse(folder.at("missing.vdf")).has_value());
}

}  // namespace
}  // namespace volbrin::test
