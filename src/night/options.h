// What a sample night can be asked for.
#pragma once

#include <cstdint>

#include "fits/pixel_codec.h"

namespace halmek::night {

struct Options {
  int columns = 1748, rows = 140;  // of each frame, overscan strip included
  int pixelType = pixel_types::unsigned16;
  uint64_t seed = 1;  // the same seed gives the same bytes
  int stars = 2;      // each with an arc before and an arc after it
};

inline constexpr int fewestColumns = 400, mostColumns = 3000;
inline constexpr int fewestRows = 60, mostRows = 500;
inline constexpr int mostStars = 999;

}  // namespace halmek::night
