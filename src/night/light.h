// The light that falls on the detector.
#pragma once

#include <vector>

#include "night/night.h"

namespace halmek::night {

// What an exposure is expected to collect: electrons by row and column, both from 1, over the lit columns.
class Light {
 public:
  Light(int rows, int columns)
      : columns_(columns), values_(static_cast<size_t>(rows) * static_cast<size_t>(columns)) {}

  std::span<double> Row(int row) {
    return std::span(values_).subspan(static_cast<size_t>(row - 1) * static_cast<size_t>(columns_),
                                      static_cast<size_t>(columns_));
  }

 private:
  int columns_;
  std::vector<double> values_;
};

// The lamp, which lights the whole slit.
Light LampLight(const Night& night, const Exposure& exposure);

// A star on its sky.
Light StarLight(const Night& night, const Star& star);

}  // namespace halmek::night
