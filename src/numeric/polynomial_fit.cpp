// Least-squares polynomials: closed forms for powers 1 and 2, normal equations for 3 to 5.
#include "numeric/polynomial_fit.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "numeric/linear_solver.h"

namespace halmek {
namespace {

bool AllFinite(std::initializer_list<double> values) {
  return std::all_of(values.begin(), values.end(), [](double v) { return std::isfinite(v); });
}

// The cofactors of the normal matrix of a parabola, row by row; the matrix is symmetric.
struct ParabolaCofactors {
  double c00, c01, c02, c11, c12, c22;
  double determinant;

  explicit ParabolaCofactors(const ParabolaSums& s)
      : c00(s.x2 * s.x4 - s.x3 * s.x3),
        c01(-(s.x * s.x4 - s.x3 * s.x2)),
        c02(s.x * s.x3 - s.x2 * s.x2),
        c11(s.n * s.x4 - s.x2 * s.x2),
        c12(-(s.n * s.x3 - s.x * s.x2)),
        c22(s.n * s.x2 - s.x * s.x),
        determinant(s.n * c00 + s.x * c01 + s.x2 * c02) {}
};

// The fit of y on 1, x, ..., x^power by its normal equations.
std::optional<Polynomial> FitByNormalEquations(int power, std::span<const double> x,
                                               std::span<const double> y) {
  const int unknowns = power + 1;
  if (!HasDistinct(x, unknowns))
    return std::nullopt;

  std::array<double, 11> xSums{};  // of x^0 to x^(2 power)
  std::array<double, 6> xySums{};  // of x^0 y to x^power y
  std::array<double, 11> xPower{};
  xPower[0] = 1;
  for (size_t i = 0; i < x.size(); ++i) {
    xPower[1] = x[i];
    for (int k = 2; k <= 2 * power; ++k)
      xPower[k] = xPower[k - k / 2] * xPower[k / 2];
    for (int k = 0; k <= 2 * power; ++k)
      xSums[k] += xPower[k];
    for (int k = 0; k <= power; ++k)
      xySums[k] += xPower[k] * y[i];
  }

  NormalMatrix matrix{};
  for (int row = 1; row <= unknowns; ++row) {
    for (int column = 1; column <= unknowns; ++column)
      matrix[row][column] = xSums[row + column - 2];
    matrix[row][unknowns + 1] = xySums[row - 1];
  }
  if (!SolveLinearSystem(matrix, unknowns))
    return std::nullopt;

  Polynomial fit{.power = power, .a = {}};
  for (int k = 0; k <= power; ++k)
    fit.a[k] = matrix[k + 1][unknowns + 1];
  return fit;
}

}  // namespace

double Polynomial::operator()(double x) const {
  double sum = a[0];
  double xPower = 1;
  for (int k = 1; k <= power; ++k) {
    xPower *= x;
    sum += a[k] * xPower;
  }
  return sum;
}

bool HasDistinct(std::span<const double> x, int count) {
  std::array<double, 6> seen{};
  int found = 0;
  for (double value : x) {
    if (found == count)
      break;
    if (std::find(seen.begin(), seen.begin() + found, value) == seen.begin() + found)
      seen[found++] = value;
  }
  return found >= count;
}

LineSums SumsForLine(std::span<const double> x) {
  LineSums s{.n = static_cast<double>(x.size())};
  for (double value : x) {
    s.x += value;
    s.xx += value * value;
  }
  return s;
}

ParabolaSums SumsForParabola(std::span<const double> x) {
  ParabolaSums s{.n = static_cast<double>(x.size())};
  for (double value : x) {
    const double square = value * value;
    s.x += value;
    s.x2 += square;
    s.x3 += value * square;
    s.x4 += square * square;
  }
  return s;
}

std::optional<LineCoefficients> SolveLine(const LineSums& s, double y, double xy) {
  const double determinant = s.n * s.xx - s.x * s.x;
  const LineCoefficients c{(s.xx * y - s.x * xy) / determinant, (s.n * xy - s.x * y) / determinant};
  if (determinant == 0 || !AllFinite({c.a0, c.a1}))
    return std::nullopt;
  return c;
}

std::optional<ParabolaCoefficients> SolveParabola(const ParabolaSums& s, double y, double xy, double x2y) {
  const ParabolaCofactors m(s);
  const double d = m.determinant;
  const ParabolaCoefficients c{(m.c00 * y + m.c01 * xy + m.c02 * x2y) / d,
                               (m.c01 * y + m.c11 * xy + m.c12 * x2y) / d,
                               (m.c02 * y + m.c12 * xy + m.c22 * x2y) / d};
  if (d == 0 || !AllFinite({c.a0, c.a1, c.a2}))
    return std::nullopt;
  return c;
}

std::optional<LineFit> FitLinear(std::span<const double> x, std::span<const double> y) {
  if (!HasDistinct(x, 2))
    return std::nullopt;
  const LineSums s = SumsForLine(x);
  double ySum = 0, xySum = 0;
  for (size_t i = 0; i < x.size(); ++i) {
    ySum += y[i];
    xySum += x[i] * y[i];
  }
  const auto line = SolveLine(s, ySum, xySum);
  if (!line)
    return std::nullopt;

  LineFit fit{.a0 = line->a0, .a1 = line->a1};
  for (size_t i = 0; i < x.size(); ++i) {
    const double residual = y[i] - (fit.a0 + fit.a1 * x[i]);
    fit.sumSq += residual * residual;
  }
  const double determinant = s.n * s.xx - s.x * s.x;
  const double sigma = s.n > 2 ? std::sqrt(fit.sumSq / (s.n - 1)) : 0;
  fit.sigmaA0 = sigma * std::sqrt(s.xx / determinant);
  fit.sigmaA1 = sigma * std::sqrt(s.n / determinant);
  if (!AllFinite({fit.sumSq, fit.sigmaA0, fit.sigmaA1}))
    return std::nullopt;
  return fit;
}

std::optional<ParabolaFit> FitPower2(std::span<const double> x, std::span<const double> y) {
  if (!HasDistinct(x, 3))
    return std::nullopt;
  const ParabolaSums s = SumsForParabola(x);
  double ySum = 0, xySum = 0, x2ySum = 0;
  for (size_t i = 0; i < x.size(); ++i) {
    ySum += y[i];
    xySum += x[i] * y[i];
    x2ySum += x[i] * x[i] * y[i];
  }
  const auto parabola = SolveParabola(s, ySum, xySum, x2ySum);
  if (!parabola)
    return std::nullopt;

  ParabolaFit fit{.a0 = parabola->a0, .a1 = parabola->a1, .a2 = parabola->a2};
  fit.vertex = fit.a2 == 0 ? std::numeric_limits<double>::infinity() : -fit.a1 / (2 * fit.a2);

  // Each coefficient is a weighted sum of the values; the weights' squares give its standard error.
  const ParabolaCofactors m(s);
  double sumSq = 0, weights1 = 0, weights2 = 0;
  for (size_t i = 0; i < x.size(); ++i) {
    const double square = x[i] * x[i];
    const double residual = y[i] - (fit.a0 + fit.a1 * x[i] + fit.a2 * square);
    const double w1 = (m.c01 + m.c11 * x[i] + m.c12 * square) / m.determinant;
    const double w2 = (m.c02 + m.c12 * x[i] + m.c22 * square) / m.determinant;
    sumSq += residual * residual;
    weights1 += w1 * w1;
    weights2 += w2 * w2;
  }
  fit.sigma = s.n > 3 ? std::sqrt(sumSq / (s.n - 3)) : 0;
  fit.sigmaA1 = fit.sigma * std::sqrt(weights1);
  fit.sigmaA2 = fit.sigma * std::sqrt(weights2);
  if (!AllFinite({fit.sigma, fit.sigmaA1, fit.sigmaA2}))
    return std::nullopt;
  return fit;
}

std::optional<Polynomial> FitPower3(std::span<const double> x, std::span<const double> y) {
  return FitByNormalEquations(3, x, y);
}

std::optional<Polynomial> FitPower4(std::span<const double> x, std::span<const double> y) {
  return FitByNormalEquations(4, x, y);
}

std::optional<Polynomial> FitPower5(std::span<const double> x, std::span<const double> y) {
  return FitByNormalEquations(5, x, y);
}

std::optional<Polynomial> FitPolynomial(int power, std::span<const double> x, std::span<const double> y) {
  switch (power) {
    case 2: {
      const auto fit = FitPower2(x, y);
      return fit ? std::optional(Polynomial{.power = 2, .a = {fit->a0, fit->a1, fit->a2}}) : std::nullopt;
    }
    case 3:
      return FitPower3(x, y);
    case 4:
      return FitPower4(x, y);
    case 5:
      return FitPower5(x, y);
    default:
      return std::nullopt;
  }
}

}  // namespace halmek
