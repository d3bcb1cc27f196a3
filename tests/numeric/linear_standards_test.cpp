// The fits against sets of points whose results are certified: the linear regression sets of the NIST
// Statistical Reference Datasets, and arc lines whose fit was computed by exact rational arithmetic.
//
// Of the NIST sets, Filip wants power 10, Longley has several predictors, and NoInt1 and NoInt2 have no
// constant term: none of these is a polynomial that can be fitted here.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <fstream>
#include <sstream>
#include <string>
#include <tuple>
#include <vector>

#include "numeric/polynomial_fit.h"

namespace halmek {
namespace {

struct Standard {
  int power = 0;
  std::vector<double> coefficients;
  double deviation = 0;  // standard, of the residuals
  std::vector<double> x, y;
};

Standard ReadStandard(const std::string& name) {
  std::ifstream file(HALMEK_TEST_STANDARDS "/" + name + ".dat");
  std::stringstream numbers;
  for (std::string line; std::getline(file, line);)
    numbers << line.substr(0, line.find('#')) << '\n';
  Standard s;
  numbers >> s.power;
  double first = 0, second = 0;
  for (int k = 0; k <= s.power && numbers >> first >> second; ++k)
    s.coefficients.push_back(first);  // its error is not used
  numbers >> s.deviation;
  while (numbers >> first >> second) {
    s.y.push_back(first);
    s.x.push_back(second);
  }
  return s;
}

// How many significant digits of the worst value are right, at most 15.
double WorstDigits(const std::vector<double>& values, const std::vector<double>& certified) {
  double worst = 15;
  for (size_t k = 0; k < certified.size(); ++k)
    if (values.at(k) != certified[k])
      worst = std::min(worst, -std::log10(std::fabs((values[k] - certified[k]) / certified[k])));
  return worst;
}

double DigitsOfCoefficients(const Standard& s) {
  if (s.power > 1) {
    // In powers of x, from those of x - centre.
    Polynomial fit = FitPolynomial(s.power, s.x, s.y).value();
    for (int first = 0; first < s.power; ++first)
      for (int k = s.power - 1; k >= first; --k)
        fit.a[k] -= fit.centre * fit.a[k + 1];
    return WorstDigits({fit.a.begin(), fit.a.end()}, s.coefficients);
  }
  const LineFit line = FitLinear(s.x, s.y).value();
  return WorstDigits({line.a0, line.a1}, s.coefficients);
}

TEST(Fits, ReachTheDocumentedDigitsOfCertifiedResults) {
  // What some lack of 15 digits is lost where their decimal values become doubles.
  const std::tuple<const char*, size_t, double> sets[] = {
      {"norris", 36, 14},   {"pontius", 40, 13.1}, {"wampler1", 21, 15}, {"wampler2", 21, 13.2},
      {"wampler3", 21, 15}, {"wampler4", 21, 15},  {"wampler5", 21, 15}, {"arc_deviations", 24, 14.4}};
  for (const auto& [name, points, least] : sets) {
    const Standard standard = ReadStandard(name);
    ASSERT_EQ(standard.x.size(), points) << name;
    EXPECT_GE(DigitsOfCoefficients(standard), least) << name;
  }
  const Standard norris = ReadStandard("norris");
  EXPECT_GE(WorstDigits({FitLinear(norris.x, norris.y).value().sumSq}, {34 * std::pow(norris.deviation, 2)}),
            13.7)
      << "the deviation has n - 2 degrees of freedom";
}

}  // namespace
}  // namespace halmek
