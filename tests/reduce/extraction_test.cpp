// From the frame to the normalised spectrum: background, extraction, continuum, signal to noise.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <map>
#include <numeric>
#include <random>
#include <tuple>
#include <utility>

#include "fits/header.h"
#include "reduce/background.h"
#include "reduce/column_slice.h"
#include "reduce/continuum.h"
#include "reduce/crunch.h"
#include "reduce/signal_to_noise.h"
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

TEST_F(Extraction, TheBackgroundIsRightOnEveryRowWhereverItsRowsLie) {
  // The ends of the two ranges, and the highest power that so many rows allow.
  const std::array<int, 5> selections[] = {
      {10, 1, 500, 491, 2}, {1, 90, 411, 500, 2},    {498, 499, 500, 500, 2}, {1, 1, 2, 3, 2},
      {1, 1, 499, 500, 2},  {250, 256, 250, 250, 2}, {499, 499, 500, 500, 1}, {1, 1, 500, 500, 1}};
  for (const auto& [first1, last1, first2, last2, highest] : selections)
    for (int power = 1; power <= highest; ++power) {
      const auto truth = [p = power](int c, int r) {
        const int t = r - 250;
        return 1e4 + (c == 2 ? 7 * t + (p == 2 ? 3 * t * t : 0) : 0);
      };
      SetFrame(s, 2, 500, [&, low = std::min(first1, last1), high = std::max(first1, last1)](int c, int r) {
        // Four rows of scatter to which lines and parabolas are blind.
        const int k = r - low;
        const bool isScattered = high - low >= 6 && k >= 3 && k <= 6;
        return truth(c, r) + (isScattered ? std::array{1e3, -3e3, 3e3, -1e3}[static_cast<size_t>(k) - 3] : 0);
      });
      Fit(power, first1, last1, first2, last2);
      for (int c : {1, 2})
        for (int row = 1; row <= 500; ++row)
          ASSERT_NEAR(BackgroundAt(s.background, c, row), truth(c, row),
                      1e-10 * std::max(truth(c, 1), truth(c, 500)))
              << "power " << power << " from row " << first1 << ", column " << c << ", row " << row;
    }
}

TEST_F(Extraction, ABackgroundThatCannotBeFittedIsRefusedAndTheOldFitStays) {
  SetFrame(s, 3, 300, [](int, int r) { return r; });
  EXPECT_EQ(RefusalOf([&] { FitBackground(s); }), "Hey, you need to set the aperture(s).");
  EXPECT_EQ(RefusalOf([&] { AcceptBackground(s); }),
            "Background fit was not done.  Fit background or press 'Cancel'.");
  Fit(1, 1, 10, 21, 30);
  const std::string ranges = "The background ranges have ", please = " at most.  Please try again.";
  // The power, the ends of ranges that begin at rows 1 and 151, and what is said.
  const std::tuple<int, int, int, std::string> cases[] = {
      {3, 10, 160, "Sorry, power 3 has not been implemented yet.  Try 0, 1, or 2."},
      {2, 101, 250, ranges + "201 rows.  For power 2 they can have 200" + please},
      {1, 91, 241, ranges + "182 rows.  For power 1 they can have 181" + please},
      {2, 1, 151, "Hey, for a fit of power 2 you need 3 points (and preferably more).  Please try again."},
      {0, 100, 250, ""},
      {1, 90, 241, ""}};
  for (const auto& [power, last1, last2, message] : cases) {
    EXPECT_EQ(RefusalOf([&, p = power, l1 = last1, l2 = last2] { Fit(p, 1, l1, 151, l2); }), message);
    EXPECT_TRUE(s.background.backgroundFitted);
    EXPECT_EQ(s.background.BackgroundCount * 10 + s.background.fittedPower == 201, !message.empty());
  }
  AcceptBackground(s);
  EXPECT_TRUE(s.workflow.crunchEnabled && s.workflow.sliceStatus == doneText);
  const Background& b = s.background;
  const auto state = [&] { return std::tuple(BackgroundAt(b, 1, 280), b.fittedPower, b.BackgroundCount); };
  const auto before = state();
  s.image(7, 1) = 5000;
  s.image(7, 2) = 1e307;
  for (int power : {1, 2}) {
    EXPECT_EQ(RefusalOf([&] { Fit(power, 1, 10, 40, 60); }), "Error: 6  Error: Overflow.") << power;
    EXPECT_EQ(state(), before) << power;
  }
  EXPECT_TRUE(b.backgroundFitted && s.workflow.crunchEnabled);
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
  auto expected = CardsOf(s.slot[0]);
  expected.emplace_back("HISTORY  Halmek collapsed data from 2-D to 1-D, rows 20 to 22");
  EXPECT_EQ(CardsOf(spectrum), expected);
  EXPECT_EQ(spectrum.fileName, "frame_1D.fts");
  EXPECT_TRUE(s.workflow.normalizeEnabled && s.workflow.crunchStatus == doneText);

  SetFrame(s, 3, 40, [](int, int r) { return r == 20 ? 1 : r <= 2 ? 100 : r; });
  SetAperture(s, 20, 20);
  Fit(0, 1, 10, 30, 40);
  CrunchFrame(s);
  EXPECT_EQ(std::pair(Spectrum(1), spectrum.spectrumPeak), std::pair(-31.0, 0.0));
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

TEST_F(Extraction, AManualFitPassesThroughAsManyDifferentPointsAsItHasTerms) {
  std::vector<double> values(72, 1);
  for (int k = 0; k < 6; ++k)
    values[5 + 12 * k] = 500 + 37 * (k * 7 % 11);
  SetSpectrum(s, 3, values);
  s.manualFit = -1;
  for (int power : {2, 3, 4, 5}) {
    s.continuum.continuumPower = power;
    ResetContinuum(s);
    for (int k = -1; k < power; ++k) {
      AddContinuumPoint(s, 6 + 12 * std::max(0, k));  // the first one twice
      EXPECT_TRUE(RefusalOf([&] { FitContinuum(s); }).starts_with("Hey, for a fit of power "));
    }
    AddContinuumPoint(s, 6 + 12 * power);
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

TEST(SignalToNoise, FindsTheNoiseUnderASlopeAndBesideLinesAndPadding) {
  std::mt19937 random(7);
  std::normal_distribution<double> noise(0, 1);
  for (const double truth : {5.0, 50.0, 500.0}) {
    std::vector<double> spectrum(3000);
    for (size_t i = 0; i < spectrum.size(); ++i)
      spectrum[i] = 1 + 0.0001 * (static_cast<double>(i) - 1500) + noise(random) / truth;
    for (size_t i = 100; i < spectrum.size(); i += 200)
      spectrum[i] = 0.1;
    std::fill(spectrum.begin() + 2000, spectrum.begin() + 2400, 0.0);
    EXPECT_NEAR(SignalToNoise(spectrum).value_or(0) / truth, 1, 0.06) << truth;
  }
}

TEST(SignalToNoise, SaysNothingWhereThereIsNothingToSay) {
  const std::vector<double> flat(100, 3.0), dark{-1, -2, -1, -2, -1, -3, -1, -2}, few{1, 2, 3, 0, 4, 0};
  for (const auto& pixels : {flat, dark, few, std::vector<double>{}})
    EXPECT_FALSE(SignalToNoise(pixels)) << testing::PrintToString(pixels);
}

}  // namespace
}  // namespace halmek::test
