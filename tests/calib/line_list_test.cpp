// Identification of lines by clicks, and the panel that shows it.
#include "calib/line_list.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "calib/arc_plot.h"
#include "calib/wavelength_table.h"
#include "synthetic_arc.h"

namespace halmek::test {
namespace {

struct LineListTest : testing::Test {
  std::unique_ptr<Session> session = SessionIn("/");
  Arc& arc = session->arc[1];
  LinePanel& panel = session->linePanel;

  void Identify(int column, double wavelength) {
    ClickLine(*session, 1, column);
    UpdateFit(*session, 1, wavelength);
  }
};

TEST_F(LineListTest, ListIsInColumnOrderWhateverTheOrderOfClicks) {
  SetSpectrum(*session, 1, ArcOf(1000, {200, 500, 800}));
  Identify(800, 5800);
  Identify(200, 5200);
  Identify(500, 5500);
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
  SetSpectrum(*session, 1, ArcOf(1000, {200, 500, 800}));
  ClickLine(*session, 1, 203);
  EXPECT_EQ(panel.peakText, " 200");
  EXPECT_EQ(panel.centroidText, "  200.00000");
  EXPECT_EQ(panel.countText, " 0");
  EXPECT_EQ(panel.estimateText + panel.wavelengthText + panel.rmsText, "");

  UpdateFit(*session, 1, 5200);
  EXPECT_EQ(panel.countText, " 1");
  EXPECT_EQ(panel.estimateText + panel.rmsText, "");

  Identify(500, 5503);
  EXPECT_EQ(panel.countText, " 2");
  EXPECT_EQ(panel.rmsText, "    0.000");
  EXPECT_EQ(panel.estimateText, " 5503.000");
}

TEST_F(LineListTest, ProposesTheNearestTableEntryAndOfEqualsTheFirst) {
  session->wavelengthTable = ParseWavelengthTable("head\r\n5802,first\r\n5798,second\r\n5200,\"Ne, I\"\r\n");
  SetSpectrum(*session, 1, ArcOf(1000, {200, 500, 800}));
  Identify(200, 5200);
  Identify(500, 5500);
  ClickLine(*session, 1, 800);
  EXPECT_EQ(panel.nameText, "first");
  EXPECT_EQ(panel.tableEntry, 1);
  EXPECT_EQ(panel.wavelengthText, " 5802.00000");
  EXPECT_EQ(panel.deviationText, "   -2.00000");

  ShowTableEntry(*session, 99);
  EXPECT_EQ(panel.tableEntry, 3);
  EXPECT_EQ(panel.nameText, "Ne, I");
  EXPECT_EQ(panel.wavelengthText, " 5200.00000");
}

TEST_F(LineListTest, WavelengthsOutsideTheRangeAreRefusedAndItsEndsAccepted) {
  SetSpectrum(*session, 1, ArcOf(1000, {200}));
  const struct {
    double wavelength;
    bool accepted;
  } cases[] = {{2999.99, false},      {9000.01, false}, {0, false},  {-5000, false},
               {std::nan(""), false}, {3000, true},     {9000, true}};
  for (const auto& c : cases) {
    DeleteAllLines(*session, 1);
    ClickLine(*session, 1, 200);
    const std::string refusal = RefusalOf([&] { UpdateFit(*session, 1, c.wavelength); });
    EXPECT_EQ(refusal, c.accepted
                           ? ""
                           : "Hey, you need to type a valid wavelength! (It must be between 3000 and 9000 "
                             "Angstroms.)");
    EXPECT_EQ(arc.LineCount, c.accepted);
  }
}

TEST_F(LineListTest, AnIdentifiedLineKeepsItsWavelengthUntilItIsDeleted) {
  SetSpectrum(*session, 1, ArcOf(1000, {200, 500}));
  Identify(200, 5200);
  EXPECT_FALSE(UpdateFit(*session, 1, 5300));
  EXPECT_EQ(arc.LineCount, 1);
  EXPECT_EQ(arc.ArcLineWavelength(1), 5200);
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
  ClickLine(*session, 1, 199);
  UpdateFit(*session, 1, 5199);
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
  const std::vector<double> columns = test::Columns(51, 30, 50);
  SetSpectrum(*session, 1, ArcOf(2700, columns));
  for (int k = 0; k < 50; ++k)
    Identify(static_cast<int>(columns[static_cast<size_t>(k)]), 5000 + 10 * k);
  ClickLine(*session, 1, static_cast<int>(columns[50]));
  EXPECT_EQ(RefusalOf([&] { UpdateFit(*session, 1, 5990); }),
            "An arc can have 50 identified lines at most.  Please delete one first.");
  EXPECT_EQ(arc.LineCount, 50);
  EXPECT_EQ(arc.PixelWavelength(static_cast<int>(columns[50])), 0);
}

TEST_F(LineListTest, TwinsDoNotLeakIntoEachOther) {
  IdentifyLines(*session, 1, 1000, {200, 500}, [](double c) { return 5000 + c; });
  IdentifyLines(*session, 2, 1000, {300, 600, 900}, [](double c) { return 6000 + 2 * c; });
  DeleteAllLines(*session, 1);
  EXPECT_EQ(arc.LineCount, 0);
  EXPECT_EQ(arc.linSlope, 0);
  EXPECT_EQ(arc.PixelCentroid(200), 0);
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
    const auto* mark = std::get_if<Line>(&drawing.items.back());
    ASSERT_NE(mark, nullptr);
    EXPECT_EQ(mark->colour, expected[a]);
    EXPECT_NEAR(mark->from.x, f.plotLeft + 0.2 * f.plotWidth, 1);
    EXPECT_NEAR(mark->to.y - mark->from.y, 0.05 * f.plotHeight, 1);
    EXPECT_EQ(drawing.caption.substr(0, 15), a == 1 ? "Arc 1   File:  " : "Arc 2   File:  ");
  }
}

}  // namespace
}  // namespace halmek::test
