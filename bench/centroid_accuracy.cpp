// How well centroids find lines whose place is known, as Markdown tables: the error by the line's place on
// the pixels, and the scatter by noise beside the least that photons allow.
#include <algorithm>
#include <cmath>
#include <cstdio>
#include <memory>
#include <optional>
#include <vector>

#include "calib/peaks.h"
#include "night/line_profile.h"
#include "night/noise.h"

namespace halmek {
namespace {

constexpr int pixels = 61;
constexpr int middle = 31;
constexpr double readNoise = 3;                         // electrons
constexpr double widths[] = {1.5, 2, 2.5, 3, 4, 6, 8};  // pixels, full width at half maximum
const double widthPerSigma = std::sqrt(8 * std::log(2.0));

std::vector<double> LineAt(double centre, double width, double area) {
  std::vector<double> counts(pixels);
  night::AddLine(counts, {centre, width / widthPerSigma, area});
  return counts;
}

// The electrons in a line whose brightest pixel, where the line is centred on it, stands out of its own noise
// by that factor.
double AreaFor(double width, double peakToNoise) {
  const double square = peakToNoise * peakToNoise;
  const double peak = (square + std::sqrt(square * square + 4 * square * readNoise * readNoise)) / 2;
  return peak / LineAt(middle, width, 1)[middle - 1];
}

// The smallest standard error that any method can reach which knows all of the line but its centre and area:
// the Cramer-Rao bound. A pixel's noise is taken as normal, which for few electrons gives a bound slightly
// too large.
double PhotonLimit(double centre, double width, double area) {
  const double step = 1e-4;
  const auto counts = LineAt(centre, width, area), shifted = LineAt(centre + step, width, area);
  double centreInformation = 0, areaInformation = 0, mixed = 0;
  for (size_t i = 0; i < counts.size(); ++i) {
    const double variance = counts[i] + readNoise * readNoise;
    const double byCentre = (shifted[i] - counts[i]) / step, byArea = counts[i] / area;
    centreInformation += byCentre * byCentre / variance;
    areaInformation += byArea * byArea / variance;
    mixed += byCentre * byArea / variance;
  }
  return 1 / std::sqrt(centreInformation - mixed * mixed / areaInformation);
}

// As a click on the line does it; nothing where it is refused.
std::optional<Centroid> Measure(Session& session, const std::vector<double>& counts) {
  Slot& arc = session.slot[slots::arc1];
  arc.naxis1 = pixels;
  std::copy(counts.begin(), counts.end(), arc.spectrum.Range(1, pixels).begin());
  try {
    return CentroidLine(arc, FindPeak(arc, middle).pixel, session.BisectorMidpoint);
  } catch (const Refusal&) {
    return std::nullopt;
  }
}

// Errors of many centroids of lines at known places.
struct Errors {
  int tried = 0, measured = 0;
  double sum = 0, squares = 0, largest = 0, reported = 0, limits = 0;

  void Add(const std::optional<Centroid>& centroid, double centre, double limit) {
    ++tried;
    if (!centroid)
      return;
    ++measured;
    const double error = centroid->column - centre;
    sum += error;
    squares += error * error;
    largest = std::max(largest, std::fabs(error));
    reported += centroid->error;
    limits += limit * limit;
  }
  double Mean(double total) const { return total / measured; }
  double Rms() const { return std::sqrt(squares / measured); }
  double Limit() const { return std::sqrt(limits / measured); }
  double RefusedPercent() const { return 100.0 * (tried - measured) / tried; }
};

void TableOfPhases(Session& session) {
  std::printf("| width | mean error | rms error | largest error | reported error | refused |\n");
  std::printf("|---:|---:|---:|---:|---:|---:|\n");
  for (const double width : widths) {
    Errors errors;
    // None of these places is midway between two pixels, which then would be equally bright.
    constexpr int places = 1001;
    for (int place = 0; place < places; ++place) {
      const double centre = middle - 0.5 + (place + 0.5) / places;
      errors.Add(Measure(session, LineAt(centre, width, 1e6)), centre, 0);
    }
    std::printf("| %.1f | %.5f | %.5f | %.5f | %.5f | %.0f %% |\n", width, std::fabs(errors.Mean(errors.sum)),
                errors.Rms(), errors.largest, errors.Mean(errors.reported), errors.RefusedPercent());
  }
}

void TableOfNoise(Session& session) {
  std::printf(
      "| width | peak to noise | mean error | rms error | photon limit | ratio | reported error | refused "
      "|\n");
  std::printf("|---:|---:|---:|---:|---:|---:|---:|---:|\n");
  for (const double width : widths) {
    for (const double peakToNoise : {10.0, 30.0, 100.0, 300.0}) {
      night::Noise noise(1, night::Stream::readOut, static_cast<int>(10 * width));
      const double area = AreaFor(width, peakToNoise);
      Errors errors;
      for (int k = 0; k < 20000; ++k) {
        const double centre = middle + noise.Uniform(-0.5, 0.5);
        std::vector<double> counts = LineAt(centre, width, area);
        for (double& count : counts)
          count = noise.Poisson(count) + readNoise * noise.Normal();
        errors.Add(Measure(session, counts), centre, PhotonLimit(centre, width, area));
      }
      std::printf("| %.1f | %.0f | %+.4f | %.4f | %.4f | %.2f | %.4f | %.1f %% |\n", width, peakToNoise,
                  errors.Mean(errors.sum), errors.Rms(), errors.Limit(), errors.Rms() / errors.Limit(),
                  errors.Mean(errors.reported), errors.RefusedPercent());
    }
  }
}

}  // namespace
}  // namespace halmek

int main() {
  const auto session = std::make_unique<halmek::Session>();
  halmek::TableOfPhases(*session);
  std::printf("\n");
  halmek::TableOfNoise(*session);
}
