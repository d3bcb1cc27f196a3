// From the frame to the normalised spectrum: background, extraction, continuum.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <memory>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include "fits/header.h"
#include "reduce/background.h"
#include "reduce/column_slice.h"
#include "reduce/continuum.h"
#include "reduce/crunch.h"
#include "support/test_session.h"

namespace halmek::test {
namespace {

class Extraction : public testing::Test {
 protected:
  void Fit(int power, int first1, int last1, int first2, int last2) {
    s.background.backgroundPower = power;
    SetBackgroundRanges(s, first1, last1, first2, last2);
    FitBackground(s);
  }
  double Spectrum(int i) const { return s.slot[3].spectrum(i); }

  std::unique_ptr<Session> session = SessionIn(".");
  Session& s = *session;
};

TEST_F(Extraction, EveryColumnGetsTheVeryFitOfItsOwnPixels) {
  std::mt19937 random(34);
  SetFrame(s, 40, 100, [&](int, int r) { return std::ldexp(random(), -17) + r * r / 7.0; });
  const std::vector<double> rows{10, 11, 12, 13, 14, 15, 16, 17, 18, 19, 80, 81, 82, 83, 84};
  for (int power : {0, 1, 2}) {
    power == 0 ? Fit(power, 10, 19, 80, 84) : Fit(power, 19, 10, 84, 80);
    ASSERT_EQ(s.background.BackgroundCount, 15);
    for (int c = 1; c <= 40; ++c) {
      std::vector<double> values;
      for (int k = 1; k <= 15; ++k) {
        EXPECT_EQ(s.background.BackgroundRows(k), rows[k - 1]);
        values.push_back(s.image(static_cast<int>(rows[k - 1]), c));
      }
      const auto line = FitLinear(rows, values);
      const auto parabola = FitPower2(rows, values);
      std::sort(values.begin(), values.end());
      const double at7[] = {values[7], line->a0 + line->a1 * 7,
                            parabola->a0 + parabola->a1 * 7 + parabola->a2 * 49};
      EXPECT_EQ(BackgroundAt(s.background, c, 7), at7[power]);
    }
  }
  SetFrame(s, 1, 100, [](int, int r) { return r <= 19 ? r - 9 : r - 69; });
  Fit(0, 10, 19, 80, 89);
  EXPECT_EQ(BackgroundAt(s.background, 1, 50), 10.5);
}

TEST_F(Extraction, ABackgroundThatCannotBeFittedIsRefusedAndTheOldFitStays) {
  SetFrame(s, 3, 300, [](int, int r) { return r; });
  EXPECT_EQ(RefusalOf([&] { FitBackground(s); }), "Hey, you need to set the aperture(s).");
  EXPECT_EQ(RefusalOf([&] { AcceptBackground(s); }),
            "Background fit was not done.  Fit background or press 'Cancel'.");
  Fit(1, 1, 10, 21, 30);
  const struct {
    int power, last1, last2;  // the ranges begin at rows 1 and 151
    std::string message;
  } cases[] = {
      {3, 10, 160, "Sorry, power 3 has not been implemented yet.  Try 0, 1, or 2."},
      {2, 101, 250,
       "The background ranges have 201 rows.  For power 2 they can have 200 at most.  Please try again."},
      {1, 91, 241,
       "The background ranges have 182 rows.  For power 1 they can have 181 at most.  Please try again."},
      {2, 1, 151, "Hey, for a fit of power 2 you need 3 points (and preferably more).  Please try again."},
      {0, 100, 250, ""},
      {1, 90, 241, ""},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(RefusalOf([&] { Fit(c.power, 1, c.last1, 151, c.last2); }), c.message) << c.power;
    EXPECT_TRUE(s.background.backgroundFitted);
    if (!c.message.empty()) {
      EXPECT_EQ(s.background.BackgroundCount * 10 + s.background.fittedPower, 201);
    }
  }
  AcceptBackground(s);
  EXPECT_TRUE(s.workflow.crunchEnabled);
  EXPECT_EQ(s.workflow.sliceStatus, doneText);
  EXPECT_EQ(RefusalOf([&] { SetAperture(s, 0, 5); }),
            "Row 0 is outside the frame, which has rows 1 to 300.  Please try again.");
  CancelBackground(s);
  EXPECT_EQ(RefusalOf([&] { FitBackground(s); }), "Hey, you need to set the aperture(s).");
}

TEST_F(Extraction, SumsTheApertureLessTheFittedBackground) {
  // Column c holds c * (a background of that power) with 90, 110 and 100 more in rows 20 to 22.
  const auto backgroundAt = [](int power, int r) {
    return power == 0 ? 10 : power == 1 ? 5 + 0.5 * r : 5 + 0.5 * r + 0.25 * r * r;
  };
  for (int power : {0, 1, 2}) {
    SetFrame(s, 3, 40, [&](int c, int r) {
      return c * (backgroundAt(power, r) + (r < 20 || r > 22 ? 0 : r == 20 ? 90 : r == 21 ? 110 : 100));
    });
    AppendCard(s.slot[0], "BZERO   = 0");
    Fit(power, 1, 10, 30, 40);
    s.background.backgroundPower = 0;
    for (bool reversed : {false, true}) {
      reversed ? SetAperture(s, 22, 20) : SetAperture(s, 20, 22);
      CrunchFrame(s);
      for (int c = 1; c <= 3; ++c)
        EXPECT_NEAR(Spectrum(c), c * 300, 1e-8) << power;
      EXPECT_NEAR(s.slot[3].spectrumPeak, 900, 1e-8);
      EXPECT_EQ(s.slot[3].cardCount, 8);
      EXPECT_EQ(s.slot[3].card(7), "BZERO   = 0");
      const std::string history = "HISTORY:  Halmek collapsed data from 2-D to 1-D on ";
      EXPECT_TRUE(s.slot[3].card(8).starts_with(history + "20"));
      EXPECT_EQ(s.slot[3].card(8).size(), history.size() + 11);
      EXPECT_EQ(s.slot[0].cardCount, 7);
    }
  }
  for (const std::string name : {"star.fits", "star", "m57.v.fts"}) {
    s.slot[0].fileName = name;
    CrunchFrame(s);
    EXPECT_EQ(s.slot[3].fileName, (name[0] == 'm' ? "m57.v" : "star") + std::string("_1D.fts"));
  }
  EXPECT_TRUE(s.workflow.normalizeEnabled);
  EXPECT_EQ(s.workflow.crunchStatus, doneText);
  SetFrame(s, 3, 40, [](int, int r) { return r == 20 ? 1 : 5; });
  Fit(0, 1, 10, 30, 40);
  SetAperture(s, 20, 20);
  CrunchFrame(s);
  EXPECT_EQ(Spectrum(2), -4);
  EXPECT_EQ(s.slot[3].spectrumPeak, 0);
}

TEST_F(Extraction, CrunchIsRefusedWithoutApertureFitOrRoom) {
  const std::string noFit = "Hey, you need to set the aperture and fit the background first!";
  SetFrame(s, 3, 10, [](int, int) { return 1; });
  Fit(0, 1, 2, 8, 9);
  EXPECT_EQ(RefusalOf([&] { CrunchFrame(s); }), noFit);
  SetAperture(s, 5, 5);
  ClearBackgroundFit(s);
  EXPECT_EQ(RefusalOf([&] { CrunchFrame(s); }), noFit);
  FitBackground(s);
  while (s.slot[0].cardCount < 200)
    AppendCard(s.slot[0], "COMMENT");
  EXPECT_EQ(RefusalOf([&] { CrunchFrame(s); }), "Error: 9  Subscript out of range.");
  EXPECT_EQ(s.slot[3].fileName, "");
  EXPECT_EQ(s.slot[3].cardCount, 0);
}

TEST_F(Extraction, AutomaticPointsAreTheLeftmostMaximaOfTheBins) {
  std::vector<double> values(45, 2);
  std::fill(values.begin() + 10, values.begin() + 20, -1);
  values[3] = values[6] = 9;
  values[23] = 8;
  const struct {
    int pixels, interval;
    std::vector<double> columns;
  } cases[] = {{25, 5, {4, 7, 24}}, {34, 10, {4, 24, 31}}, {8, 2, {1, 4, 5, 7}}, {45, 10, {4, 24, 31, 41}}};
  for (const auto& c : cases) {
    SetSpectrum(s, 3, {values.begin(), values.begin() + c.pixels});
    s.continuum.continuumInterval = c.interval;
    s.continuum.continuumPower = 2;
    FitContinuum(s);
    const auto points = s.continuum.ContinuumPointColumn.Range(1, s.continuum.continuumPointCount);
    EXPECT_EQ(std::vector<double>(points.begin(), points.end()), c.columns);
    EXPECT_EQ(s.continuum.ContinuumPointValue(2), values[static_cast<size_t>(c.columns[1]) - 1]);
  }
}

TEST_F(Extraction, ARefusedAutomaticFitLeavesThePointsThatWereSet) {
  const struct {
    int interval;
    std::string message;
  } cases[] = {
      {0, "Hey, the sample interval must be 1 or more.  Please try again."},
      {1000, "Hey, for a fit of power 4 you need 5 points (and preferably more).  Please try again."},
      {1, "There can be 2000 continuum points at most.  Please delete some or choose a larger interval."},
  };
  for (const auto& c : cases) {
    SetSpectrum(s, 3, std::vector<double>(3000, 1));
    s.continuum.continuumPointCount = 0;
    for (int k = 1; k <= 2000; ++k)
      AddContinuumPoint(s, k + 10);
    EXPECT_EQ(RefusalOf([&] { AddContinuumPoint(s, 2011); }), cases[2].message);
    s.continuum.continuumInterval = c.interval;
    EXPECT_EQ(RefusalOf([&] { FitContinuum(s); }), c.message);
    EXPECT_EQ(s.continuum.continuumPointCount, 2000) << c.interval;
    EXPECT_EQ(s.continuum.ContinuumPointColumn(1), 6) << c.interval;
  }
}

TEST_F(Extraction, PointsAreSetAndDeletedByHandNearTheClick) {
  std::vector<double> values(40, -1);
  values[0] = 5;
  values[7] = 7;
  values[37] = values[38] = 3;
  SetSpectrum(s, 3, values);
  const Continuum& c = s.continuum;
  for (const auto& [click, column] :
       std::vector<std::pair<int, int>>{{-4, 1}, {4, 8}, {42, 38}, {45, 0}, {20, 0}}) {
    const int before = c.continuumPointCount;
    EXPECT_EQ(AddContinuumPoint(s, click), column != 0) << click;
    EXPECT_EQ(c.continuumPointCount, before + (column != 0));
    EXPECT_TRUE(column == 0 || c.ContinuumPointColumn(c.continuumPointCount) == column) << click;
  }
  EXPECT_FALSE(DeleteContinuumPoint(s, 18));
  EXPECT_FALSE(DeleteContinuumPoint(s, 28));
  EXPECT_TRUE(DeleteContinuumPoint(s, 9));
  EXPECT_EQ(c.continuumPointCount, 2);
  EXPECT_EQ(c.ContinuumPointColumn(1) * 100 + c.ContinuumPointColumn(2), 838);
  EXPECT_EQ(c.ContinuumPointValue(1) * 100 + c.ContinuumPointValue(2), 703);
}

TEST_F(Extraction, AManualFitPassesThroughAsManyPointsAsItHasTerms) {
  std::vector<double> values(72, 1);
  for (int k = 0; k < 6; ++k)
    values[5 + 12 * k] = 500 + 37 * (k * 7 % 11);
  SetSpectrum(s, 3, values);
  s.manualFit = -1;
  for (int power : {2, 3, 4, 5}) {
    s.continuum.continuumPower = power;
    ResetContinuum(s);
    const std::string message = "Hey, for a fit of power " + std::to_string(power) + " you need " +
                                std::to_string(power + 1) +
                                " points (and preferably more).  Please try again.";
    // The same column a second time is no further point.
    AddContinuumPoint(s, 6);
    for (int k = 0; k <= power; ++k) {
      EXPECT_EQ(RefusalOf([&] { FitContinuum(s); }), message);
      EXPECT_FALSE(s.continuum.continuumFitDone);
      AddContinuumPoint(s, 6 + 12 * k);
    }
    DeleteContinuumPoint(s, 6);
    FitContinuum(s);
    const Polynomial& fit = s.continuum.ContinuumCoefficients[power];
    for (int k = 0; k <= power; ++k)
      EXPECT_NEAR(fit(6 + 12 * k), values[5 + 12 * k], 1e-5) << power;
  }
}

TEST_F(Extraction, NormalisingTwiceDividesTwiceAndRevertUndoesTheLast) {
  std::vector<double> values;
  for (int i = 1; i <= 50; ++i)
    values.push_back(100.0 + i);
  SetSpectrum(s, 3, values);
  EXPECT_FALSE(RevertContinuum(s));
  s.continuum.continuumInterval = 1;
  s.continuum.continuumPower = 2;
  FitContinuum(s);
  EXPECT_NEAR(s.continuum.continuumFitMax, 150, 1e-6);
  EXPECT_EQ(NormalizeContinuum(s), Warnings{});
  EXPECT_NEAR(Spectrum(10), 150, 1e-6);
  EXPECT_EQ(s.continuum.continuumPointCount, 0);
  // Another power chosen meanwhile does not change what is divided by.
  s.continuum.continuumPower = 5;
  const double once = Spectrum(10);
  NormalizeContinuum(s);
  EXPECT_NEAR(Spectrum(10), 150 * 150 / 110.0, 1e-6);
  AcceptContinuum(s);
  EXPECT_TRUE(s.workflow.saveSpectrumEnabled);
  EXPECT_EQ(s.workflow.continuumStatus, doneText);
  EXPECT_TRUE(RevertContinuum(s));
  EXPECT_EQ(Spectrum(10), once);
  EXPECT_FALSE(s.continuum.continuumFitDone);
}

TEST_F(Extraction, APixelWhereTheFitIsZeroStaysAndIsWarnedOf) {
  SetSpectrum(s, 3, {3, 4, 5, 6, 7});
  s.continuum.continuumFitDone = true;
  s.continuum.ContinuumCoefficients[s.continuum.fittedPower] = {.power = 1, .a = {-3, 1}};
  s.continuum.continuumFitMax = 2;
  EXPECT_EQ(NormalizeContinuum(s), Warnings{"The fitted continuum is zero or negative at 3 pixels."});
  EXPECT_EQ(Spectrum(3), 5);
  EXPECT_EQ(Spectrum(1), -3);
  EXPECT_EQ(Spectrum(5), 7);
}

// A file that is refused for having no columns leaves its header behind.
TEST_F(Extraction, AFrameWithoutColumnsIsRefused) {
  SetFrame(s, 0, 10, [](int, int) { return 1; });
  SetAperture(s, 5, 5);
  EXPECT_NE(RefusalOf([&] {
              Fit(0, 1, 2, 8, 9);
              CrunchFrame(s);
            }),
            "");
}

}  // namespace
}  // namespace halmek::test
