// Tests of reading numbers from text and rounding them.
#include <gtest/gtest.h>

#include <cmath>
#include <string>
#include <utility>
#include <vector>

#include "numeric/number_prefix.h"
#include "numeric/rounding.h"

namespace halmek {
namespace {

TEST(NumericPrefix, TakesTheLongestNumberAndNothingBehindIt) {
  const std::pair<const char*, double> cases[] = {
      {"12", 12},  {"  \t 12", 12}, {"-12.5", -12.5},  {"+12.5", 12.5}, {".5", 0.5},
      {"5.", 5},   {"-.5x", -0.5},  {"1.2.3", 1.2},    {"12 34", 12},   {"1,5", 1},
      {"0x10", 0}, {"1E3", 1000},   {"1.5D+03", 1500}, {"25d-1", 2.5},  {"-2e+2 ", -200},
      {"7E", 7},   {"7E+", 7},      {"7D-x", 7},       {"1E2.5", 100}};
  for (const auto& [text, value] : cases)
    EXPECT_EQ(NumericPrefix(text), value) << text;
  for (const char* text : {"", "   ", "+", "-", ".", "-.", "+-5", "- 5", "E5", ".E5", "inf", "nan", "abc"})
    EXPECT_EQ(NumericPrefix(text), 0) << text;
}

TEST(NumericPrefix, IsInfiniteOrZeroBeyondTheRangeOfADouble) {
  const std::string zeros(400, '0');
  for (const std::string& text : {"1D99999999999999999999" + zeros, "9" + zeros, "1" + zeros + "E-5"}) {
    EXPECT_EQ(NumericPrefix(text), INFINITY) << text;
    EXPECT_EQ(NumericPrefix("-" + text), -INFINITY) << text;
  }
  for (const std::string& text :
       {"-1E-99999999999999999999" + zeros, "0." + zeros + "1", "0." + zeros + "1E5"})
    EXPECT_EQ(NumericPrefix(text), 0) << text;
  EXPECT_EQ(NumericPrefix("1" + zeros + "E-400"), 1);
}

TEST(Rounding, TakesHalvesToEvenAndHugeValuesFarOutsideEveryTable) {
  std::vector<int> rounded;
  for (const double value : {0.5, 1.5, 2.5, -0.5, -1.5, -2.5, 2.51, 0.49999999999999994})
    rounded.push_back(RoundToInt(value));
  EXPECT_EQ(rounded, (std::vector{0, 2, 2, 0, -2, -2, 3, 0}));
  EXPECT_GT(RoundToInt(1e300), 1000000000);
  EXPECT_LT(RoundToInt(-1e300), -1000000000);
  EXPECT_LT(RoundToInt(std::nan("")), -1000000000);
}

}  // namespace
}  // namespace halmek
