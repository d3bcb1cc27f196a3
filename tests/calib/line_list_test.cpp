// Identification of lines by clicks, and the panel that shows it.
#include "calib/line_list.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <tuple>

#include "calib/arc_plot.h"
#include "calib/wavelength_table.h"
#include "synthetic_arc.h"

namespace halmek::test {
namespace {

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

TEST_F(LineListTest, AnIdentifiedLineKeepsItsWavelengthUntilItIsDeleted) {
  Identify(200, 5200);
  EXPECT_FALSE(UpdateFit(*session, 1, 5300));
  EXPECT_EQ(std::pair(arc.LineCount, arc.ArcLineWavelength(1)), std::pair(1, 5200.0));
  EXPECT_EQ(DeleteEntry(*session, 1), 1);
  Identify(200, 5300);
  EXPECT_EQ(arc.ArcLineWavelength(1), 5300);
}

TEST_F(LineListTest, DeletionTakesAllLinesWithinThreePixels) {
  std::vector<double> values = ArcOf(1000, {500, 800});
  // Two peaks two pixels apart, each a line of its own by its peak pixel.
  const double pair[] = {10, 60, 300, 150, 280, 60, 10};
  std::copy(std::begin(pair), std::end(pair), values.begin() + 196);
  SetSpectrum(*session, 1, values);
  Identify(199, 5199);
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
}

TEST_F(LineListTest, The51stLineIsRefusedAndTheListStays) {
  SetSpectrum(*session, 1, ArcOf(2700, test::Columns(51, 30, 50)));
  for (int k = 0; k < 50; ++k)
    Identify(30 + 50 * k, 5000 + 10 * k);
  EXPECT_EQ(RefusalOf([&] { Identify(2530, 5990); }),
            "An arc can have 50 identified lines at most.  Please delete one first.");
  EXPECT_EQ(std::pair(arc.LineCount, arc.PixelWavelength(2530)), std::pair(50, 0.0));
}

TEST_F(LineListTest, TwinsDoNotLeakIntoEachOther) {
  IdentifyLines(*session, 1, 1000, {200, 500}, [](double c) { return 5000 + c; });
  IdentifyLines(*session, 2, 1000, {300, 600, 900}, [](double c) { return 6000 + 2 * c; });
  DeleteAllLines(*session, 1);
  EXPECT_EQ(std::tuple(arc.LineCount, arc.linSlope, arc.PixelCentroid(200)), std::tuple(0, 0.0, 0.0));
  EXPECT_EQ(session->arc[2].LineCount, 3);
  EXPECT_NEAR(session->arc[2].linSlope, 2, 1e-9);
}

TEST_F(LineListTest, OpeningThePlotRefreshesTheFitAndTheStatusTexts) {
  IdentifyLines(*session, 1, 1000, {200, 500, 800}, [](double c) { return 5000 + c + (c > 400 && c < 600); });
  const double rms = arc.linRms;
  arc.linRms = arc.linSlope = 0;
  arc.fitDone = true;
  session->workflow.arc[1].maskStatus = "DONE!";
  OpenArcPlot(*session, 1);
  EXPECT_NEAR(arc.linRms, rms, 1e-12);
  EXPECT_GT(rms, 0.1);
  EXPECT_NEAR(arc.linSlope, 1, 1e-9);
  EXPECT_EQ(session->workflow.arc[1].maskStatus, "");
  EXPECT_EQ(session->workflow.arc[1].deviationStatus, "DONE!");
}

TEST_F(LineListTest, MarksStandAtTheLinesInTheArcsColour) {
  const Colour expected[] = {{}, {255, 0, 255}, {0, 150, 150}};
  for (int a : {1, 2}) {
    IdentifyLines(*session, a, 1001, {201}, [](double c) { return 5000 + c; });
    const Drawing drawing = PlotArc(*session, a, {14000, 6000});
    const PlotFrame& f = session->arc[a].plotFrame;
    const Line& mark = std::get<Line>(drawing.items.back());
    EXPECT_EQ(mark.colour, expected[a]);
    EXPECT_NEAR(mark.from.x, f.plotLeft + 0.2 * f.plotWidth, 1);
    EXPECT_NEAR(mark.to.y - mark.from.y, 0.05 * f.plotHeight, 1);
    EXPECT_EQ(drawing.caption.substr(0, 15), a == 1 ? "Arc 1   File:  " : "Arc 2   File:  ");
  }
}

}  // namespace
}  // namespace halmek::test
