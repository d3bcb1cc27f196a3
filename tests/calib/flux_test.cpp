// What the dispersion correction does to the light: how much there is, and where it lies afterwards.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <memory>
#include <numeric>
#include <random>
#include <span>
#include <vector>

#include "calib/deviations.h"
#include "calib/dispersion.h"
#include "support/test_session.h"

namespace halmek::test {
namespace {

class Flux : public testing::Test {
 protected:
  double Uniform(double low, double high) {
    return std::uniform_real_distribution<double>(low, high)(random);
  }

  // One or two arcs with smooth correction functions of up to ten pixels whose slope stays below 0.2, or with
  // constant ones of whole numbers of quarters of a pixel.
  void SetRandomArcs(int pixels) {
    s.arcCount = 1 + static_cast<int>(random() % 2);
    const bool isConstant = random() % 4 == 0;
    for (int a = 1; a <= 2; ++a) {
      Arc& arc = s.arc[a];
      arc.LineCount = 2;
      arc.fitDone = true;
      arc.linIntercept = Uniform(3500, 9000);
      arc.linSlope = isConstant ? 1.25 : Uniform(0.3, 3);
      arc.fitPower = 1 + static_cast<int>(random() % 5);
      Polynomial& curve = arc.DeviationCoef[arc.fitPower];
      const double constant = Uniform(-5, 5);
      curve = {.power = arc.fitPower, .a = {isConstant ? std::round(4 * constant) / 4 : constant}};
      // The terms above the constant share 5 pixels at the last pixel, or what the slope allows.
      const double share = std::min(5.0, 0.19 * pixels / arc.fitPower) / arc.fitPower;
      for (int k = 1; k <= arc.fitPower && !isConstant; ++k)
        curve.a[static_cast<size_t>(k)] = Uniform(-share, share) / std::pow(pixels, k);
    }
    // The functions are in pixels so far.
    const double step = s.arcCount == 1 ? s.arc[1].linSlope : (s.arc[1].linSlope + s.arc[2].linSlope) / 2;
    for (Arc& arc : s.arc)
      for (double& coefficient : arc.DeviationCoef[arc.fitPower].a)
        coefficient *= step;
  }

  std::vector<double> Corrected(const std::vector<double>& before) {
    SetSpectrum(s, slots::object, before);
    CorrectDispersion(s);
    const auto values = s.slot[slots::object].spectrum.Range(1, static_cast<int>(before.size()));
    return {values.begin(), values.end()};
  }

  std::mt19937 random{3};
  std::unique_ptr<Session> session = SessionIn("/");
  Session& s = *session;
};

TEST_F(Flux, GoesToItsPlaceAndIsConservedAwayFromTheEdges) {
  int roundsWithInnerLight = 0;
  for (int round = 0; round < 300; ++round) {
    SCOPED_TRACE(round);
    const int n = static_cast<int>(std::pow(3000, Uniform(0, 1)));
    SetRandomArcs(n);
    // What is put back at either end, where light leaves or nothing comes to.
    const double lastOfLow = std::trunc(CorrectionShift(s, 1)) + 1,
                 firstOfHigh = n - std::trunc(CorrectionShift(s, n));
    std::vector<double> before, inner, expected(static_cast<size_t>(n));
    for (int i = 1; i <= n; ++i) {
      const double flux = Uniform(1, 1000), shift = CorrectionShift(s, i), place = i - shift;
      const bool isInner = std::min<double>(i, place - 1) > std::max(lastOfLow, 0.0) &&
                           std::max<double>(i, place + 1) < std::min(firstOfHigh, n + 1.0);
      before.push_back(flux);
      inner.push_back(isInner ? flux : 0);
      // Each pixel near the place receives the more the nearer it is.
      for (int p = std::max(1, i - 15); p <= std::min(n, i + 15); ++p)
        expected[static_cast<size_t>(p) - 1] += flux * std::max(0.0, 1 - std::fabs(p - i + shift));
    }
    for (int p = 1; p <= n; ++p)
      if (p <= lastOfLow || p >= firstOfHigh)
        expected[static_cast<size_t>(p) - 1] = before[static_cast<size_t>(p) - 1];

    const std::vector<double> after = Corrected(before);
    for (size_t p = 0; p < after.size(); ++p)
      ASSERT_NEAR(after[p], expected[p], 1e-9) << "pixel " << p + 1 << " of " << n;
    const std::vector<double> innerAfter = Corrected(inner);
    const double sum = std::accumulate(inner.begin(), inner.end(), 0.0);
    EXPECT_NEAR(std::accumulate(innerAfter.begin(), innerAfter.end(), 0.0), sum, 1e-12 * sum);
    roundsWithInnerLight += sum > 0;
  }
  EXPECT_GT(roundsWithInnerLight, 200);
}

TEST_F(Flux, OfANarrowLineLiesAtTheWavelengthThatTheHeaderGives) {
  for (int round = 0; round < 300; ++round) {
    const int n = static_cast<int>(Uniform(300, 3000));
    SetRandomArcs(n);
    const double column = Uniform(30, n - 30), unit = 2 * std::sqrt(std::log(2.0)) / 3;
    std::vector<double> line;
    for (int p = 1; p <= n; ++p)
      line.push_back(std::erf((p + 0.5 - column) * unit) - std::erf((p - 0.5 - column) * unit));
    const std::vector<double> after = Corrected(line);
    double sum = 0, moment = 0;
    for (int p = 1; p <= n; ++p) {
      sum += after[static_cast<size_t>(p) - 1];
      moment += p * after[static_cast<size_t>(p) - 1];
    }
    const auto value = [&](int card) { return std::stod(s.slot[slots::object].card(card).substr(9)); };
    const double start = value(s.slot[slots::object].crval1Card),
                 step = value(s.slot[slots::object].cd1_1Card);
    double wavelength = 0;  // by the arcs
    for (const Arc& arc : std::span(s.arc).subspan(1, static_cast<size_t>(s.arcCount)))
      wavelength += (arc.linIntercept + arc.linSlope * column - CorrectionAt(arc, column)) / s.arcCount;
    EXPECT_NEAR(moment / sum, 1 + (wavelength - start) / step, 0.002) << "pixel " << column << " of " << n;
  }
}

}  // namespace
}  // namespace halmek::test
