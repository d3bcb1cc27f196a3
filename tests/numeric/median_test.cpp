// Tests of the sort and the medians.
#include "numeric/median.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <utility>
#include <vector>

namespace halmek {
namespace {

// Stands in slots that must stay as they are; smaller than all values, so that a sort that reaches it moves
// it.
constexpr double untouched = -1e9;

TEST(Median, IsTheMiddleValueOrTheMeanOfTheTwo) {
  const struct {
    std::vector<double> values;
    double median;
  } cases[] = {{{42}, 42},
               {{9, 1}, 5},
               {{5, 1, 9}, 5},
               {{4, -4, 3, 100}, 3.5},
               {{60, 10, 50, 20, 40, 31}, 35.5},
               {{7, 1, 6, 2, 5, 3, 4}, 4},
               {{3, 3, 3, 3, 3, 3}, 3},
               {{1, 1, 2, 2, 2, 1}, 1.5}};
  for (const auto& c : cases) {
    const int n = static_cast<int>(c.values.size());
    SortBuffer buffer;
    NeighbourBuffer neighbours;
    buffer.slot.fill(untouched);
    std::copy(c.values.begin(), c.values.end(), neighbours.slot.begin() + 1);
    EXPECT_EQ(MedianOfNeighbours(neighbours, buffer, n), c.median) << "n = " << n;

    std::copy(c.values.begin(), c.values.end(), buffer.slot.begin() + 1);
    EXPECT_EQ(Median(buffer, n), c.median) << "n = " << n;
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
