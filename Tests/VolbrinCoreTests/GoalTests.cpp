#include "Goal.hpp"

#include <gmock/gmock.h>

namespace volbrin::test {
namespace {

using namespace std::string_literals;

constexpr ByteCount gigabyte = 1'000'000'000;

void expectGoal(const Goal& goal, const std::vector<std::string>& texts) {
  for (const auto& text : texts) {
    EXPECT_TRUE(Goal::parse(text) == goal) << text;
    EXPECT_FALSE(Goal::isTooLarge(text)) << text;
  }
}

TEST(GoalTest, ReadsSizesAndShares) {
  expectGoal(Goal::ofBytes(50 * gigabyte),
             {"50GB", " 50 gb ", "50g", "50", "+50", "\u00a0\u200350\u3000Gb\u2029"});
  expectGoal(Goal::ofBytes(1000 * gigabyte), {"1 tb", "1T", "1e3", "1000000mb"});
  expectGoal(Goal::ofBytes(16 * gigabyte), {"0x10", "0x1p4gb", "16.0"});
  expectGoal(Goal::ofBytes(gigabyte / 2), {"500mb", ".5", ".0005 Tb"});
  expectGoal(Goal::ofBytes(0), {"0.0000000001"});
  expectGoal(Goal::ofBytes(9'223'372'036 * gigabyte), {"9223372036"});
  expectGoal(Goal::ofShare(0.125), {"12.5%", " 12.5 % ", "0x19p-1%"});
}

TEST(GoalTest, AnyOtherTextIsNoGoal) {
  for (const auto& text :
       {""s,     "%"s,   "gb"s,   "0"s,     "-5"s,    "0%"s,    "100%"s, "inf%"s,    "nan"s,
        "nan%"s, "abc"s, "500m"s, "500kb"s, "5gbgb"s, "5gb x"s, "5%gb"s, "5gb%"s,    "1,5"s,
        "5 0"s,  "0x"s,  "-inf"s, "1e"s,    "5\0gb"s, "5gb\0"s, "٥"s,    "\xff\x35"s}) {
    EXPECT_FALSE(Goal::parse(text).has_value()) << testing::PrintToString(text);
    EXPECT_FALSE(Goal::isTooLarge(text)) << testing::PrintToString(text);
  }
}

TEST(GoalTest, WhatDoesNotFitIsToldBeforehandOrFatal) {
  for (const char* text : {"1e30", "9223372037", "9300000 tb", "infinity", "inf gb", "1e999"}) {
    EXPECT_TRUE(Goal::isTooLarge(text)) << text;
  }
  EXPECT_DEATH((void)Goal::parse("1e30"), "64-bit byte count");
  EXPECT_DEATH((void)Goal::ofShare(4.0).bytesOf(ByteCount{1} << 61), "64-bit byte count");
}

TEST(GoalTest, GivesBytesOnADriveAndWordsForPeople) {
  EXPECT_EQ(Goal::ofShare(0.5).bytesOf(3), 1);
  EXPECT_EQ(Goal::ofBytes(gigabyte / 2).description(), "500 MB");
  EXPECT_EQ(Goal::ofShare(0.125).description(), "13% of the drive");
}

}  // namespace
}  // namespace volbrin::test
