// Tests of the least-squares fits and their linear solver, among them the linear sets of the NIST Statistical
// Reference Datasets.
#include "numeric/polynomial_fit.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <vector>

#include "numeric/linear_solver.h"

namespace halmek {
namespace {

void ExpectRelative(double value, double certified, double tolerance) {
  EXPECT_NEAR(value, certified, std::fabs(certified) * tolerance);
}

std::vector<double> Abscissae(int first, int last) {
  std::vector<double> x;
  for (int i = first; i <= last; ++i)
    x.push_back(i);
  return x;
}

TEST(FitLinear, MeetsTheCertifiedValuesOfNorris) {
  const std::vector<double> x = {0.2,   337.4, 118.2, 884.6, 10.1,  226.5, 666.3, 996.3, 448.6,
                                 777.0, 558.2, 0.4,   0.6,   775.5, 666.9, 338.0, 447.5, 11.6,
                                 556.0, 228.1, 995.8, 887.6, 120.2, 0.3,   0.3,   556.8, 339.1,
                                 887.2, 999.0, 779.0, 11.1,  118.3, 229.2, 669.1, 448.9, 0.5};
  const std::vector<double> y = {0.1,   338.8, 118.1, 888.0, 9.2,   228.1, 668.5, 998.5, 449.1,
                                 778.9, 559.2, 0.3,   0.1,   778.1, 668.8, 339.3, 448.9, 10.8,
                                 557.7, 228.3, 998.0, 888.8, 119.6, 0.3,   0.6,   557.6, 339.3,
                                 888.0, 998.5, 778.9, 10.2,  117.6, 228.9, 668.4, 449.2, 0.2};
  const auto fit = FitLinear(x, y);
  ASSERT_TRUE(fit);
  ExpectRelative(fit->a0, -0.262323073774029, 1e-12);
  ExpectRelative(fit->a1, 1.00211681802045, 1e-13);
  ExpectRelative(fit->sumSq, 26.6173985294224, 1e-12);
  // The certified standard errors have n - 2 degrees of freedom, ours n - 1.
  const double scale = std::sqrt(34.0 / 35.0);
  ExpectRelative(fit->sigmaA0, 0.232818234301152 * scale, 1e-12);
  ExpectRelative(fit->sigmaA1, 0.429796848199937e-3 * scale, 1e-12);
}

TEST(FitPower2, MeetsTheCertifiedValuesOfPontius) {
  const std::vector<double> y = {.11019,  .21956,  .32949,  .43899,  .54803,  .65694,  .76562,  .87487,
                                 .98292,  1.09146, 1.20001, 1.30822, 1.41599, 1.52399, 1.63194, 1.73947,
                                 1.84646, 1.95392, 2.06128, 2.16844, .11052,  .22018,  .32939,  .43886,
                                 .54798,  .65739,  .76596,  .87474,  .98300,  1.09150, 1.20004, 1.30818,
                                 1.41613, 1.52408, 1.63159, 1.73965, 1.84696, 1.95445, 2.06177, 2.16829};
  std::vector<double> x;
  for (int i = 0; i < 40; ++i)
    x.push_back(150000.0 * (i % 20 + 1));
  const auto fit = FitPower2(x, y);
  ASSERT_TRUE(fit);
  // Sums of raw fourth powers of 3e6 cost some of the 15 digits.
  ExpectRelative(fit->a0, 0.673565789473684e-3, 1e-9);
  ExpectRelative(fit->a1, 0.732059160401003e-6, 1e-11);
  ExpectRelative(fit->a2, -0.316081871345029e-14, 1e-9);
  ExpectRelative(fit->vertex, 0.732059160401003e-6 / (2 * 0.316081871345029e-14), 1e-9);
  ExpectRelative(fit->sigma, 0.205177424076185e-3, 1e-9);
  ExpectRelative(fit->sigmaA1, 0.157817399981659e-9, 1e-9);
  ExpectRelative(fit->sigmaA2, 0.486652849992036e-16, 1e-9);
}

TEST(FitPolynomial, MeetsTheCertifiedValuesOfWampler1And2AndInterpolates) {
  for (const double base : {1.0, 0.1}) {
    // Power 5 with 21 points are the certified sets.
    for (int power = 2; power <= 5; ++power) {
      Polynomial truth{.power = power, .a = {}};
      for (int k = 0; k <= power; ++k)
        truth.a[static_cast<size_t>(k)] = std::pow(base, k);
      EXPECT_NEAR(truth(1 / base), power + 1, 1e-12);
      for (const int last : {power, 20}) {
        const std::vector<double> x = Abscissae(0, last);
        std::vector<double> y;
        for (double value : x)
          y.push_back(truth(value));
        const auto fit = FitPolynomial(power, x, y);
        ASSERT_TRUE(fit);
        EXPECT_EQ(fit->power, power);
        for (size_t k = 0; k <= static_cast<size_t>(power); ++k)
          ExpectRelative(fit->a[k], truth.a[k], 1e-6);
      }
    }
  }
}

TEST(ClosedForms, GiveExactCurvesWithoutScatter) {
  const std::vector<double> x = {2, 10, 11}, line = {6, 2, 1.5}, parabola = {3, 51, 66};
  const auto first = FitLinear(x, line);
  const auto second = FitPower2(x, parabola);
  const auto twoPoints = FitLinear(Abscissae(1, 2), Abscissae(8, 9));
  ASSERT_TRUE(first && second && twoPoints);
  for (const double error :
       {first->a0 - 7, first->a1 + 0.5, first->sumSq, first->sigmaA0, first->sigmaA1, second->a0 - 11,
        second->a1 + 6, second->a2 - 1, second->vertex - 3, second->sigma, second->sigmaA1, twoPoints->a0 - 7,
        twoPoints->a1 - 1, twoPoints->sigmaA0, twoPoints->sigmaA1})
    EXPECT_NEAR(error, 0, 1e-10);
}

TEST(Fits, GiveNothingWhereTheyAreSingular) {
  const struct {
    const char* what;
    int power;  // the least that cannot be fitted
    std::vector<double> x, y;
  } cases[] = {
      {"no point", 1, {}, {}},
      {"one abscissa", 1, {3, 3, 3, 3, 3, 3}, {1, 2, 3, 4, 5, 6}},
      {"two abscissae", 2, {1, 2, 1, 2, 1, 2}, {1, 2, 3, 4, 5, 6}},
      {"five abscissae", 5, {1, 2, 3, 4, 5, 1}, {1, 2, 3, 4, 5, 6}},
      {"not a number", 1, {1, 2, 3, 4, 5, 6}, {1, 2, std::nan(""), 4, 5, 6}},
      {"sums beyond range", 1, {1e160, 2e160, 3e160, 4e160, 5e160, 6e160}, {1, 2, 3, 4, 5, 6}},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(FitLinear(c.x, c.y).has_value(), c.power > 1) << c.what;
    for (int power = 2; power <= 5; ++power)
      EXPECT_EQ(FitPolynomial(power, c.x, c.y).has_value(), power < c.power) << c.what << ", power " << power;
  }
  const std::vector<double> scattered = {1e200, -1e200, 1e200, -1e200};
  EXPECT_FALSE(FitLinear(Abscissae(1, 4), scattered));
  EXPECT_FALSE(FitPower2(Abscissae(1, 4), scattered));
}

TEST(SolveLinearSystem, PivotsAndSaysWhereThereIsNoSolution) {
  const double nan = std::nan("");
  const struct {
    const char* what;
    std::vector<std::vector<double>> rows;
    std::vector<double> solution;  // empty = none
  } cases[] = {
      {"zero first pivot", {{0, 2, 1, 7}, {1, 1, 1, 6}, {2, 1, 0, 4}}, {1, 2, 3}},
      {"pivot too small to divide by", {{1e-20, 1, 1}, {1, 1, 2}}, {1, 1}},
      {"zero column", {{0, 0, 1}, {0, 3, 1}}, {}},
      {"dependent rows", {{1, 2, 1}, {2, 4, 5}}, {}},
      {"not a number", {{nan, 1, 1}, {1, 1, 1}}, {}},
      {"solution beyond range", {{1e-300, 0, 1e300}, {0, 1, 1}}, {}},
  };
  for (const auto& c : cases) {
    NormalMatrix matrix{};
    const size_t m = c.rows.size();
    for (size_t r = 1; r <= m; ++r)
      std::copy(c.rows[r - 1].begin(), c.rows[r - 1].end(), matrix[r].begin() + 1);
    EXPECT_EQ(SolveLinearSystem(matrix, static_cast<int>(m)), !c.solution.empty()) << c.what;
    for (size_t r = 1; r <= c.solution.size(); ++r)
      EXPECT_NEAR(matrix[r][m + 1], c.solution[r - 1], 1e-14) << c.what;
  }
}

}  // namespace
}  // namespace halmek
