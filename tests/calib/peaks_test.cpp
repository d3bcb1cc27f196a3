// Peak search and centroids.
#include "calib/peaks.h"

#include <gtest/gtest.h>

#include <cmath>
#include <random>
#include <tuple>

#include "calib/arc_plot.h"
#include "synthetic_arc.h"

namespace halmek::test {
namespace {

struct PeakTest : testing::Test {
  std::unique_ptr<Session> session = SessionIn("/");
  Slot& arc = session->slot[1];
  FixedTable<double> midpoints{lastLine};

  void Set(const std::vector<double>& values) { SetSpectrum(*session, 1, values); }
};

TEST_F(PeakTest, WindowIsTenPixelsEitherSideCutAtTheEndsAndTheLowestOfEqualsWins) {
  std::vector<double> values(100, 1.0);
  values[49] = values[50] = 5;  // pixels 50 and 51
  Set(values);
  // The guess, the ends of its window, and the peak.
  const std::array<int, 4> cases[] = {{50, 40, 60, 50},  {41, 31, 51, 50}, {60, 50, 70, 50},
                                      {61, 51, 71, 51},  {3, 1, 13, 1},    {98, 88, 100, 88},
                                      {150, 140, 100, 0}};
  for (const auto& [guess, low, high, pixel] : cases) {
    const Peak peak = FindPeak(arc, guess);
    EXPECT_EQ((std::array{peak.low, peak.high, peak.pixel}), (std::array{low, high, pixel})) << guess;
  }
  Set(std::vector<double>(100, -3.0));
  EXPECT_EQ(FindPeak(arc, 50).pixel, 0) << "no pixel is positive";
}

TEST_F(PeakTest, CentroidIsTheMeanOfTheBisectorsMidpointsWithItsStandardError) {
  // Left core: pixels 3 (40) and 4 (80); right core: pixels 6 (60) and 7 (35). By hand: 40 is crossed on the
  // right at 6.8, 80 at 5.5; 60 on the left at 3.5, 35 at 2.875.
  Set({0, 0, 40, 80, 100, 60, 35, 0, 0});
  const Centroid centroid = CentroidLine(arc, 5, midpoints);
  EXPECT_DOUBLE_EQ(midpoints(1), 4.9);
  EXPECT_DOUBLE_EQ(midpoints(4), 4.9375);
  EXPECT_DOUBLE_EQ(centroid.column, (4.9 + 4.75 + 4.75 + 4.9375) / 4);
  EXPECT_NEAR(centroid.error, 0.0493117, 1e-7);
}

TEST_F(PeakTest, CentroidsScatterAboutTheTruthAsDocumented) {
  // By full width at half maximum: the rms error over places on the pixels without noise, and the one with a
  // peak of 100 times its noise in units of the photon limit, as docs/accuracy.md has them.
  const struct {
    double width, area, photonLimit, noiseless, ratio;
  } cases[] = {{2, 22546, 0.00599, 0.0220, 3.85},
               {3, 32785, 0.00729, 0.0148, 2.36},
               {6, 64336, 0.01018, 0.0033, 1.44}};
  std::mt19937 random(1);
  std::normal_distribution<double> normal;
  std::uniform_real_distribution<double> uniform(-0.5, 0.5);
  for (const auto& c : cases) {
    const auto error = [&](double centre, double noise) {
      const auto below = [&](double edge) {
        return c.area / 2 * std::erf((edge - centre) / c.width * 2 * std::sqrt(std::log(2.0)));
      };
      std::vector<double> counts;
      for (int p = 1; p <= 61; ++p) {
        const double light = below(p + 0.5) - below(p - 0.5);
        counts.push_back(light + noise * std::sqrt(light + 9) * normal(random));
      }
      Set(counts);
      return CentroidLine(arc, FindPeak(arc, 31).pixel, midpoints).column - centre;
    };
    double sum = 0, noiseless = 0, noisy = 0;
    constexpr int lines = 2001;
    for (int k = 0; k < lines; ++k) {
      const double exact = error(30.5 + (k + 0.5) / lines, 0);
      sum += exact;
      noiseless += exact * exact / lines;
      noisy += std::pow(error(31 + uniform(random), 1), 2) / lines;
    }
    EXPECT_NEAR(sum / lines, 0, 1e-10) << c.width;
    EXPECT_NEAR(std::sqrt(noiseless) / c.noiseless, 1, 0.03) << c.width;
    EXPECT_NEAR(std::sqrt(noisy) / c.photonLimit / c.ratio, 1, 0.08) << c.width;
  }
}

TEST_F(PeakTest, LinesThatCannotBeCentroidedAreRefused) {
  std::vector<double> wide(200, 0.0);
  for (int p = 60; p <= 112; ++p)
    wide[static_cast<size_t>(p)] = 50 + (p == 86);
  const std::tuple<const char*, std::vector<double>, int> cases[] = {
      {"a single pixel", {0, 0, 0, 100, 0, 0, 0}, 4},
      {"one core pixel", {0, 0, 0, 100, 50, 0, 0}, 4},
      {"no fall to 15 % on the left", {90, 95, 99, 100, 50, 30, 0}, 4},
      {"no fall to 15 % on the right", {0, 30, 60, 100, 90, 80, 70}, 4},
      {"more than 50 core pixels", wide, 87}};
  for (const auto& [what, values, peak] : cases) {
    Set(values);
    EXPECT_EQ(RefusalOf([&, p = peak] { CentroidLine(arc, p, midpoints); }), noMaximumMessage) << what;
  }
}

TEST_F(PeakTest, ClicksAreRefusedOnFlanksFaintPeaksAndFlatSpectra) {
  std::vector<double> values = ArcOf(300, {60, 150});
  for (size_t i = 0; i < values.size(); ++i)
    values[i] += i == 239 ? 9 : i == 238 || i == 240 ? 5 : 0;  // a bump below a hundredth of the axis
  Set(values);
  EXPECT_EQ(RefusalOf([&] { ClickLine(*session, 1, 69); }), "");
  EXPECT_EQ(session->peakPixel, 60) << "nine pixels away";
  for (int column : {70, 50, 105, 240})
    EXPECT_EQ(RefusalOf([&] { ClickLine(*session, 1, column); }), noMaximumMessage) << column;
  for (double level : {0.0, -7.0, 500.0}) {
    Set(std::vector<double>(300, level));
    EXPECT_EQ(RefusalOf([&] { ClickLine(*session, 1, 150); }), noMaximumMessage) << level;
  }
  EXPECT_EQ(RefusalOf([&] { ClickLine(*session, 2, 150); }), "Hey, no Arc 2 file has been loaded!");
}

TEST_F(PeakTest, PositionsMapToPixelsOneToNAndEdgesAreOutside) {
  Set(ArcOf(1000, {500}));
  PlotArc(*session, 1, {14000, 6000});
  const PlotFrame& f = session->arc[1].plotFrame;
  const auto at = [&](double x, double y) { return ArcColumnAt(*session, 1, x, y); };
  EXPECT_EQ(at(f.plotLeft + 1, 1000), 1);
  EXPECT_EQ(at(f.plotRight - 1, 1000), 1000);
  EXPECT_EQ(at((f.plotLeft + f.plotRight) / 2.0, 1000), 500);
  EXPECT_FALSE(at(f.plotLeft, 1000) || at(f.plotRight, 1000));
  EXPECT_FALSE(at(5000, f.plotTop) || at(5000, f.plotBottom));
}

}  // namespace
}  // namespace halmek::test
