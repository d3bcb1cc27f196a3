// Rounding of values to whole numbers.
#pragma once

#include <cmath>

namespace halmek {

// The whole number nearest to `value`, halves to the even neighbour: 2.5 gives 2, 3.5 gives 4. Relies on the
// default rounding mode, which nothing here changes.
inline double RoundHalfEven(double value) { return std::nearbyint(value); }

// As RoundHalfEven, for values known to be small enough for an `int`; others are clamped to two thousand
// million either way, far outside every table, so that a range check on the result still refuses them.
inline int RoundToInt(double value) {
  constexpr double limit = 2e9;
  if (!(value > -limit))
    return static_cast<int>(-limit);
  return static_cast<int>(RoundHalfEven(std::fmin(value, limit)));
}

}  // namespace halmek
