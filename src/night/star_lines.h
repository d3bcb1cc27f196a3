// The spectra of the sample stars.
#pragma once

#include <string_view>
#include <vector>

namespace halmek::night {

// An absorption line: rest wavelength in air and the deviation of its Gaussian profile, both in Angstrom, and
// the part of the continuum that is missing in its middle.
struct AbsorptionLine {
  double wavelength;
  double depth;
  double width;
};

struct SpectralType {
  std::string_view name;
  double temperature;             // of the continuum, in Kelvin
  double metals, ions, hydrogen;  // strengths of the lines relative to the Sun's
  double rotation;                // of the star, in km/s
};

// The type of star `number`, which counts from 1; the types take turns.
const SpectralType& TypeOfStar(int number);

// The lines that a star of that type shows, in the order of wavelengths.
std::vector<AbsorptionLine> LinesOf(const SpectralType& type);

}  // namespace halmek::night
