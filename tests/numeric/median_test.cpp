// Tests of the sort and the medians.
#include "numeric/median.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <utility>
#include <vector>

namespace halmek {
namespace {

// Stands in slots that must stay as they are; smaller than all values, so that a sort that reaches it moves
// it.
constexpr double untouched = -1e9;

TEST(Median, IsTheMiddleValueOrTheMeanOfTheTwo) {
  for (const auto& [values, median] : std::map<std::vector<double>, double>{
           {{42}, 42}, {{9, 1}, 5}, {{60, 10, 50, 20, 40, 31}, 35.5}, {{7, 1, 6, 2, 5, 3, 4}, 4}}) {
    const int n = static_cast<int>(values.size());
    SortBuffer buffer;
    NeighbourBuffer neighbours;
    buffer.slot.fill(untouched);
    std::copy(values.begin(), values.end(), neighbours.slot.begin() + 1);
    EXPECT_EQ(MedianOfNeighbours(neighbours, buffer, n), median) << "n = " << n;

    std::copy(values.begin(), values.end(), buffer.slot.begin() + 1);
    EXPECT_EQ(Median(buffer, n), median) << "n = " << n;
    EXPECT_TRUE(std::is_sorted(buffer.slot.begin() + 1, buffer.slot.begin() + 1 + n));
    EXPECT_TRUE(buffer.slot[0] == untouched && buffer.slot[n + 1] == untouched);
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

}  // namespace
}  // namespace halmek
