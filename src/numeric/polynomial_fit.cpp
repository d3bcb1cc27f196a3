// Least-squares polynomials.
//
// The coefficients of a fit are weighted sums of its values, whose weights depend on the abscissae alone.
// Weights and sums have twice the digits of a double: far outside a narrow range, the highest power enlarges
// each rounding by (distance / width)^power, which can be 10^16 within a frame.
#include "numeric/polynomial_fit.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "numeric/double_double.h"

namespace halmek {
namespace {

using Coefficients = std::array<DoubleDouble, 6>;

double MiddleOf(std::span<const double> x) {
  if (x.empty())
    return 0;
  const auto [least, largest] = std::minmax_element(x.begin(), x.end());
  return (*least + *largest) / 2;
}

// The weights by abscissa, for coefficients of powers of t = x - centre. They add up over polynomials that
// are orthogonal on the abscissae, p0 = 1 and p(k+1) = (t - alpha) pk - beta p(k-1): a fit has each of these
// with the coefficient (sum of pk y) / (sum of pk squared).
std::vector<Coefficients> ExactWeights(int power, std::span<const double> x, double centre) {
  const size_t n = x.size(), terms = static_cast<size_t>(power) + 1;
  std::vector<Coefficients> weights(n);
  std::vector<DoubleDouble> t(n), p(n, 1), before(n);  // pk and p(k-1) at the abscissae
  for (size_t i = 0; i < n; ++i)
    t[i] = DoubleDouble::Sum(x[i], -centre);
  Coefficients c{1}, cBefore{};  // the same in powers of t
  DoubleDouble sumSqBefore = 1;
  for (size_t k = 0; k < terms; ++k) {
    DoubleDouble sumSq, moment;
    for (size_t i = 0; i < n; ++i) {
      const DoubleDouble square = p[i] * p[i];
      sumSq += square;
      moment += t[i] * square;
    }
    for (size_t j = 0; j <= k; ++j) {
      const DoubleDouble share = c[j] / sumSq;
      for (size_t i = 0; i < n; ++i)
        weights[i][j] += share * p[i];
    }

    const DoubleDouble alpha = moment / sumSq, beta = k == 0 ? 0 : sumSq / sumSqBefore;
    sumSqBefore = sumSq;
    for (size_t i = 0; i < n; ++i) {
      const DoubleDouble next = (t[i] - alpha) * p[i] - beta * before[i];
      before[i] = p[i];
      p[i] = next;
    }
    Coefficients next{};
    for (size_t j = 0; j < terms; ++j)
      next[j] = (j == 0 ? 0 : c[j - 1]) - alpha * c[j] - beta * cBefore[j];
    cBefore = c;
    c = next;
  }
  return weights;
}

std::array<double, 6> Rounded(const Coefficients& exact) {
  std::array<double, 6> a;
  std::transform(exact.begin(), exact.end(), a.begin(),
                 [](const DoubleDouble& v) { return static_cast<double>(v); });
  return a;
}

bool AllFinite(const std::array<double, 6>& values) {
  return std::all_of(values.begin(), values.end(), [](double v) { return std::isfinite(v); });
}

Coefficients SumOf(const std::vector<Coefficients>& weights, std::span<const double> y) {
  Coefficients a{};
  for (size_t i = 0; i < y.size(); ++i)
    for (size_t k = 0; k < a.size(); ++k)
      a[k] += weights[i][k] * y[i];
  return a;
}

// A fit in powers of x: the coefficients, the sums of the squares of their weights, which give their standard
// errors, and the sum of the squared residuals.
struct FitWithErrors {
  std::array<double, 6> a{}, squares{};
  double sumSq = 0;
};

std::optional<FitWithErrors> FitInPowersOfX(int power, std::span<const double> x, std::span<const double> y) {
  if (!HasDistinct(x, power + 1))
    return std::nullopt;
  const std::vector<Coefficients> weights = ExactWeights(power, x, 0);
  FitWithErrors fit{.a = Rounded(SumOf(weights, y))};
  // About the curve as it is given, so that a line of round coefficients leaves nothing of points on it.
  const Polynomial curve{.power = power, .a = fit.a};
  Coefficients squares{};
  for (size_t i = 0; i < x.size(); ++i) {
    const double residual = y[i] - curve(x[i]);
    fit.sumSq += residual * residual;
    for (size_t k = 0; k < squares.size(); ++k)
      squares[k] += weights[i][k] * weights[i][k];
  }
  fit.squares = Rounded(squares);
  const bool isFinite = AllFinite(fit.a) && AllFinite(fit.squares) && std::isfinite(fit.sumSq);
  return isFinite ? std::optional(fit) : std::nullopt;
}

}  // namespace

double Polynomial::operator()(double x) const {
  const double t = x - centre;
  double sum = 0;
  for (int k = power; k >= 0; --k)
    sum = sum * t + a[k];
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

std::optional<LineFit> FitLinear(std::span<const double> x, std::span<const double> y) {
  const auto fit = FitInPowersOfX(1, x, y);
  if (!fit)
    return std::nullopt;
  const double sigma = x.size() > 2 ? std::sqrt(fit->sumSq / static_cast<double>(x.size() - 1)) : 0;
  return LineFit{.a0 = fit->a[0],
                 .a1 = fit->a[1],
                 .sigmaA0 = sigma * std::sqrt(fit->squares[0]),
                 .sigmaA1 = sigma * std::sqrt(fit->squares[1]),
                 .sumSq = fit->sumSq};
}

std::optional<ParabolaFit> FitPower2(std::span<const double> x, std::span<const double> y) {
  const auto fit = FitInPowersOfX(2, x, y);
  if (!fit)
    return std::nullopt;
  const double a1 = fit->a[1], a2 = fit->a[2];
  const double sigma = x.size() > 3 ? std::sqrt(fit->sumSq / static_cast<double>(x.size() - 3)) : 0;
  return ParabolaFit{.a0 = fit->a[0],
                     .a1 = a1,
                     .a2 = a2,
                     .vertex = a2 == 0 ? std::numeric_limits<double>::infinity() : -a1 / (2 * a2),
                     .sigma = sigma,
                     .sigmaA1 = sigma * std::sqrt(fit->squares[1]),
                     .sigmaA2 = sigma * std::sqrt(fit->squares[2])};
}

std::optional<Polynomial> FitPolynomial(int power, std::span<const double> x, std::span<const double> y) {
  if (power < 2 || power > 5 || !HasDistinct(x, power + 1))
    return std::nullopt;
  const double centre = MiddleOf(x);
  const Polynomial fit{
      .power = power, .centre = centre, .a = Rounded(SumOf(ExactWeights(power, x, centre), y))};
  return AllFinite(fit.a) ? std::optional(fit) : std::nullopt;
}

FitWeights WeightsOfFit(int power, std::span<const double> x) {
  FitWeights fit{.centre = MiddleOf(x), .weights = {}};
  for (const Coefficients& exact : ExactWeights(power, x, fit.centre))
    fit.weights.push_back(Rounded(exact));
  return fit;
}

}  // namespace halmek
