// Radial velocity of a star.
#include "night/velocity.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>
#include <vector>

#include "files/failure.h"
#include "night/line_profile.h"
#include "numeric/linear_solver.h"

namespace halmek::night {
namespace {

constexpr int coefficients = 7;             // of the polynomial
constexpr int unknowns = coefficients + 1;  // and the velocity, which comes last
constexpr int edge = 8;  // pixels at either end, where the calibration has put back what it found

// The spectrum and how it is modelled.
struct Fit {
  std::span<const double> spectrum;
  double start, step;
  const Truth& truth;
  const StarTruth& star;
  std::vector<char> used;

  double Position(size_t i) const {
    return 2.0 * static_cast<double>(i) / static_cast<double>(spectrum.size() - 1) - 1;
  }
};

// The star's lines at that velocity, as the spectrograph widens them. The linear redistribution of flux adds,
// on the average, a sixth of a pixel squared.
std::vector<double> Template(const Fit& fit, double velocity) {
  constexpr double redistribution = 1.0 / 6;
  const Optics& optics = fit.truth.optics;
  std::vector<double> pixels(fit.spectrum.size());
  for (const AbsorptionLine& line : fit.star.lines) {
    const double wavelength = line.wavelength * (1 + velocity / speedOfLight);
    const double spread = optics.lineSigma * ScaleAt(optics, ColumnOf(optics, wavelength)) / fit.step;
    const double own = line.width / fit.step;
    AddLine(pixels,
            {(wavelength - fit.start) / fit.step + 1, std::sqrt(own * own + spread * spread + redistribution),
             line.depth * own * std::sqrt(2 * std::numbers::pi)});
  }
  LeaveLight(pixels);
  return pixels;
}

// One weighted least-squares step at that velocity.
struct Solution {
  std::array<double, unknowns> value{};  // the last is the change of the velocity
  double sumSq = 0;
  double velocityVariance = 0;  // for residuals of variance 1
  std::vector<double> residual;
};

using Row = std::array<double, unknowns>;

Solution Solve(const Fit& fit, const std::vector<Row>& rows, int columns) {
  NormalMatrix normal{}, inverse{};
  for (size_t i = 0; i < rows.size(); ++i) {
    if (!fit.used[i])
      continue;
    for (int r = 0; r < columns; ++r) {
      for (int c = 0; c < columns; ++c)
        normal[r + 1][c + 1] += rows[i][r] * rows[i][c];
      normal[r + 1][columns + 1] += rows[i][r] * fit.spectrum[i];
    }
  }
  inverse = normal;
  for (int r = 1; r <= columns; ++r)
    inverse[r][columns + 1] = r == columns;
  if (!SolveLinearSystem(normal, columns) || !SolveLinearSystem(inverse, columns))
    throw Refusal("The spectrum shows no lines to measure.");

  Solution solution;
  for (int r = 0; r < columns; ++r)
    solution.value[r] = normal[r + 1][columns + 1];
  solution.velocityVariance = inverse[columns][columns + 1];
  for (size_t i = 0; i < rows.size(); ++i) {
    double residual = fit.spectrum[i];
    for (int r = 0; r < columns; ++r)
      residual -= solution.value[r] * rows[i][r];
    solution.residual.push_back(residual);
    if (fit.used[i])
      solution.sumSq += residual * residual;
  }
  return solution;
}

// The polynomial alone, at a fixed velocity.
Solution SolveContinuum(const Fit& fit, const std::vector<double>& lines) {
  std::vector<Row> rows(lines.size());
  for (size_t i = 0; i < lines.size(); ++i) {
    double power = 1;
    for (int k = 0; k < coefficients; ++k, power *= fit.Position(i))
      rows[i][k] = power * lines[i];
  }
  return Solve(fit, rows, coefficients);
}

// Polynomial and velocity, linearised about `velocity`.
Solution SolveVelocity(const Fit& fit, double velocity) {
  constexpr double delta = 0.5;  // km/s
  const std::vector<double> lines = Template(fit, velocity);
  const std::vector<double> above = Template(fit, velocity + delta), below = Template(fit, velocity - delta);
  const Solution continuum = SolveContinuum(fit, lines);
  std::vector<Row> rows(lines.size());
  for (size_t i = 0; i < lines.size(); ++i) {
    double power = 1, level = 0;
    for (int k = 0; k < coefficients; ++k, power *= fit.Position(i)) {
      rows[i][k] = power * lines[i];
      level += continuum.value[k] * power;
    }
    rows[i][coefficients] = level * (above[i] - below[i]) / (2 * delta);
  }
  return Solve(fit, rows, unknowns);
}

int Used(const Fit& fit) { return static_cast<int>(std::count(fit.used.begin(), fit.used.end(), 1)); }

double VarianceOf(const Fit& fit, const Solution& solution) {
  return solution.sumSq / std::max(1, Used(fit) - unknowns);
}

// Leaves out what lies far from the fit. Returns true if it found any.
bool Reject(Fit& fit, const Solution& solution) {
  constexpr double far = 5;  // deviations
  const double limit = far * far * VarianceOf(fit, solution);
  bool found = false;
  for (size_t i = 0; i < fit.used.size(); ++i)
    if (fit.used[i] && solution.residual[i] * solution.residual[i] > limit) {
      fit.used[i] = 0;
      found = true;
    }
  return found;
}

// The redistribution makes the noise of neighbours alike, so that there are fewer independent pixels than
// pixels: the factor by which the variance grows.
double NeighbourFactor(const Fit& fit, const Solution& solution) {
  double product = 0;
  for (size_t i = 1; i < fit.used.size(); ++i)
    if (fit.used[i] && fit.used[i - 1])
      product += solution.residual[i] * solution.residual[i - 1];
  return 1 + 2 * std::max(0.0, product / solution.sumSq);
}

// The velocity that fits best of a coarse set.
double Search(const Fit& fit) {
  constexpr double farthest = 300, stride = 10;  // km/s
  double best = 0, least = -1;
  for (double velocity = -farthest; velocity <= farthest; velocity += stride) {
    const double sumSq = SolveContinuum(fit, Template(fit, velocity)).sumSq;
    if (least < 0 || sumSq < least) {
      least = sumSq;
      best = velocity;
    }
  }
  return best;
}

}  // namespace

VelocityFit MeasureVelocity(std::span<const double> spectrum, double start, double step, const Truth& truth,
                            const StarTruth& star) {
  const size_t n = spectrum.size();
  if (n < 100)
    throw Refusal("The spectrum is too short to measure a velocity.");
  Fit fit{spectrum, start, step, truth, star, std::vector<char>(n, 1)};
  std::fill_n(fit.used.begin(), edge, 0);
  std::fill_n(fit.used.end() - edge, edge, 0);

  double velocity = Search(fit);
  Solution solution;
  constexpr int mostRounds = 20;
  for (int round = 0; round < mostRounds; ++round) {
    solution = SolveVelocity(fit, velocity);
    velocity += solution.value[coefficients];
    const bool isSettled = std::fabs(solution.value[coefficients]) < 1e-4;
    if (isSettled && !Reject(fit, solution))
      break;
  }
  const double variance = VarianceOf(fit, solution) * NeighbourFactor(fit, solution);
  return {velocity, std::sqrt(variance * solution.velocityVariance), Used(fit)};
}

}  // namespace halmek::night
