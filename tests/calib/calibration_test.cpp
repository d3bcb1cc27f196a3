// Deviation fits and the dispersion correction.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <numeric>
#include <random>
#include <span>
#include <tuple>

#include "calib/deviations.h"
#include "calib/dispersion.h"
#include "fits/header.h"
#include "synthetic_arc.h"

namespace halmek::test {
namespace {

constexpr int pixels = 1000;

struct CalibrationTest : testing::Test {
  std::unique_ptr<Session> session = SessionIn("/");
  Slot& object = session->slot[slots::object];
  Arc& arc = session->arc[1];

  CalibrationTest() { session->arcCount = 1; }

  // An arc on a straight line of 1.25 Angstrom per pixel from 4000 at column 0, with this correction at every
  // column.
  void SetArc(int a, double correction) {
    IdentifyLines(*session, a, pixels, test::Columns(6, 100, 150), [](double c) { return 4000 + 1.25 * c; });
    Arc& set = session->arc[a];
    set.linIntercept = 4000;
    set.linSlope = 1.25;
    set.DeviationCoef[set.fitPower] = {.power = 4, .a = {correction}};
    set.fitDone = true;
    set.fitIsStale.fill(false);
  }

  std::vector<double> SetObject() {
    std::vector<double> values;
    for (int p = 1; p <= pixels; ++p)
      values.push_back(100 + p % 17);
    SetSpectrum(*session, slots::object, values);
    return values;
  }

  // Lines of arc 1 on a slight curve.
  void IdentifyCurve(int lines) {
    IdentifyLines(*session, 1, pixels, test::Columns(lines, 100, 100),
                  [](double c) { return 5000 + 0.6 * c + 1e-5 * c * c; });
  }

  std::string CorrectionRefusal() {
    return RefusalOf([&] { CorrectDispersion(*session); });
  }
};

TEST_F(CalibrationTest, DeviationsOfAKnownCurveAreFittedByTheirPower) {
  const auto curve = [](double c) { return 5000 + 0.6 * c + 2e-5 * c * c - 1e-8 * c * c * c; };
  for (int power : {3, 4}) {
    IdentifyLines(*session, 1, pixels, test::Columns(12, 40, 80), curve);
    arc.fitPower = power;
    ComputeDeviations(*session, 1);
    FitDeviations(*session, 1);
    EXPECT_TRUE(arc.fitDone);
    EXPECT_LT(DeviationRms(arc), 1e-6);
    EXPECT_GT(LinearRms(arc), 0.3);
    for (double column : {1.0, 500.0, 1000.0})
      EXPECT_NEAR(arc.linIntercept + arc.linSlope * column - CorrectionAt(arc, column), curve(column), 1e-5);
    EXPECT_EQ(session->workflow.arc[1].fitStatus, "DONE!");
    DeleteAllLines(*session, 1);
  }
}

TEST_F(CalibrationTest, RefusalsOfDeviationFitsByPowerAndNumberOfLines) {
  const std::string tooFew = "You haven't identified enough lines.  At least three are required.";
  const auto least = [](int power) {
    return "For a fit of power " + std::to_string(power) + ", you need at least " +
           std::to_string(power + 1) + " terms.  Please try again.";
  };
  const std::tuple<int, int, bool, std::string> cases[] = {
      {2, 2, false, tooFew},
      {2, 2, true, least(2)},
      {3, 2, false, ""},
      {3, 3, false, least(3)},
      {4, 3, false, ""},
      {4, 4, false, least(4)},
      {5, 4, false, ""},
      {5, 5, false, least(5)},
      {6, 5, false, "Sorry; this has not been implemented yet."}};
  for (const auto& [lines, power, byMask, refusal] : cases) {
    DeleteAllLines(*session, 1);
    IdentifyCurve(lines);
    arc.fitPower = power;
    arc.maskApplied = byMask;
    ComputeDeviations(*session, 1);
    EXPECT_EQ(RefusalOf([&] { FitDeviations(*session, 1); }), refusal) << lines << " lines, power " << power;
    EXPECT_EQ(arc.fitDone, refusal.empty());
  }
}

TEST_F(CalibrationTest, ResetDropsTheFitAndPowersKeepTheirOwnCoefficients) {
  IdentifyCurve(8);
  ComputeDeviations(*session, 1);
  arc.fitPower = 2;
  FitDeviations(*session, 1);
  const Polynomial parabola = arc.DeviationCoef[2];
  arc.fitPower = 3;
  EXPECT_EQ(CorrectionAt(arc, 500), 0) << "power 3 was never fitted";
  FitDeviations(*session, 1);
  EXPECT_EQ(arc.DeviationCoef[2].a, parabola.a);
  AcceptDeviations(*session, 1);
  EXPECT_TRUE(session->workflow.saveSpectrumEnabled);
  ResetDeviations(*session, 1);
  EXPECT_EQ(RefusalOf([&] { AcceptDeviations(*session, 1); }), "Hey, you need to do the fit!");
  EXPECT_EQ(RefusalOf([&] { RequireCalibrated(*session, 1); }),
            "Hey, you have not completed the line identification and fitting process!");
}

TEST_F(CalibrationTest, PlotShowsADotPerLineAndTheCurveOnceFitted) {
  IdentifyCurve(6);
  ComputeDeviations(*session, 1);
  const auto count = [&](auto kind) {
    const Drawing drawing = PlotDeviations(*session, 1, {14000, 6000});
    return std::count_if(drawing.items.begin(), drawing.items.end(),
                         [](const auto& item) { return std::holds_alternative<decltype(kind)>(item); });
  };
  EXPECT_EQ(count(Circle{}), 7) << "with the one of the legend";
  EXPECT_EQ(count(Polyline{}), 0);
  FitDeviations(*session, 1);
  EXPECT_EQ(count(Polyline{}), 1);
}

TEST_F(CalibrationTest, NoDeviationLeavesTheSpectrumAndPutsItsScaleInThePlaceOfEveryOther) {
  SetArc(1, 0);
  const auto before = SetObject();
  const int cards = object.cardCount;
  for (const char* old :
       {"CRPIX1  = 100", "CRVAL1  = 12.5", "CTYPE1  = 'RA---TAN'", "CTYPE2  = 'DEC--TAN'", "CDELT1  = 3",
        "CD1_1   = 7", "CD2_2   = 7", "PC1_1   = 1", "LTV1    = -4", "LTM1_1  = 1", "WCSAXES = 2",
        "CRPIX1A = 5", "PV2_1   = 0", "WAT0_001= 'x'", "DATASEC = '[1:9,1:2]'"})
    AppendCard(object, old);
  SetCards(object, CardsOf(object));
  CorrectDispersion(*session);
  const auto after = object.spectrum.Range(1, pixels);
  EXPECT_EQ(std::vector<double>(after.begin(), after.end()), before);
  ASSERT_EQ(object.cardCount, cards + 4);
  const auto added = CardsOf(object);
  EXPECT_EQ(
      std::vector(added.end() - 4, added.end()),
      (std::vector<std::string>{"CRVAL1  =             4001.250 / Wavelength of first pixel in Angstroms",
                                "CRPIX1  =                    1 / The pixel of that wavelength",
                                "CD1_1   =            1.2500000 / Wavelength scale in Angstroms / pixel",
                                "HISTORY  Halmek corrected the dispersion to linear."}));
  EXPECT_TRUE(session->workflow.saveObjectEnabled && !session->workflow.correctEnabled);
  EXPECT_EQ(CorrectionRefusal(), "This file has already been dispersion corrected.");
}

TEST_F(CalibrationTest, TwoArcsAreAveragedAndBothMustBeFitted) {
  session->arcCount = 2;
  SetArc(1, 0.5);
  SetArc(2, 1.5);
  session->arc[2].linIntercept = 4010;
  session->arc[2].linSlope = 1.35;
  SetObject();
  EXPECT_NEAR(CorrectionShift(*session, 500), 1.0 / 1.3, 1e-12);
  session->arc[2].fitDone = false;
  EXPECT_EQ(CorrectionRefusal(),
            "Hey, if you have only 1 calibrated arc, select 1 under # Arc files or calibrate the "
            "uncalibrated arc file.");
  session->arc[2].fitDone = true;
  CorrectDispersion(*session);
  EXPECT_NEAR(session->dispStep, 1.3, 1e-12);
  EXPECT_NEAR(session->dispStart, 4005 + 1.3, 1e-9);
}

TEST_F(CalibrationTest, RefusalsChangeNothing) {
  EXPECT_EQ(CorrectionRefusal(), "Hey, no Object file has been loaded!");
  const auto before = SetObject();
  EXPECT_EQ(CorrectionRefusal(), "Hey, you need to identify two or more lines of Arc 1 first!");
  SetArc(1, 2);
  object.cardCount = lastCard - 2;
  EXPECT_EQ(CorrectionRefusal(), "Error: 9  Subscript out of range.");
  EXPECT_EQ(object.cardCount, lastCard - 2);
  EXPECT_EQ(object.spectrum(500), before[499]);
  object.cardCount = 6;
  arc.linSlope = 1e-9;
  EXPECT_EQ(CorrectionRefusal(),
            "Hey, the arcs give no wavelength scale!  Please identify their lines again.");
  object.cd1_1Card = 5;
  EXPECT_EQ(CorrectionRefusal(), "This file has already been dispersion corrected.");
}

TEST_F(CalibrationTest, DoubtfulCalibrationsWarn) {
  SetArc(1, 0);
  SetObject();
  arc.fitIsStale.fill(true);
  EXPECT_EQ(CorrectDispersion(*session),
            Warnings{"The lines of Arc 1 have changed since their deviations were fitted."});
  SetSpectrum(*session, slots::object, std::vector<double>(990, 5.0));
  arc.fitPower = 2;
  EXPECT_EQ(CorrectDispersion(*session),
            (Warnings{"The deviations of Arc 1 were not fitted with power 2: no correction comes from it.",
                      "Arc 1 has 1000 pixels, the object 990: were they trimmed alike?"}));
}

TEST_F(CalibrationTest, FarShiftsLoseTheirFluxWithoutHarm) {
  for (double shift : {1e300, -1e300, 5000.0, -5000.0}) {
    SetArc(1, shift);
    SetObject();
    EXPECT_NO_THROW(CorrectDispersion(*session)) << shift;
  }
}

// What the correction does to the light: how much there is, and where it lies afterwards.
class Flux : public CalibrationTest {
 protected:
  double Uniform(double low, double high) {
    return std::uniform_real_distribution<double>(low, high)(random);
  }

  // One or two arcs with smooth correction functions of up to ten pixels whose slope stays below 0.2, or with
  // constant ones of whole numbers of quarters of a pixel.
  void SetRandomArcs(int n) {
    s.arcCount = 1 + static_cast<int>(random() % 2);
    const bool isConstant = random() % 4 == 0;
    for (int a = 1; a <= 2; ++a) {
      Arc& set = s.arc[a];
      set.LineCount = 2;
      set.fitDone = true;
      set.linIntercept = Uniform(3500, 9000);
      set.linSlope = isConstant ? 1.25 : Uniform(0.3, 3);
      set.fitPower = 1 + static_cast<int>(random() % 5);
      Polynomial& curve = set.DeviationCoef[set.fitPower];
      const double constant = Uniform(-5, 5);
      curve = {.power = set.fitPower, .a = {isConstant ? std::round(4 * constant) / 4 : constant}};
      // The terms above the constant share 5 pixels at the last pixel, or what the slope allows.
      const double share = std::min(5.0, 0.19 * n / set.fitPower) / set.fitPower;
      for (int k = 1; k <= set.fitPower && !isConstant; ++k)
        curve.a[static_cast<size_t>(k)] = Uniform(-share, share) / std::pow(n, k);
    }
    // The functions are in pixels so far.
    const double step = s.arcCount == 1 ? s.arc[1].linSlope : (s.arc[1].linSlope + s.arc[2].linSlope) / 2;
    for (Arc& set : s.arc)
      for (double& coefficient : set.DeviationCoef[set.fitPower].a)
        coefficient *= step;
  }

  std::vector<double> Corrected(const std::vector<double>& before) {
    SetSpectrum(s, slots::object, before);
    CorrectDispersion(s);
    const auto values = object.spectrum.Range(1, static_cast<int>(before.size()));
    return {values.begin(), values.end()};
  }

  std::mt19937 random{3};
  Session& s = *session;
};

TEST_F(Flux, GoesToThePlaceOfItsWavelengthAndIsConservedAwayFromTheEdges) {
  int roundsWithInnerLight = 0;
  for (int round = 0; round < 300; ++round) {
    SCOPED_TRACE(round);
    const int n = static_cast<int>(std::pow(3000, Uniform(0, 1)));
    SetRandomArcs(n);
    // What is put back at either end, where light leaves or nothing comes to.
    const double lastOfLow = std::trunc(CorrectionShift(s, 1)) + 1,
                 firstOfHigh = n - std::trunc(CorrectionShift(s, n));
    std::vector<double> before, inner, wavelengths, places, expected(static_cast<size_t>(n));
    for (int i = 1; i <= n; ++i) {
      const double flux = Uniform(1, 1000), shift = CorrectionShift(s, i), place = i - shift;
      double wavelength = 0;  // by the arcs
      for (const Arc& of : std::span(s.arc).subspan(1, static_cast<size_t>(s.arcCount)))
        wavelength += (of.linIntercept + of.linSlope * i - CorrectionAt(of, i)) / s.arcCount;
      wavelengths.push_back(wavelength);
      places.push_back(place);
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
    for (size_t p = 0; p < after.size(); ++p)
      ASSERT_NEAR(s.dispStart + s.dispStep * (places[p] - 1), wavelengths[p], 1e-8) << "pixel " << p + 1;
    const std::vector<double> innerAfter = Corrected(inner);
    const double sum = std::accumulate(inner.begin(), inner.end(), 0.0);
    EXPECT_NEAR(std::accumulate(innerAfter.begin(), innerAfter.end(), 0.0), sum, 1e-12 * sum);
    roundsWithInnerLight += sum > 0;
  }
  EXPECT_GT(roundsWithInnerLight, 200);
}

}  // namespace
}  // namespace halmek::test
