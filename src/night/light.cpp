// The light that falls on the detector.
#include "night/light.h"

#include <algorithm>
#include <cmath>
#include <numbers>

#include "night/lamp_lines.h"
#include "night/line_profile.h"

namespace halmek::night {
namespace {

// A line of the lamp or of the sky, with its electrons in a row of the slit's middle.
struct EmissionLine {
  double wavelength, electrons;
};

// Air-glow, and the sodium of street lamps far away.
constexpr EmissionLine skyLines[] = {
    {5577.338, 7000}, {5889.950, 500}, {5895.924, 300}, {6300.304, 2800}, {6363.776, 900},
};
constexpr double skyElectrons = 130;  // a pixel, between the lines
constexpr double skyGradient = 0.25;  // change over the slit, moonlight on one side
constexpr double lampFallOff = 0.12;  // loss at the ends of the slit

// The part of a row that the slit lights; its jaws are a little out of focus.
double SlitLight(const Layout& layout, double row) {
  constexpr double blur = 0.7 * std::numbers::sqrt2;
  return 0.5 *
         (std::erf((row - layout.slit.first + 0.5) / blur) - std::erf((row - layout.slit.last - 0.5) / blur));
}

// From -1 at one end of the slit to 1 at the other.
double AlongSlit(const Layout& layout, double row) {
  const double half = (layout.slit.last - layout.slit.first + 1) / 2.0;
  return (row - (layout.slit.first + layout.slit.last) / 2.0) / half;
}

void AddEmission(std::span<double> pixels, const Optics& optics, const EmissionLine& line, double shift) {
  AddLine(pixels, {ColumnOf(optics, line.wavelength) + shift, optics.lineSigma, line.electrons});
}

// What the lines leave of a star's continuum, in a row that lies `shift` columns to the right.
void FillTransmission(std::span<double> pixels, const Optics& optics, const Star& star, double shift) {
  std::fill(pixels.begin(), pixels.end(), 0.0);
  for (const AbsorptionLine& line : star.lines) {
    const double column = ColumnOf(optics, line.wavelength * (1 + star.velocity / speedOfLight));
    const double own = line.width / ScaleAt(optics, column);
    AddLine(pixels, {column + shift, std::hypot(own, optics.lineSigma),
                     line.depth * own * std::sqrt(2 * std::numbers::pi)});
  }
  LeaveLight(pixels);
}

// The black body of the star as the telescope, the grating and the detector pass it on, to a constant factor.
std::vector<double> Continuum(const Night& night, const Star& star) {
  constexpr double hcOverK = 1.438777e8;  // Angstrom x Kelvin
  const auto& [optics, layout] = night.instrument;
  std::vector<double> continuum;
  for (int column = 1; column <= layout.litColumns; ++column) {
    const double wavelength = WavelengthAt(optics, column, optics.traceRow, star.exposure.drift);
    const double photons =
        std::pow(wavelength / 6000, -4) / std::expm1(hcOverK / wavelength / star.type.temperature);
    const double offBlaze = (wavelength - 6400) / 2200;
    continuum.push_back(photons * std::exp(-offBlaze * offBlaze));
  }
  return continuum;
}

// The profile of a star's image along the slit, as it is after a long exposure through the air: 1 in the
// middle, with wider wings than a Gaussian.
double Seeing(double rows) {
  constexpr double width = 5 / 1.0196;  // 5 rows at half maximum
  const double x = rows / width;
  return std::pow(1 + x * x, -3);
}

}  // namespace

Light LampLight(const Night& night, const Exposure& exposure) {
  const auto& [optics, layout] = night.instrument;
  // The strongest line reaches two thirds of what the pixel type holds.
  const double peak = (0.67 * SaturationOf(night.options.pixelType) - detector::bias) * detector::gain;
  const double strongest = peak * optics.lineSigma * std::sqrt(2 * std::numbers::pi);
  Light light(layout.rows, layout.litColumns);
  for (int row = 1; row <= layout.rows; ++row) {
    const double along = AlongSlit(layout, row);
    const double level = strongest * SlitLight(layout, row) * (1 - lampFallOff * along * along);
    const double shift = SlitShift(optics, row) + exposure.drift;
    for (const LampLine& line : LampLines())
      AddEmission(light.Row(row), optics, {line.wavelength, line.strength * level}, shift);
  }
  return light;
}

Light StarLight(const Night& night, const Star& star) {
  const auto& [optics, layout] = night.instrument;
  const std::vector<double> continuum = Continuum(night, star);
  const double peak = star.peak * detector::gain / *std::max_element(continuum.begin(), continuum.end());
  std::vector<double> transmission(continuum.size());
  Light light(layout.rows, layout.litColumns);
  for (int row = 1; row <= layout.rows; ++row) {
    const std::span<double> pixels = light.Row(row);
    const double shift = SlitShift(optics, row) + star.exposure.drift;
    const double slit = SlitLight(layout, row), along = AlongSlit(layout, row);
    const double sky = slit * (1 + skyGradient / 2 * along);
    FillTransmission(transmission, optics, star, shift);
    for (size_t i = 0; i < pixels.size(); ++i) {
      const double offTrace = row - TraceRow(optics, static_cast<double>(i + 1));
      pixels[i] = sky * skyElectrons + slit * peak * continuum[i] * Seeing(offTrace) * transmission[i];
    }
    for (const EmissionLine& line : skyLines)
      AddEmission(pixels, optics, {line.wavelength, line.electrons * sky}, shift);
  }
  return light;
}

}  // namespace halmek::night
