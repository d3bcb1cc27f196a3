// The least-squares fits of every power, where they are singular, and their linear solver.
#include "numeric/polynomial_fit.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <tuple>
#include <utility>
#include <vector>

#include "numeric/linear_solver.h"

namespace halmek {
namespace {

// Scatter that no fit sees: the differences of the order after its power are orthogonal, on equally spaced
// points, to every polynomial of that power.
std::vector<double> Scattered(std::vector<double> values, int power) {
  double binomial = 1000;
  for (int k = 0; k <= power + 1 && static_cast<int>(values.size()) >= power + 2; ++k) {
    values[k] += binomial;
    binomial *= -(power + 1.0 - k) / (k + 1);
  }
  return values;
}

TEST(Fits, FindTheCurveFromAnyColumnsOfAFrameOnAllOfIt) {
  // The first column, the distance of the points, and their number, 0 for as few as the power allows.
  const std::tuple<int, int, int> points[] = {{1, 1, 0},     {1500, 1, 0},    {2995, 1, 0}, {2994, 1, 7},
                                              {2900, 6, 17}, {2900, 1, 101},  {1, 3, 10},   {1, 599, 0},
                                              {1, 25, 120},  {1000, 1, 1000}, {1, 1, 3000}};
  for (int power = 1; power <= 5; ++power)
    for (const auto& [first, step, number] : points)
      for (const std::array<double, 6>& a : {std::array<double, 6>{1e4}, {1e4, -3, 2, -1, 3, 1}}) {
        const Polynomial truth{.power = power, .centre = static_cast<double>(first), .a = a};
        std::vector<double> x, y;
        for (int k = 0; k < (number == 0 ? power + 1 : number); ++k) {
          x.push_back(first + step * k);
          y.push_back(truth(x.back()));
        }
        y = Scattered(y, power);
        const LineFit line = FitLinear(x, y).value();
        const Polynomial fit =
            power == 1 ? Polynomial{.power = 1, .a = {line.a0, line.a1}} : FitPolynomial(power, x, y).value();
        for (const auto& [from, to] : {std::pair(x.front(), x.back()), std::pair(1.0, 3000.0)}) {
          double largest = 0, error = 0;
          for (double column = from; column <= to; ++column) {
            largest = std::max(largest, std::fabs(truth(column)));
            error = std::max(error, std::fabs(fit(column) - truth(column)));
          }
          EXPECT_LT(error, 1e-12 * largest) << power << " from " << first << " by " << step << ": " << number;
        }
      }
}

TEST(FitLinear, GivesErrorsOfANarrowRangeFarFromZero) {
  std::vector<double> x, y;
  for (int column = 2990; column <= 3000; ++column) {
    x.push_back(column);
    y.push_back(2 * column - 5000);
  }
  const LineFit line = FitLinear(x, Scattered(y, 1)).value();
  // The sum of the squares of the distances from the middle is 110.
  const double sigma = std::sqrt(6e6 / 10), middle = 2995;
  for (const double ratio : {line.a0 / -5000, line.a1 / 2, line.sumSq / 6e6,
                             line.sigmaA0 / sigma / std::sqrt(1 / 11.0 + middle * middle / 110),
                             line.sigmaA1 / sigma * std::sqrt(110)})
    EXPECT_NEAR(ratio, 1, 1e-13);
  const std::vector<double> two{1, 2};
  const LineFit throughTwo = FitLinear(two, two).value();
  EXPECT_EQ(throughTwo.sigmaA0 + throughTwo.sigmaA1, 0) << "no degree of freedom is left";
}

TEST(Fits, GiveNothingWhereTheyAreSingular) {
  // The least power that cannot be fitted, and the points.
  const std::tuple<const char*, int, std::vector<double>, std::vector<double>> cases[] = {
      {"no point", 1, {}, {}},
      {"one abscissa", 1, {3, 3, 3, 3, 3, 3}, {1, 2, 3, 4, 5, 6}},
      {"two abscissae", 2, {1, 2, 1, 2, 1, 2}, {1, 2, 3, 4, 5, 6}},
      {"five abscissae", 5, {1, 2, 3, 4, 5, 1}, {1, 2, 3, 4, 5, 6}},
      {"not a number", 1, {1, 2, 3, 4, 5, 6}, {1, 2, std::nan(""), 4, 5, 6}},
      {"sums beyond range", 1, {1e160, 2e160, 3e160, 4e160, 5e160, 6e160}, {1, 2, 3, 4, 5, 6}},
  };
  for (const auto& [what, least, abscissae, y] : cases) {
    EXPECT_EQ(FitLinear(abscissae, y).has_value(), least > 1) << what;
    for (int power = 2; power <= 5; ++power)
      EXPECT_EQ(FitPolynomial(power, abscissae, y).has_value(), power < least) << what << ", power " << power;
  }
  const std::vector<double> x{1, 2, 3, 4}, scattered{1e200, -1e200, 1e200, -1e200};
  EXPECT_FALSE(FitLinear(x, scattered));
}

TEST(SolveLinearSystem, PivotsAndSaysWhereThereIsNoSolution) {
  // The rows of the system, and its solution, empty where there is none.
  const std::tuple<const char*, std::vector<std::vector<double>>, std::vector<double>> cases[] = {
      {"zero first pivot", {{0, 2, 1, 7}, {1, 1, 1, 6}, {2, 1, 0, 4}}, {1, 2, 3}},
      {"pivot too small to divide by", {{1e-20, 1, 1}, {1, 1, 2}}, {1, 1}},
      {"dependent rows", {{1, 2, 1}, {2, 4, 5}}, {}},
      {"solution beyond range", {{1e-300, 0, 1e300}, {0, 1, 1}}, {}},
  };
  for (const auto& [what, rows, solution] : cases) {
    NormalMatrix matrix{};
    const size_t m = rows.size();
    for (size_t r = 1; r <= m; ++r)
      std::copy(rows[r - 1].begin(), rows[r - 1].end(), matrix[r].begin() + 1);
    EXPECT_EQ(SolveLinearSystem(matrix, static_cast<int>(m)), !solution.empty()) << what;
    for (size_t r = 1; r <= solution.size(); ++r)
      EXPECT_NEAR(matrix[r][m + 1], solution[r - 1], 1e-14) << what;
  }
}

}  // namespace
}  // namespace halmek
