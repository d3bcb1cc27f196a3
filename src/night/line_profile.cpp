// Spectral lines on pixels.
#include "night/line_profile.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace halmek::night {

void AddLine(std::span<double> pixels, const PixelLine& line) {
  constexpr double reach = 6;  // deviations
  const double last = static_cast<double>(pixels.size());
  const double from = std::max(1.0, std::ceil(line.centre - reach * line.sigma));
  const double to = std::min(last, std::floor(line.centre + reach * line.sigma));
  const double unit = std::numbers::sqrt2 * line.sigma;
  double left = std::erf((from - 0.5 - line.centre) / unit);
  for (double pixel = from; pixel <= to; ++pixel) {
    const double right = std::erf((pixel + 0.5 - line.centre) / unit);
    pixels[static_cast<size_t>(pixel) - 1] += line.area / 2 * (right - left);
    left = right;
  }
}

void LeaveLight(std::span<double> missing) {
  constexpr double least = 0.02;
  for (double& pixel : missing)
    pixel = std::max(least, 1 - pixel);
}

}  // namespace halmek::night
