// Quicksort with a random pivot, and medians by sorting.
#include "numeric/median.h"

#include <algorithm>
#include <numeric>
#include <utility>

namespace halmek {

float PivotSource::Next() {
  // Marsaglia's xorshift32 (Journal of Statistical Software 8, 2003); the upper 24 bits fill a float exactly.
  state_ ^= state_ << 13;
  state_ ^= state_ >> 17;
  state_ ^= state_ << 5;
  return static_cast<float>(state_ >> 8) * 0x1p-24f;
}

void QuickSort(SortBuffer& buffer, int low, int high) {
  auto& slot = buffer.slot;
  if (low >= high)
    return;
  if (high - low == 1) {
    if (slot[low] > slot[high])
      std::swap(slot[low], slot[high]);
    return;
  }

  const int chosen = static_cast<int>(buffer.pivots.Next() * static_cast<float>(high - low + 1)) + low;
  std::swap(slot[high], slot[chosen]);
  const double pivot = slot[high];

  // Asked this way round, the scans pass over values that do not compare, too, and always end.
  int i = low;
  int j = high;
  while (i < j) {
    while (i < j && !(slot[i] > pivot))
      ++i;
    while (j > i && !(slot[j] < pivot))
      --j;
    if (i < j)
      std::swap(slot[i], slot[j]);
  }
  std::swap(slot[i], slot[high]);

  if (i - low < high - i) {
    QuickSort(buffer, low, i - 1);
    QuickSort(buffer, i + 1, high);
  } else {
    QuickSort(buffer, i + 1, high);
    QuickSort(buffer, low, i - 1);
  }
}

double Median(SortBuffer& buffer, int n) {
  QuickSort(buffer, 1, n);
  const int half = n / 2;
  if (2 * half == n)
    return std::midpoint(buffer.slot[half], buffer.slot[half + 1]);
  return buffer.slot[half + 1];
}

double MedianOfNeighbours(const NeighbourBuffer& neighbours, SortBuffer& buffer, int n) {
  std::copy_n(neighbours.slot.begin() + 1, n, buffer.slot.begin() + 1);
  return Median(buffer, n);
}

}  // namespace halmek
