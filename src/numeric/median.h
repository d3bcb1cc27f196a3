// Medians of few values, through one sort buffer that is used again and again without allocation.
#pragma once

#include <array>
#include <cstdint>

namespace halmek {

// The uniform positions in [0, 1) from which the sort takes its pivots. Never reseeded: every run repeats the
// same sequence.
class PivotSource {
 public:
  float Next();

 private:
  uint32_t state_ = 0x2545F491;
};

// The slots 1..200 that are sorted; slot 0 is never used.
struct SortBuffer {
  static constexpr int last = 200;
  std::array<double, last + 1> slot{};
  PivotSource pivots;
};

// The neighbours 1..10 of one pixel; slot 0 is never used.
struct NeighbourBuffer {
  static constexpr int last = 10;
  std::array<double, last + 1> slot{};
};

// Sorts the slots low..high, both within 0..200, into ascending order, by quicksort with a random pivot.
// Nothing outside the range is touched.
void QuickSort(SortBuffer& buffer, int low, int high);

// The median of the slots 1..n, which are left in ascending order: the middle value, or the mean of the two
// middle values where n is even. 1 <= n <= 200.
double Median(SortBuffer& buffer, int n);

// The median of the neighbours 1..n, sorted in `buffer`; 1 <= n <= 10.
double MedianOfNeighbours(const NeighbourBuffer& neighbours, SortBuffer& buffer, int n);

}  // namespace halmek
