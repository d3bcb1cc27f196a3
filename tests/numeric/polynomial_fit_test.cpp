// The least-squares fits of every power, where they are singular, and their linear solver.
#include "numeric/polynomial_fit.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <tuple>
#include <vector>

#include "numeric/linear_solver.h"

namespace halmek {
namespace {

TEST(FitPolynomial, GivesTheCurveOfEveryPowerThroughAsManyPointsAsItNeedsAndMore) {
  for (int power = 2; power <= 5; ++power) {
    const Polynomial truth{.power = power, .a = {1, 1, 1, 1, 1, 1}};
    EXPECT_EQ(truth(1), power + 1);
    for (const int last : {power, 20}) {
      std::vector<double> x, y;
      for (int i = 0; i <= last; ++i) {
        x.push_back(i);
        y.push_back(truth(i));
      }
      const auto fit = FitPolynomial(power, x, y);
      ASSERT_TRUE(fit);
      EXPECT_EQ(fit->power, power);
      for (size_t k = 0; k <= static_cast<size_t>(power); ++k)
        EXPECT_NEAR(fit->a[k], 1, 1e-6);
    }
  }
}

TEST(ClosedForms, GiveExactCurvesWithoutScatter) {
  const std::vector<double> x{2, 10, 11}, line{6, 2, 1.5}, parabola{3, 51, 66}, two{1, 2}, onLine{8, 9};
  const auto first = FitLinear(x, line);
  const auto second = FitPower2(x, parabola);
  const auto twoPoints = FitLinear(two, onLine);
  ASSERT_TRUE(first && second && twoPoints);
  for (const double error :
       {first->a0 - 7, first->a1 + 0.5, first->sumSq, first->sigmaA0, first->sigmaA1, second->a0 - 11,
        second->a1 + 6, second->a2 - 1, second->vertex - 3, second->sigma, second->sigmaA1, twoPoints->a0 - 7,
        twoPoints->a1 - 1, twoPoints->sigmaA0, twoPoints->sigmaA1})
    EXPECT_NEAR(error, 0, 1e-10);
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
  EXPECT_FALSE(FitLinear(x, scattered) || FitPower2(x, scattered));
}

TEST(SolveLinearSystem, PivotsAndSaysWhereThereIsNoSolution) {
  const double nan = std::nan("");
  // The rows of the system, and its solution, empty where there is none.
  const std::tuple<const char*, std::vector<std::vector<double>>, std::vector<double>> cases[] = {
      {"zero first pivot", {{0, 2, 1, 7}, {1, 1, 1, 6}, {2, 1, 0, 4}}, {1, 2, 3}},
      {"pivot too small to divide by", {{1e-20, 1, 1}, {1, 1, 2}}, {1, 1}},
      {"zero column", {{0, 0, 1}, {0, 3, 1}}, {}},
      {"dependent rows", {{1, 2, 1}, {2, 4, 5}}, {}},
      {"not a number", {{nan, 1, 1}, {1, 1, 1}}, {}},
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
