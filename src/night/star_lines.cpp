// The spectra of the sample stars.
#include "night/star_lines.h"

#include <algorithm>
#include <cmath>

#include "night/instrument.h"

namespace halmek::night {
namespace {

enum class Kind { metal, sodium, ion, hydrogen };

struct SolarLine {
  Kind kind;
  double wavelength;  // at rest, in air
  double depth;
};

// The stronger lines of the Sun between 5300 and 7200 Angstrom, with depths as a spectrograph of high
// resolution shows them.
constexpr SolarLine solarLines[] = {
    {Kind::metal, 5328.038, 0.75},  {Kind::ion, 5336.786, 0.4},       {Kind::metal, 5345.801, 0.55},
    {Kind::metal, 5348.312, 0.45},  {Kind::metal, 5349.465, 0.4},     {Kind::metal, 5371.489, 0.7},
    {Kind::ion, 5381.022, 0.35},    {Kind::metal, 5397.128, 0.7},     {Kind::metal, 5405.775, 0.7},
    {Kind::metal, 5409.772, 0.55},  {Kind::ion, 5425.257, 0.25},      {Kind::metal, 5429.696, 0.7},
    {Kind::metal, 5434.524, 0.65},  {Kind::metal, 5446.916, 0.65},    {Kind::metal, 5455.609, 0.65},
    {Kind::metal, 5476.900, 0.6},   {Kind::metal, 5497.516, 0.55},    {Kind::metal, 5501.465, 0.5},
    {Kind::metal, 5506.779, 0.55},  {Kind::ion, 5526.790, 0.4},       {Kind::metal, 5528.405, 0.75},
    {Kind::ion, 5534.847, 0.35},    {Kind::metal, 5569.618, 0.55},    {Kind::metal, 5572.842, 0.6},
    {Kind::metal, 5581.965, 0.4},   {Kind::metal, 5586.756, 0.65},    {Kind::metal, 5588.749, 0.55},
    {Kind::metal, 5590.114, 0.4},   {Kind::metal, 5594.462, 0.5},     {Kind::metal, 5598.480, 0.45},
    {Kind::metal, 5601.277, 0.4},   {Kind::metal, 5615.644, 0.65},    {Kind::metal, 5624.542, 0.45},
    {Kind::ion, 5657.896, 0.35},    {Kind::metal, 5658.816, 0.45},    {Kind::metal, 5682.633, 0.4},
    {Kind::metal, 5688.205, 0.45},  {Kind::metal, 5709.378, 0.45},    {Kind::metal, 5711.088, 0.45},
    {Kind::metal, 5762.992, 0.4},   {Kind::ion, 5853.668, 0.35},      {Kind::metal, 5857.451, 0.45},
    {Kind::metal, 5862.357, 0.4},   {Kind::metal, 5883.817, 0.35},    {Kind::sodium, 5889.951, 0.8},
    {Kind::sodium, 5895.924, 0.75}, {Kind::metal, 5930.180, 0.4},     {Kind::metal, 5934.655, 0.35},
    {Kind::metal, 5948.541, 0.35},  {Kind::metal, 5956.694, 0.3},     {Kind::metal, 5987.065, 0.35},
    {Kind::metal, 6003.012, 0.4},   {Kind::metal, 6021.819, 0.4},     {Kind::metal, 6024.058, 0.45},
    {Kind::metal, 6027.051, 0.35},  {Kind::metal, 6065.482, 0.5},     {Kind::metal, 6078.491, 0.35},
    {Kind::metal, 6102.723, 0.55},  {Kind::metal, 6108.107, 0.3},     {Kind::metal, 6122.217, 0.6},
    {Kind::metal, 6136.615, 0.55},  {Kind::metal, 6137.692, 0.55},    {Kind::ion, 6141.713, 0.5},
    {Kind::metal, 6151.618, 0.3},   {Kind::metal, 6154.226, 0.2},     {Kind::metal, 6155.134, 0.35},
    {Kind::metal, 6160.747, 0.25},  {Kind::metal, 6162.173, 0.65},    {Kind::metal, 6166.439, 0.35},
    {Kind::metal, 6169.042, 0.4},   {Kind::metal, 6169.563, 0.45},    {Kind::metal, 6173.336, 0.35},
    {Kind::metal, 6176.807, 0.3},   {Kind::metal, 6191.558, 0.6},     {Kind::metal, 6200.313, 0.4},
    {Kind::metal, 6213.430, 0.45},  {Kind::metal, 6219.281, 0.45},    {Kind::metal, 6230.723, 0.6},
    {Kind::metal, 6237.319, 0.25},  {Kind::ion, 6238.392, 0.25},      {Kind::ion, 6245.637, 0.2},
    {Kind::metal, 6246.318, 0.5},   {Kind::ion, 6247.557, 0.3},       {Kind::metal, 6252.555, 0.55},
    {Kind::metal, 6265.132, 0.45},  {Kind::metal, 6280.618, 0.35},    {Kind::metal, 6301.500, 0.5},
    {Kind::metal, 6302.494, 0.4},   {Kind::metal, 6318.018, 0.5},     {Kind::metal, 6322.685, 0.4},
    {Kind::metal, 6335.331, 0.5},   {Kind::metal, 6336.823, 0.45},    {Kind::metal, 6344.149, 0.35},
    {Kind::ion, 6347.109, 0.25},    {Kind::metal, 6355.029, 0.4},     {Kind::ion, 6371.371, 0.2},
    {Kind::metal, 6380.743, 0.35},  {Kind::metal, 6393.601, 0.6},     {Kind::metal, 6400.001, 0.6},
    {Kind::metal, 6408.018, 0.45},  {Kind::metal, 6411.649, 0.5},     {Kind::ion, 6416.919, 0.25},
    {Kind::metal, 6421.350, 0.5},   {Kind::metal, 6430.844, 0.55},    {Kind::ion, 6432.680, 0.25},
    {Kind::metal, 6439.075, 0.6},   {Kind::metal, 6449.808, 0.45},    {Kind::ion, 6456.383, 0.35},
    {Kind::metal, 6462.567, 0.55},  {Kind::metal, 6471.662, 0.4},     {Kind::metal, 6475.624, 0.35},
    {Kind::metal, 6481.870, 0.35},  {Kind::metal, 6493.781, 0.5},     {Kind::metal, 6494.980, 0.6},
    {Kind::ion, 6496.897, 0.45},    {Kind::metal, 6499.650, 0.4},     {Kind::ion, 6516.080, 0.3},
    {Kind::metal, 6546.239, 0.45},  {Kind::hydrogen, 6562.817, 0.45}, {Kind::metal, 6592.913, 0.45},
    {Kind::metal, 6593.870, 0.4},   {Kind::ion, 6604.601, 0.2},       {Kind::metal, 6609.110, 0.35},
    {Kind::metal, 6643.629, 0.4},   {Kind::metal, 6663.441, 0.4},     {Kind::metal, 6677.985, 0.5},
    {Kind::metal, 6703.567, 0.25},  {Kind::metal, 6717.681, 0.45},    {Kind::metal, 6750.152, 0.4},
    {Kind::metal, 6767.768, 0.35},  {Kind::metal, 6945.205, 0.4},     {Kind::metal, 6978.851, 0.4},
    {Kind::metal, 7122.191, 0.4},
};

constexpr SpectralType types[] = {
    {"G8 III", 4900, 1.15, 1.15, 0.85, 4},
    {"F5 V", 6500, 0.65, 1, 1.4, 10},
    {"K2 III", 4400, 1.3, 1.05, 0.75, 3},
    {"A7 V", 7800, 0.3, 0.9, 1.8, 25},
};

constexpr double deepest = 0.9;

double StrengthIn(const SpectralType& type, Kind kind) {
  switch (kind) {
    case Kind::ion:
      return type.ions;
    case Kind::hydrogen:
      return type.hydrogen;
    default:
      return type.metals;
  }
}

// Of the line's own profile, in km/s: thermal and turbulent motion for most, damping for the strongest.
double WidthOf(Kind kind) {
  switch (kind) {
    case Kind::sodium:
      return 10;
    case Kind::hydrogen:
      return 45;
    default:
      return 3.5;
  }
}

}  // namespace

const SpectralType& TypeOfStar(int number) {
  return types[static_cast<size_t>(number - 1) % std::size(types)];
}

std::vector<AbsorptionLine> LinesOf(const SpectralType& type) {
  std::vector<AbsorptionLine> lines;
  for (const SolarLine& line : solarLines) {
    const double own = WidthOf(line.kind), width = std::hypot(own, type.rotation);
    // Rotation makes a line wider and shallower, and takes no light from it.
    const double depth = std::min(deepest, line.depth * StrengthIn(type, line.kind)) * own / width;
    lines.push_back({line.wavelength, depth, line.wavelength * width / speedOfLight});
  }
  return lines;
}

}  // namespace halmek::night
