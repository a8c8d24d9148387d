#include "Text.hpp"

#include <gmock/gmock.h>

#include <algorithm>
#include <cmath>
#include <csignal>
#include <cstdint>
#include <random>

#include "Bytes.hpp"
#include "Dates.hpp"
#include "Paths.hpp"

namespace volbrin::test {
namespace {

using namespace std::string_literals;
using testing::ElementsAre;

struct TextPair {
  std::string given, wanted;
};

TEST(TextTests, RepairsEachIllFormedSequence) {
  const std::string bad = "\uFFFD";
  const TextPair cases[] = {{"caf\u00E9 \U0001F600", "caf\u00E9 \U0001F600"},
                            {"\xE2\x82"s + "A\xED\xA0\x80", bad + "A" + bad + bad + bad},
                            {"a\0b"s, "a\0b"s}};
  for (const auto& [given, wanted] : cases) {
    EXPECT_EQ(repairedUtf8(given), wanted);
    EXPECT_EQ(isValidUtf8(given), given == wanted) << wanted;
  }
}

TEST(TextTests, LowersTheCaseOfEveryScript) {
  EXPECT_EQ(lowercased("ABCxyz ÀÉÖ İ ΑΣ ΣΑ ПРИВЕТ"), "abcxyz àéö i\u0307 ας σα привет");
  EXPECT_TRUE(equalIgnoringCase("ÉTÉ.app", "été.APP"));
}

TEST(TextTests, NormalizesNamesToWhatTheySay) {
  const TextPair cases[] = {{"photo-Lab.", "photolab"},
                            {"CAFE\u0301!", "caf\u00E9"},
                            {"Track №7 ②", "track7②"},
                            {"a\xFF\U0001F600z", "az"}};
  for (const auto& [given, wanted] : cases) EXPECT_EQ(normalized(given), wanted);
}

TEST(TextTests, CutsAndCounts) {
  EXPECT_EQ(trimmed("\u00A0\t\u200B a \u2003b\u3000\n"), "\u200B a \u2003b");
  EXPECT_EQ(characterCount("e\u0301\U0001F600\xFF"), 4U);
  EXPECT_THAT(split("/a//b/", '/'), ElementsAre("a", "b"));
  EXPECT_THAT(split("a::b:", ':', EmptyPieces::keep), ElementsAre("a", "", "b", ""));
}

TEST(PathsTests, TakesPathsApart) {
  struct Case {
    std::string path, last, parent, extension, stem, standardized;
  };
  const Case cases[] = {{"/a/b.tar.gz", "b.tar.gz", "/a", "gz", "b.tar", "/a/b.tar.gz"},
                        {"/a.b/c//", "c", "/a.b", "", "c", "/a.b/c"},
                        {"/.vst", ".vst", "/", "", ".vst", "/.vst"},
                        {"/a/./b/../c", "c", "/a/./b/..", "", "c", "/a/c"},
                        {"a/../../b", "b", "a/../..", "", "b", "../b"},
                        {"/", "/", "/", "", "/", "/"}};
  for (const auto& each : cases) {
    SCOPED_TRACE(each.path);
    EXPECT_EQ(lastComponent(each.path), each.last);
    EXPECT_EQ(parentFolder(each.path), each.parent);
    EXPECT_EQ(extensionOf(each.path), each.extension);
    EXPECT_EQ(stem(each.path), each.stem);
    EXPECT_EQ(standardized(each.path), each.standardized);
  }
}

TEST(PathsTests, ComparesWholeComponents) {
  EXPECT_TRUE(isInside("/a/b", "/a") && isInside("/a", "/") && isAtOrInside("/a", "/a"));
  for (const char* path : {"/", "/a", "/ab", "/A/b"}) EXPECT_FALSE(isInside(path, "/a")) << path;
}

TEST(PathsTests, PathSetAnswersAsALoopOverItWould) {
  std::mt19937 random(7);
  // Names with bytes on both sides of the slash's, which sorts between them.
  const auto randomPath = [&random] {
    const char* names[] = {"/a", "/b", "/a!", "/a0", "/a-b"};
    std::string path;
    for (auto depth = 1 + random() % 3; depth > 0; --depth) path += names[random() % 5];
    return path;
  };
  for (int round = 0; round < 300; ++round) {
    PathSet set;
    for (int i = 0; i < 4; ++i) set.insert(randomPath());
    const std::string path = round == 0 ? "/" : randomPath();
    const bool wanted = std::ranges::any_of(set.paths(), [&](const std::string& entry) {
      return isAtOrInside(entry, path) || isAtOrInside(path, entry);
    });
    EXPECT_EQ(set.touches(path), wanted) << path << " in " << joined(set.paths(), " ");
  }
}

TEST(DatesTests, ReadsIso8601) {
  const TextPair cases[] = {{"2026-03-01T12:00:00.987654321Z", "2026-03-01T12:00:00Z"},
                            {"2026-12-31T23:30:00-0730", "2027-01-01T07:00:00Z"},
                            {"1901-12-13T20:45:51Z", "1901-12-13T20:45:51Z"}};
  for (const auto& [given, wanted] : cases) {
    EXPECT_EQ(iso8601(parseIso8601(given).value_or(Date())), wanted) << given;
  }
  for (const auto& bad :
       {""s, "2026-3-1"s, "2023-02-29"s, "2026-13-01"s, "2026-03-01T"s, "2026-03-01T24:00:00Z"s,
        "2026-03-01T12:00Zx"s, "2026-03-01T12:00:00+25:00"s, "2026-03-01\0"s, " 2026-03-01"s}) {
    EXPECT_FALSE(parseIso8601(bad)) << bad;
  }
  EXPECT_EQ(iso8601(Date::max()), "9999-12-31T23:59:59Z");
}

TEST(BytesTests, CalculatesToTheEndsOfTheRange) {
  EXPECT_EQ(scaledBytes(-1001, 0.5, "a product"), -500);
  EXPECT_TRUE(fitsByteCount(-0x1p63) && !fitsByteCount(0x1p63) && !fitsByteCount(std::nan("")));
}

TEST(BytesDeathTest, EndsTheProcessOnOverflow) {
  const testing::KilledBySignal ended(SIGABRT);
  EXPECT_EXIT(std::ignore = addBytes(INT64_MAX, 1, "the sum"), ended,
              "^volbrin: .*64-bit .*: the sum");
}

}  // namespace
}  // namespace volbrin::test
