// Peak search and centroids, identification of lines by clicks, and the panel that shows it.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <random>
#include <tuple>

#include "calib/arc_plot.h"
#include "calib/deviations.h"
#include "calib/line_list.h"
#include "calib/peaks.h"
#include "calib/wavelength_table.h"
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
  // The full width at half maximum, the counts, the photon limit, the rms error over places on the pixels
  // without noise, and the one with a peak of 100 times its noise in units of that limit, as docs/accuracy.md
  // has them.
  const std::array<double, 5> cases[] = {{2, 22546, 0.00599, 0.0220, 3.85},
                                         {3, 32785, 0.00729, 0.0148, 2.36},
                                         {6, 64336, 0.01018, 0.0033, 1.44}};
  std::mt19937 random(1);
  std::normal_distribution<double> normal;
  std::uniform_real_distribution<double> uniform(-0.5, 0.5);
  for (const auto& [width, area, photonLimit, ofPlaces, ofNoise] : cases) {
    const auto error = [&, scale = 2 * std::sqrt(std::log(2.0)) / width, half = area / 2](double centre,
                                                                                          double noise) {
      std::vector<double> counts;
      for (int p = 1; p <= 61; ++p) {
        const double light =
            half * (std::erf((p + 0.5 - centre) * scale) - std::erf((p - 0.5 - centre) * scale));
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
    EXPECT_NEAR(sum / lines, 0, 1e-10) << width;
    EXPECT_NEAR(std::sqrt(noiseless) / ofPlaces, 1, 0.03) << width;
    EXPECT_NEAR(std::sqrt(noisy) / photonLimit / ofNoise, 1, 0.08) << width;
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
  EXPECT_EQ(std::tuple(at(f.plotLeft + 1, 1000), at((f.plotLeft + f.plotRight) / 2.0, 1000),
                       at(f.plotRight - 1, 1000)),
            std::tuple(1, 500, 1000));
  EXPECT_FALSE(at(f.plotLeft, 1000) || at(f.plotRight, 1000));
  EXPECT_FALSE(at(5000, f.plotTop) || at(5000, f.plotBottom));
}

struct LineListTest : testing::Test {
  std::unique_ptr<Session> session = SessionIn("/");
  Arc& arc = session->arc[1];

  LineListTest() { SetSpectrum(*session, 1, ArcOf(1000, {200, 500, 800})); }
  void Identify(int column, double wavelength) {
    ClickLine(*session, 1, column);
    UpdateFit(*session, 1, wavelength);
  }
  std::string Panel() const {
    const LinePanel& p = session->linePanel;
    return "peak" + p.peakText + ", centroid" + p.centroidText + ", estimate" + p.estimateText + ", entry " +
           std::to_string(p.tableEntry) + p.wavelengthText + " " + p.nameText + ", deviation" +
           p.deviationText + ", rms" + p.rmsText + ", lines" + p.countText;
  }
};

TEST_F(LineListTest, ListIsInColumnOrderWhateverTheOrderOfClicks) {
  for (int column : {800, 200, 500})
    Identify(column, 5000 + column);
  ASSERT_EQ(arc.LineCount, 3);
  for (int k = 1; k <= 3; ++k) {
    EXPECT_NEAR(arc.ArcLineColumn(k), 300 * k - 100, 1e-6);
    EXPECT_EQ(arc.ArcLineWavelength(k), 4900 + 300 * k);
    EXPECT_EQ(session->FitColumn(k), arc.ArcLineColumn(k));
  }
  EXPECT_NEAR(arc.linSlope, 1, 1e-9);
  EXPECT_NEAR(arc.linIntercept, 5000, 1e-6);
}

TEST_F(LineListTest, PanelShowsTheFitFromTheSecondLineOn) {
  const std::string ofLine200 = "peak 200, centroid  200.00000, estimate, entry 1 , deviation, rms, lines ";
  ClickLine(*session, 1, 203);
  EXPECT_EQ(Panel(), ofLine200 + "0");
  UpdateFit(*session, 1, 5200);
  EXPECT_EQ(Panel(), ofLine200 + "1");
  Identify(500, 5503);
  EXPECT_EQ(Panel(),
            "peak 500, centroid  500.00000, estimate 5503.000, entry 1 , deviation    0.000, rms    0.000, "
            "lines 2");
}

TEST_F(LineListTest, ProposesTheNearestTableEntryAndOfEqualsTheFirst) {
  session->wavelengthTable = ParseWavelengthTable("head\r\n5802,first\r\n5798,second\r\n5200,\"Ne, I\"\r\n");
  Identify(200, 5200);
  Identify(500, 5500);
  ClickLine(*session, 1, 800);
  const std::string ofLine800 = "peak 800, centroid  800.00000, estimate 5800.00000, entry ";
  EXPECT_EQ(Panel(), ofLine800 + "1 5802.00000 first, deviation   -2.00000, rms, lines 2");
  ShowTableEntry(*session, 99);
  EXPECT_EQ(Panel(), ofLine800 + "3 5200.00000 Ne, I, deviation  600.00000, rms, lines 2");
}

TEST_F(LineListTest, WavelengthsOutsideTheRangeAreRefusedAndItsEndsAccepted) {
  const std::string refused =
      "Hey, you need to type a valid wavelength! (It must be between 3000 and 9000 Angstroms.)";
  for (double wavelength : {2999.99, 9000.01, 0.0, -5000.0, std::nan(""), 3000.0, 9000.0}) {
    const bool accepted = wavelength == 3000 || wavelength == 9000;
    DeleteAllLines(*session, 1);
    EXPECT_EQ(RefusalOf([&] { Identify(200, wavelength); }), accepted ? "" : refused) << wavelength;
    EXPECT_EQ(arc.LineCount, accepted) << wavelength;
  }
}

TEST_F(LineListTest, DeletionTakesAllLinesWithinThreePixels) {
  std::vector<double> values = ArcOf(1000, {500, 800});
  // Two peaks two pixels apart, each a line of its own by its peak pixel.
  const double pair[] = {10, 60, 300, 150, 280, 60, 10};
  std::copy(std::begin(pair), std::end(pair), values.begin() + 196);
  SetSpectrum(*session, 1, values);
  Identify(199, 5199);
  EXPECT_FALSE(UpdateFit(*session, 1, 5300)) << "the line keeps its wavelength until it is deleted";
  arc.PixelCentroid(201) = 201.1;
  arc.PixelWavelength(201) = 5201;
  Identify(500, 5500);
  Identify(800, 5800);
  ASSERT_EQ(arc.LineCount, 4);

  ClickLine(*session, 1, 199);
  EXPECT_EQ(DeleteEntry(*session, 1), 2);
  EXPECT_EQ(arc.LineCount, 2);
  EXPECT_EQ(arc.PixelCentroid(199), 0) << "it is centroided again when it is clicked";
  EXPECT_NEAR(arc.linSlope, 1, 1e-9) << "refitted without them";
  Identify(199, 5300);
  EXPECT_EQ(arc.ArcLineWavelength(1), 5300);
  session->arc[2].LineCount = 3;
  DeleteAllLines(*session, 1);
  EXPECT_EQ(std::tuple(arc.LineCount, arc.linSlope, arc.PixelCentroid(500)), std::tuple(0, 0.0, 0.0));
  EXPECT_EQ(session->arc[2].LineCount, 3);
}

TEST_F(LineListTest, The51stLineIsRefusedAndTheListStays) {
  SetSpectrum(*session, 1, ArcOf(2700, test::Columns(51, 30, 50)));
  for (int k = 0; k < 50; ++k)
    Identify(30 + 50 * k, 5000 + 10 * k);
  EXPECT_EQ(RefusalOf([&] { Identify(2530, 5990); }),
            "An arc can have 50 identified lines at most.  Please delete one first.");
  EXPECT_EQ(std::pair(arc.LineCount, arc.PixelWavelength(2530)), std::pair(50, 0.0));
}

TEST_F(LineListTest, OpeningThePlotRefreshesTheFitAndTheStatusTexts) {
  IdentifyLines(*session, 1, 1000, {200, 500, 800}, [](double c) { return 5000 + c + (c > 400 && c < 600); });
  const double rms = arc.linRms;
  ComputeDeviations(*session, 1);
  arc.fitPower = 2;
  FitDeviations(*session, 1);
  arc.linRms = arc.linSlope = 0;
  session->workflow.arc[1].maskStatus = "DONE!";
  session->workflow.arc[1].deviationStatus = "";
  OpenArcPlot(*session, 1);
  EXPECT_NEAR(arc.linRms, rms, 1e-12);
  EXPECT_GT(rms, 0.1);
  EXPECT_NEAR(arc.linSlope, 1, 1e-9);
  EXPECT_EQ(session->workflow.arc[1].maskStatus, "");
  EXPECT_EQ(session->workflow.arc[1].deviationStatus, "DONE!");
}

TEST_F(LineListTest, MarksStandAtTheLinesInAColourOfEachArc) {
  std::vector<Colour> colours;
  for (int a : {1, 2}) {
    IdentifyLines(*session, a, 1001, {201}, [](double c) { return 5000 + c; });
    const Drawing drawing = PlotArc(*session, a, {14000, 6000});
    const PlotFrame& f = session->arc[a].plotFrame;
    const Line& mark = std::get<Line>(drawing.items.back());
    colours.push_back(mark.colour);
    EXPECT_NEAR(mark.from.x, f.plotLeft + 0.2 * f.plotWidth, 1);
    EXPECT_TRUE(mark.from.y == Twips(f.plotTop) && mark.to.y > mark.from.y);
    EXPECT_TRUE(drawing.caption.starts_with(a == 1 ? "Arc 1   File:  " : "Arc 2   File:  "));
  }
  EXPECT_FALSE(colours[0] == colours[1]);
}

}  // namespace
}  // namespace halmek::test
