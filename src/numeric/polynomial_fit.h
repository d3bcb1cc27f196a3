// Unweighted least-squares fits of polynomials of power 1 to 5.
//
// Abscissae and values are parallel and of equal length. A fit is singular, and gives no result, where it has
// fewer distinct abscissae than coefficients or a result that is not finite. However narrow the range of the
// abscissae and however far from 0, the coefficients are right to the last digits of a double.
#pragma once

#include <array>
#include <optional>
#include <span>
#include <vector>

namespace halmek {

// The polynomial a[0] + a[1] t + ... + a[power] t^power of power 0 to 5 in t = x - centre. A fit has the
// middle of its abscissae as the centre, since in powers of x itself a narrow range leaves differences of
// large terms.
struct Polynomial {
  int power = 0;
  double centre = 0;
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

// True if `x` holds at least `count` (at most 6) different values.
bool HasDistinct(std::span<const double> x, int count);

std::optional<LineFit> FitLinear(std::span<const double> x, std::span<const double> y);

// The fit of that power, 2 to 5; nothing for other powers.
std::optional<Polynomial> FitPolynomial(int power, std::span<const double> x, std::span<const double> y);

// For callers that fit many rows of values on one set of abscissae: each coefficient is a weighted sum of the
// values, a[k] the sum of weights[i][k] y[i]. The weights of too few distinct abscissae are not finite.
struct FitWeights {
  double centre = 0;                           // of the polynomials
  std::vector<std::array<double, 6>> weights;  // by abscissa; 0 for coefficients beyond the power
};
FitWeights WeightsOfFit(int power, std::span<const double> x);

}  // namespace halmek
