// The lines of the comparison lamp, a hollow cathode of iron filled with neon, argon and a little helium.
#pragma once

#include <span>

namespace halmek::night {

// A line by its laboratory wavelength in air, in Angstrom, and its strength in the lamp, where the strongest
// line has 1.
struct LampLine {
  double wavelength;
  const char* ion;
  double strength;
};

// In the order of wavelengths.
std::span<const LampLine> LampLines();

}  // namespace halmek::night
