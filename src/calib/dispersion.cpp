// Dispersion correction.
#include "calib/dispersion.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "calib/deviations.h"
#include "fits/header.h"
#include "fits/world_coordinates.h"
#include "plot/number_text.h"

namespace halmek {
namespace {

void CheckObject(const Slot& object) {
  if (object.fileName.empty() || Pixels(object) == 0)
    throw Refusal("Hey, no Object file has been loaded!");
  if (HasWavelengthScale(object))
    throw Refusal("This file has already been dispersion corrected.");
}

void CheckArcs(const Session& s) {
  if (s.arcCount == 2 && !(s.arc[1].fitDone && s.arc[2].fitDone))
    throw Refusal(
        "Hey, if you have only 1 calibrated arc, select 1 under # Arc files or calibrate the "
        "uncalibrated arc file.");
  for (int a = 1; a <= s.arcCount; ++a)
    if (s.arc[a].LineCount < 2)
      throw Refusal("Hey, you need to identify two or more lines of Arc " + std::to_string(a) + " first!");
}

// Angstrom per pixel; a smaller step would be written as zero.
constexpr double leastStep = 1e-6;

struct LinearScale {
  double start = 0, step = 0;
};

LinearScale ScaleOf(const Session& s) {
  double intercept = s.arc[1].linIntercept, step = s.arc[1].linSlope;
  if (s.arcCount == 2) {
    step = (step + s.arc[2].linSlope) / 2;
    intercept = (intercept + s.arc[2].linIntercept) / 2;
  }
  return {intercept + 1 * step, step};
}

// What deserves doubt of the arcs in use.
Warnings ArcWarnings(const Session& s) {
  Warnings warnings;
  for (int a = 1; a <= s.arcCount; ++a) {
    const Arc& arc = s.arc[a];
    const std::string name = "Arc " + std::to_string(a);
    if (arc.DeviationCoef[arc.fitPower].power == 0)
      warnings.push_back("The deviations of " + name + " were not fitted with power " +
                         std::to_string(arc.fitPower) + ": no correction comes from it.");
    else if (arc.fitIsStale[arc.fitPower])
      warnings.push_back("The lines of " + name + " have changed since their deviations were fitted.");
    if (Pixels(s.slot[a]) != Pixels(s.slot[slots::object]))
      warnings.push_back(name + " has " + std::to_string(Pixels(s.slot[a])) + " pixels, the object " +
                         std::to_string(Pixels(s.slot[slots::object])) + ": were they trimmed alike?");
  }
  return warnings;
}

// Splits `flux` between the two pixels that bracket position i - shift; what falls outside 1..n is lost.
void Deposit(std::span<double> pixels, int i, double shift, double flux) {
  const double whole = std::trunc(std::fabs(shift));
  const double fraction = std::fabs(shift) - whole;
  const double direction = shift > 0 ? -1 : 1;
  const auto add = [&](double pixel, double share) {
    if (pixel >= 1 && pixel <= static_cast<double>(pixels.size()))
      pixels[static_cast<size_t>(pixel) - 1] += share;
  };
  add(i + direction * whole, flux * (1 - fraction));
  add(i + direction * (whole + 1), flux * fraction);
}

// Puts back the values of first..last, cut at the ends of the spectrum.
void Restore(Slot& object, double first, double last, int n) {
  const int low = static_cast<int>(std::clamp(first, 1.0, n + 1.0));
  const int high = static_cast<int>(std::clamp(last, 0.0, static_cast<double>(n)));
  for (int p = low; p <= high; ++p)
    object.spectrum(p) = object.spectrumWork(p);
}

void AppendCards(FitsHeader& header, const LinearScale& scale) {
  const auto text = [](double value, int width, int decimals) {
    const std::string padded = FormatFixed(value, width, decimals);
    return padded.substr(std::min(padded.find_first_not_of(' '), padded.size()));
  };
  header.crval1Card = AppendCard(
      header, NumberCard("CRVAL1", text(scale.start, 10, 3), " / Wavelength of first pixel in Angstroms"));
  AppendCard(header, NumberCard("CRPIX1", "1", " / The pixel of that wavelength"));
  header.cd1_1Card = AppendCard(
      header, NumberCard("CD1_1", text(scale.step, 11, 7), " / Wavelength scale in Angstroms / pixel"));
  AppendCard(header, "HISTORY  Halmek corrected the dispersion to linear.");
}

}  // namespace

double CorrectionShift(const Session& s, double column) {
  const double step = ScaleOf(s).step;
  if (s.arcCount == 1)
    return CorrectionAt(s.arc[1], column) / step;
  return (CorrectionAt(s.arc[1], column) + CorrectionAt(s.arc[2], column)) / (2 * step);
}

Warnings CorrectDispersion(Session& s) {
  Slot& object = s.slot[slots::object];
  CheckObject(object);
  CheckArcs(s);
  const LinearScale scale = ScaleOf(s);
  if (!(std::fabs(scale.step) >= leastStep) || !std::isfinite(scale.step))
    throw Refusal("Hey, the arcs give no wavelength scale!  Please identify their lines again.");
  FitsHeader header = object;
  DropScales(header);
  AppendCards(header, scale);

  const int n = Pixels(object);
  const std::span<double> pixels = object.spectrum.Range(1, n);
  std::copy(pixels.begin(), pixels.end(), object.spectrumWork.Range(1, n).begin());
  std::fill(pixels.begin(), pixels.end(), 0.0);
  for (int i = 1; i <= n; ++i)
    Deposit(pixels, i, CorrectionShift(s, i), object.spectrumWork(i));
  Restore(object, 1, std::trunc(CorrectionShift(s, 1)) + 1, n);
  Restore(object, n - std::trunc(CorrectionShift(s, n)), n, n);

  s.dispStart = scale.start;
  s.dispStep = scale.step;
  static_cast<FitsHeader&>(object) = std::move(header);
  s.workflow.correctionStatus = doneText;
  s.workflow.saveObjectEnabled = true;
  s.workflow.correctEnabled = false;
  return ArcWarnings(s);
}

}  // namespace halmek
