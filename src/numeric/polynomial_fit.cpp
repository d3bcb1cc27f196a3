// Least-squares polynomials.
//
// The coefficients of a fit are weighted sums of its values, whose weights depend on the abscissae alone.
// Weights and sums have twice the digits of a double: far outside a narrow range, the highest power enlarges
// each rounding by (distance / width)^power, which can be 10^16 within a frame.
#include "numeric/polynomial_fit.h"

#include <algorithm>
#include <cmath>

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
  if (!HasDistinct(x, 2))
    return std::nullopt;
  const std::vector<Coefficients> weights = ExactWeights(1, x, 0);
  const Polynomial line{.power = 1, .a = Rounded(SumOf(weights, y))};
  // Residuals from the line as it is given, so that one of round coefficients leaves nothing of points on it;
  // each coefficient is a weighted sum of the values, whose weights' squares give its standard error.
  double sumSq = 0;
  Coefficients squares{};
  for (size_t i = 0; i < x.size(); ++i) {
    const double residual = y[i] - line(x[i]);
    sumSq += residual * residual;
    for (size_t k = 0; k <= 1; ++k)
      squares[k] += weights[i][k] * weights[i][k];
  }
  const std::array<double, 6> sums = Rounded(squares);
  if (!AllFinite(line.a) || !AllFinite(sums) || !std::isfinite(sumSq))
    return std::nullopt;
  const double sigma = x.size() > 2 ? std::sqrt(sumSq / static_cast<double>(x.size() - 1)) : 0;
  return LineFit{.a0 = line.a[0],
                 .a1 = line.a[1],
                 .sigmaA0 = sigma * std::sqrt(sums[0]),
                 .sigmaA1 = sigma * std::sqrt(sums[1]),
                 .sumSq = sumSq};
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
