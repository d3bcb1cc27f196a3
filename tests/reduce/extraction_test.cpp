// From the frame to the normalised spectrum: background, extraction, continuum.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <map>
#include <memory>
#include <numeric>
#include <string>
#include <tuple>
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
  const auto pixel = [](int c, int r) { return std::fmod(c * c * 0.37 + r * 71.3, 50) + r * r / 7.0; };
  for (int power : {0, 1, 2}) {
    std::vector<double> together, alone;
    SetFrame(s, 40, 100, pixel);
    Fit(power, 19, 10, 84, 80);
    const auto rows = s.background.BackgroundRows.Range(1, s.background.BackgroundCount);
    EXPECT_EQ(std::vector<double>(rows.begin(), rows.end()),
              (std::vector<double>{10, 11, 12, 13, 14, 15, 16, 17, 18, 19, 80, 81, 82, 83, 84}));
    for (int c = 1; c <= 40; ++c)
      together.push_back(BackgroundAt(s.background, c, 7));
    for (int column = 1; column <= 40; ++column) {
      SetFrame(s, 1, 100, [&](int, int r) { return pixel(column, r); });
      Fit(power, 10, 19, 80, 84);
      alone.push_back(BackgroundAt(s.background, 1, 7));
    }
    EXPECT_EQ(together, alone) << power;
  }
}

TEST_F(Extraction, TheBackgroundIsRightOnEveryRowWhereverItsRowsLie) {
  // The two ranges, and the highest power that so many rows allow.
  const struct {
    int first1, last1, first2, last2, highest;
  } selections[] = {{1, 10, 491, 500, 2},    {1, 90, 411, 500, 2}, {498, 499, 500, 500, 2},
                    {1, 1, 2, 3, 2},         {1, 1, 499, 500, 2},  {250, 256, 250, 250, 2},
                    {499, 499, 500, 500, 1}, {1, 1, 500, 500, 1}};
  for (const auto& at : selections)
    for (int power = 1; power <= at.highest; ++power) {
      const auto truth = [&](int c, int r) {
        const int t = r - 250;
        return 1e4 + (c == 2 ? 7 * t + (power == 2 ? 3 * t * t : 0) : 0);
      };
      SetFrame(s, 2, 500, [&](int c, int r) {
        // Four rows of scatter to which lines and parabolas are blind.
        const int k = r - at.first1;
        const bool isScattered = at.last1 - at.first1 >= 6 && k >= 3 && k <= 6;
        return truth(c, r) + (isScattered ? std::array{1e3, -3e3, 3e3, -1e3}[static_cast<size_t>(k) - 3] : 0);
      });
      Fit(power, at.first1, at.last1, at.first2, at.last2);
      for (int c : {1, 2}) {
        double error = 0, largest = 0;
        for (int row = 1; row <= 500; ++row) {
          error = std::max(error, std::fabs(BackgroundAt(s.background, c, row) - truth(c, row)));
          largest = std::max(largest, truth(c, row));
        }
        EXPECT_LT(error, 1e-10 * largest)
            << "power " << power << " from row " << at.first1 << ", column " << c;
      }
    }
}

TEST_F(Extraction, ABackgroundThatCannotBeFittedIsRefusedAndTheOldFitStays) {
  SetFrame(s, 3, 300, [](int, int r) { return r; });
  EXPECT_EQ(RefusalOf([&] { FitBackground(s); }), "Hey, you need to set the aperture(s).");
  EXPECT_EQ(RefusalOf([&] { AcceptBackground(s); }),
            "Background fit was not done.  Fit background or press 'Cancel'.");
  Fit(1, 1, 10, 21, 30);
  const std::string ranges = "The background ranges have ", please = " at most.  Please try again.";
  const struct {
    int power, last1, last2;  // the ranges begin at rows 1 and 151
    std::string message;
  } cases[] = {
      {3, 10, 160, "Sorry, power 3 has not been implemented yet.  Try 0, 1, or 2."},
      {2, 101, 250, ranges + "201 rows.  For power 2 they can have 200" + please},
      {1, 91, 241, ranges + "182 rows.  For power 1 they can have 181" + please},
      {2, 1, 151, "Hey, for a fit of power 2 you need 3 points (and preferably more).  Please try again."},
      {0, 100, 250, ""},
      {1, 90, 241, ""},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(RefusalOf([&] { Fit(c.power, 1, c.last1, 151, c.last2); }), c.message) << c.power;
    EXPECT_TRUE(s.background.backgroundFitted);
    EXPECT_EQ(s.background.BackgroundCount * 10 + s.background.fittedPower == 201, !c.message.empty());
  }
  AcceptBackground(s);
  EXPECT_TRUE(s.workflow.crunchEnabled && s.workflow.sliceStatus == doneText);
  const auto state = [&] {
    const Background& b = s.background;
    return std::tuple(BackgroundAt(b, 1, 280), b.fittedPower, b.BackgroundCount, b.backgroundFitted,
                      s.workflow.crunchEnabled);
  };
  const auto before = state();
  s.image(7, 1) = 5000;
  s.image(7, 2) = 1e307;
  for (int power : {1, 2}) {
    EXPECT_EQ(RefusalOf([&] { Fit(power, 1, 10, 40, 60); }), "Error: 6  Error: Overflow.") << power;
    EXPECT_EQ(state(), before) << power;
  }
  EXPECT_NE(RefusalOf([&] { SetAperture(s, 0, 5); }), "");
  CancelBackground(s);
  EXPECT_EQ(RefusalOf([&] { FitBackground(s); }), "Hey, you need to set the aperture(s).");
}

TEST_F(Extraction, SumsTheApertureLessTheFittedBackground) {
  // Column c holds c * (a background of that power) with 90, 110 and 100 more in rows 20 to 22.
  for (int power : {0, 1, 2}) {
    SetFrame(s, 3, 40, [&](int c, int r) {
      const double star = r < 20 || r > 22 ? 0 : r == 20 ? 90 : r == 21 ? 110 : 100;
      return c * (10 + (power > 0 ? 0.5 * r : 0) + (power > 1 ? 0.25 * r * r : 0) + star);
    });
    AppendCard(s.slot[0], "BZERO   = 0");
    Fit(power, 1, 10, 30, 40);
    s.background.backgroundPower = 0;
    for (int first : {20, 22}) {
      SetAperture(s, first, 42 - first);
      CrunchFrame(s);
      for (int c = 1; c <= 3; ++c)
        EXPECT_NEAR(Spectrum(c), c * 300, 1e-8) << power;
      EXPECT_NEAR(s.slot[3].spectrumPeak, 900, 1e-8);
    }
  }
  const Slot& spectrum = s.slot[3];
  EXPECT_EQ(s.slot[0].cardCount * 10 + spectrum.cardCount, 78);
  EXPECT_EQ(spectrum.card(7), "BZERO   = 0");
  EXPECT_EQ(spectrum.card(8), "HISTORY  Halmek collapsed data from 2-D to 1-D, rows 20 to 22");
  EXPECT_EQ(spectrum.fileName, "frame_1D.fts");
  EXPECT_TRUE(s.workflow.normalizeEnabled && s.workflow.crunchStatus == doneText);

  SetFrame(s, 3, 40, [](int, int r) { return r == 20 ? 1 : 5; });
  SetAperture(s, 20, 20);
  Fit(0, 1, 10, 30, 40);
  CrunchFrame(s);
  EXPECT_EQ(std::pair(Spectrum(2), spectrum.spectrumPeak), std::pair(-4.0, 0.0));
}

TEST_F(Extraction, CrunchIsRefusedWithoutApertureFitColumnsOrRoom) {
  const std::string noFit = "Hey, you need to set the aperture and fit the background first!";
  const auto refusal = [&] { return RefusalOf([&] { CrunchFrame(s); }); };
  SetFrame(s, 3, 10, [](int, int) { return 1; });
  Fit(0, 1, 2, 8, 9);
  EXPECT_EQ(refusal(), noFit);
  SetAperture(s, 5, 5);
  ClearBackgroundFit(s);
  EXPECT_EQ(refusal(), noFit);
  FitBackground(s);
  while (s.slot[0].cardCount < 200)
    AppendCard(s.slot[0], "COMMENT");
  EXPECT_EQ(refusal(), "Error: 9  Subscript out of range.");
  EXPECT_EQ(s.slot[3].cardCount, 0);
  // A file that is refused for having no columns leaves its header behind.
  s.slot[0].naxis1 = 0;
  EXPECT_EQ(refusal(), noFit);
  EXPECT_EQ(RefusalOf([&] { FitBackground(s); }), "Hey, no 2-D file has been loaded!");
}

TEST_F(Extraction, AutomaticPointsAreTheLeftmostMaximaOfTheBins) {
  std::vector<double> values(45, 2);
  std::fill(values.begin() + 10, values.begin() + 20, -1);
  values[3] = values[6] = 9;
  values[23] = 8;
  s.continuum.continuumPower = 2;
  const std::tuple<int, int, std::vector<double>> cases[] = {
      {25, 5, {4, 7, 24}}, {8, 2, {1, 4, 5, 7}}, {45, 10, {4, 24, 31, 41}}};
  for (const auto& [pixels, interval, columns] : cases) {
    SetSpectrum(s, 3, {values.begin(), values.begin() + pixels});
    s.continuum.continuumInterval = interval;
    FitContinuum(s);
    const auto points = s.continuum.ContinuumPointColumn.Range(1, s.continuum.continuumPointCount);
    EXPECT_EQ(std::vector<double>(points.begin(), points.end()), columns);
    EXPECT_EQ(s.continuum.ContinuumPointValue(2), values[static_cast<size_t>(columns[1]) - 1]);
  }
}

TEST_F(Extraction, ARefusedAutomaticFitLeavesThePointsThatWereSet) {
  const std::string tooMany =
      "There can be 2000 continuum points at most.  Please delete some or choose a larger interval.";
  SetSpectrum(s, 3, std::vector<double>(3000, 1));
  for (int k = 1; k <= 2000; ++k)
    AddContinuumPoint(s, k + 10);
  EXPECT_EQ(RefusalOf([&] { AddContinuumPoint(s, 2011); }), tooMany);
  for (const auto& [interval, message] : std::map<int, std::string>{
           {0, "Hey, the sample interval must be 1 or more.  Please try again."},
           {1000, "Hey, for a fit of power 4 you need 5 points (and preferably more).  Please try again."},
           {1, tooMany}}) {
    s.continuum.continuumInterval = interval;
    EXPECT_EQ(RefusalOf([&] { FitContinuum(s); }), message);
    EXPECT_EQ(s.continuum.continuumPointCount + s.continuum.ContinuumPointColumn(1), 2006) << interval;
  }
}

TEST_F(Extraction, PointsAreSetAndDeletedByHandNearTheClick) {
  std::vector<double> values(40, -1);
  values[0] = 5;
  values[7] = 7;
  values[37] = values[38] = 3;
  SetSpectrum(s, 3, values);
  const Continuum& c = s.continuum;
  for (int click : {-4, 4, 42})
    EXPECT_TRUE(AddContinuumPoint(s, click)) << click;
  EXPECT_FALSE(AddContinuumPoint(s, 45) || AddContinuumPoint(s, 20));
  EXPECT_FALSE(DeleteContinuumPoint(s, 18) || DeleteContinuumPoint(s, 28));
  EXPECT_EQ(c.ContinuumPointColumn(1), 1);
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
    // The same column a second time is no further point.
    AddContinuumPoint(s, 6);
    for (int k = 0; k <= power; ++k) {
      EXPECT_TRUE(RefusalOf([&] { FitContinuum(s); }).starts_with("Hey, for a fit of power "));
      AddContinuumPoint(s, 6 + 12 * k);
    }
    DeleteContinuumPoint(s, 6);
    FitContinuum(s);
    for (int k = 0; k <= power; ++k)
      EXPECT_NEAR(s.continuum.ContinuumCoefficients[power](6 + 12 * k), values[5 + 12 * k], 1e-5) << power;
  }
}

TEST_F(Extraction, NormalisingTwiceDividesTwiceAndRevertUndoesTheLast) {
  std::vector<double> values(50);
  std::iota(values.begin(), values.end(), 101);
  SetSpectrum(s, 3, values);
  EXPECT_FALSE(RevertContinuum(s));
  s.continuum.continuumInterval = 1;
  s.continuum.continuumPower = 2;
  FitContinuum(s);
  EXPECT_EQ(NormalizeContinuum(s), Warnings{});
  const double once = Spectrum(10);
  EXPECT_NEAR(once, 150, 1e-6);
  // Another power chosen meanwhile does not change what is divided by.
  s.continuum.continuumPower = 5;
  NormalizeContinuum(s);
  EXPECT_NEAR(Spectrum(10), 150 * 150 / 110.0, 1e-6);
  AcceptContinuum(s);
  EXPECT_TRUE(s.workflow.saveSpectrumEnabled && s.workflow.continuumStatus == doneText);
  EXPECT_TRUE(RevertContinuum(s));
  EXPECT_EQ(Spectrum(10), once);
  EXPECT_EQ(s.continuum.continuumPointCount + s.continuum.continuumFitDone, 0);
}

TEST_F(Extraction, APixelWhereTheFitIsZeroStaysAndIsWarnedOf) {
  SetSpectrum(s, 3, {3, 4, 5, 6, 7});
  s.continuum.continuumFitDone = true;
  s.continuum.ContinuumCoefficients[s.continuum.fittedPower] = {.power = 1, .a = {-3, 1}};
  s.continuum.continuumFitMax = 2;
  EXPECT_EQ(NormalizeContinuum(s), Warnings{"The fitted continuum is zero or negative at 3 pixels."});
  EXPECT_EQ(Spectrum(1) * 100 + Spectrum(3) * 10 + Spectrum(5), -300 + 50 + 7);
}

}  // namespace
}  // namespace halmek::test
