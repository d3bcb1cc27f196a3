// Numbers read from text, rounded and sorted, and medians.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "numeric/median.h"
#include "numeric/number_prefix.h"
#include "numeric/rounding.h"

namespace halmek {
namespace {

// Stands in slots that must stay as they are; smaller than all values, so that a sort that reaches it moves
// it.
constexpr double untouched = -1e9;

TEST(Median, IsTheMiddleValueOrTheMeanOfTheTwo) {
  for (const auto& [values, median] : std::map<std::vector<double>, double>{
           {{42}, 42}, {{9, 1}, 5}, {{60, 10, 50, 20, 40, 31}, 35.5}, {{7, 1, 6, 2, 5, 3, 4}, 4}}) {
    SortBuffer buffer;
    NeighbourBuffer neighbours;
    buffer.slot.fill(untouched);
    std::copy(values.begin(), values.end(), neighbours.slot.begin() + 1);
    EXPECT_EQ(MedianOfNeighbours(neighbours, buffer, static_cast<int>(values.size())), median);
  }
}

TEST(QuickSort, SortsEveryPatternAndTouchesNothingOutsideTheRange) {
  // Sorted, reversed, equal, of few values, mixed.
  double (*const patterns[])(int) = {[](int i) { return 1.0 * i; }, [](int i) { return -1.0 * i; },
                                     [](int) { return 7.0; }, [](int i) { return 1.0 * (i % 3); },
                                     [](int i) { return i * 7919 % 1009 - 500.25; }};
  for (const auto& pattern : patterns) {
    for (const auto& [low, high] : {std::pair{1, 0}, {5, 5}, {1, 3}, {0, 200}, {37, 141}, {199, 200}}) {
      SortBuffer buffer;
      buffer.slot.fill(untouched);
      for (int i = low; i <= high; ++i)
        buffer.slot[i] = pattern(i);
      auto expected = buffer.slot;
      std::sort(expected.begin() + low, expected.begin() + high + 1);
      QuickSort(buffer, low, high);
      EXPECT_EQ(buffer.slot, expected) << low << ".." << high;
    }
  }
}

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
