// The signal to noise of a spectrum, from its pixels alone.
#pragma once

#include <optional>
#include <span>

namespace halmek {

// The median of the pixels over their noise, by the rule of Stoehr et al. (2008, ASP Conf. Ser. 394, 505):
// noise = 1.482602 / sqrt(6) x median of |2 f(i) - f(i - 2) - f(i + 2)|, with pixels of value zero left out.
// A continuum that is even over five pixels does not count as noise, narrow lines do: where there are many,
// the result is a lower limit. Noise that neighbouring pixels share, as after a correction of the dispersion,
// is seen in part only. Nothing for fewer than five pixels, a median that is not positive, and no noise at
// all.
std::optional<double> SignalToNoise(std::span<const double> pixels);

}  // namespace halmek
