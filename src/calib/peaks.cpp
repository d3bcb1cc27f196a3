// Peak search and bisector centroids.
#include "calib/peaks.h"

#include <algorithm>
#include <cmath>

namespace halmek {
namespace {

constexpr int searchHalfWidth = 10;
constexpr double coreLevel = 0.15;

// Sub-pixel position at which the line falls through `level`, between pixel `above`, the last one above it,
// and its neighbour one `step` further out.
double Crossing(std::span<const double> v, int above, int step, double level) {
  const double inner = v[above], outer = v[above + step];
  return above + step * (inner - level) / (inner - outer);
}

// The last pixel above `level`, walking from the peak in direction `step`; nothing above the level leads to
// the peak itself. The caller knows that the line falls below the level before the spectrum ends.
int LastAbove(std::span<const double> v, int peak, int step, double level) {
  int k = peak + step;
  while (v[k] > level)
    k += step;
  return k - step;
}

// The first pixel, walking outward, that is at the core level or below; 0 or beyond the end where there is
// none.
int CoreEnd(std::span<const double> v, int peak, int step, int last) {
  const double level = coreLevel * v[peak];
  int i = peak + step;
  while (i >= 1 && i <= last && v[i] > level)
    i += step;
  return i;
}

}  // namespace

Peak FindPeak(const Slot& slot, int guess) {
  Peak peak;
  peak.low = std::max(1, guess - searchHalfWidth);
  peak.high = std::min(Pixels(slot), guess + searchHalfWidth);
  for (int p = peak.low; p <= peak.high; ++p) {
    if (slot.spectrum(p) > peak.value) {
      peak.value = slot.spectrum(p);
      peak.pixel = p;
    }
  }
  return peak;
}

Centroid CentroidLine(const Slot& slot, int peak, FixedTable<double>& midpoints) {
  const int last = Pixels(slot);
  const std::span<const double> v = slot.spectrum.Range(0, last);
  const int left = CoreEnd(v, peak, -1, last), right = CoreEnd(v, peak, +1, last);
  const int n = right - left - 2;  // the peak itself is not counted
  if (left < 1 || right > last || n < 2 || n > midpoints.last())
    throw Refusal(noMaximumMessage);

  int k = 0;
  double sum = 0;
  const auto add = [&](double midpoint) {
    midpoints(++k) = midpoint;
    sum += midpoint;
  };
  for (int j = left + 1; j < peak; ++j)
    add((j + Crossing(v, LastAbove(v, peak, +1, v[j]), +1, v[j])) / 2);
  for (int j = peak + 1; j < right; ++j)
    add((Crossing(v, LastAbove(v, peak, -1, v[j]), -1, v[j]) + j) / 2);

  Centroid centroid{.column = sum / n};
  // Squares about the mean, which unlike a difference of sums of squares lose no digits at large columns.
  double squares = 0;
  for (double midpoint : midpoints.Range(1, n))
    squares += (midpoint - centroid.column) * (midpoint - centroid.column);
  centroid.error = std::sqrt(squares / n / (n - 1));
  if (!std::isfinite(centroid.column) || !std::isfinite(centroid.error))
    throw Refusal(noMaximumMessage);
  return centroid;
}

}  // namespace halmek
