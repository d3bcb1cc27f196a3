// The signal to noise of a spectrum.
#include "reduce/signal_to_noise.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <iterator>
#include <utility>
#include <vector>

namespace halmek {
namespace {

// Of at least one value.
double MedianOfMany(std::vector<double> values) {
  const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
  std::nth_element(values.begin(), middle, values.end());
  return values.size() % 2 == 1 ? *middle : (*middle + *std::max_element(values.begin(), middle)) / 2;
}

}  // namespace

std::optional<double> SignalToNoise(std::span<const double> pixels) {
  std::vector<double> flux;
  std::copy_if(pixels.begin(), pixels.end(), std::back_inserter(flux), [](double f) { return f != 0; });
  if (flux.size() < 5)
    return std::nullopt;
  std::vector<double> differences;
  for (size_t i = 2; i + 2 < flux.size(); ++i)
    differences.push_back(std::fabs(2 * flux[i] - flux[i - 2] - flux[i + 2]));
  const double noise = 1.482602 / std::sqrt(6.0) * MedianOfMany(std::move(differences));
  const double signal = MedianOfMany(std::move(flux));
  if (signal > 0 && noise > 0)
    return signal / noise;
  return std::nullopt;
}

}  // namespace halmek
