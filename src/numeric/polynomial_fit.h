// Unweighted least-squares fits of polynomials of power 1 to 5.
//
// Abscissae and values are parallel and of equal length. A fit is singular, and gives no result, where it has
// fewer distinct abscissae than coefficients, a zero determinant or pivot, or a result that is not finite.
#pragma once

#include <array>
#include <optional>
#include <span>

namespace halmek {

// A polynomial a[0] + a[1] x + ... + a[power] x^power of power 0 to 5.
struct Polynomial {
  int power = 0;
  std::array<double, 6> a{};

  double operator()(double x) const;
};

// The straight line y = a0 + a1 x. The standard errors take the scatter about the line with n - 1 degrees of
// freedom, in the unit of y (and of y / x); they are 0 for two points.
struct LineFit {
  double a0 = 0, a1 = 0;
  double sigmaA0 = 0, sigmaA1 = 0;
  double sumSq = 0;  // sum of squared residuals
};

// The parabola y = a0 + a1 x + a2 x^2, the abscissa of its vertex (infinite where a2 is 0), the standard
// deviation of one point about it (0 for three points, which leave no degree of freedom) and standard errors.
struct ParabolaFit {
  double a0 = 0, a1 = 0, a2 = 0;
  double vertex = 0;
  double sigma = 0;
  double sigmaA1 = 0, sigmaA2 = 0;
};

// The sums that a fit of a line takes over its points, for callers that fit many value rows on one set of
// abscissae: x sums once, y sums per row.
struct LineSums {
  double n = 0, x = 0, xx = 0;
};
struct LineCoefficients {
  double a0, a1;
};

// Closed form by Cramer's rule; no check of its own but the determinant's: nothing where it is 0.
std::optional<LineCoefficients> SolveLine(const LineSums& sums, double y, double xy);

struct ParabolaSums {
  double n = 0, x = 0, x2 = 0, x3 = 0, x4 = 0;
};
struct ParabolaCoefficients {
  double a0, a1, a2;
};
std::optional<ParabolaCoefficients> SolveParabola(const ParabolaSums& sums, double y, double xy, double x2y);

LineSums SumsForLine(std::span<const double> x);
ParabolaSums SumsForParabola(std::span<const double> x);

// True if `x` holds at least `count` (at most 6) different values.
bool HasDistinct(std::span<const double> x, int count);

std::optional<LineFit> FitLinear(std::span<const double> x, std::span<const double> y);
std::optional<ParabolaFit> FitPower2(std::span<const double> x, std::span<const double> y);

// By normal equations and SolveLinearSystem, on the raw abscissae.
std::optional<Polynomial> FitPower3(std::span<const double> x, std::span<const double> y);
std::optional<Polynomial> FitPower4(std::span<const double> x, std::span<const double> y);
std::optional<Polynomial> FitPower5(std::span<const double> x, std::span<const double> y);

// The fit of that power, 2 to 5, as a polynomial.
std::optional<Polynomial> FitPolynomial(int power, std::span<const double> x, std::span<const double> y);

}  // namespace halmek
