// Windows where they stood: kept, restored, brought into sight; and plots that follow their windows.
#include "platform/placement.h"

#include <gtest/gtest.h>

#include "reduce/column_slice_window.h"
#include "windows/part1_test.h"

namespace halmek::test {
namespace {

std::array<int, 4> Numbers(const SizedPlacement& p) { return {p.left, p.top, p.width, p.height}; }

TEST(InSight, MovesAndShrinksWindowsThatCannotBeReached) {
  const QList<QRect> one{{0, 0, 1000, 800}}, two{{0, 0, 1000, 800}, {1000, -200, 600, 500}};
  const struct {
    const char* what;
    QList<QRect> screens;
    QRect outer, placed;
  } cases[] = {
      {"in sight", one, {100, 100, 300, 200}, {100, 100, 300, 200}},
      {"beyond the right edge, within reach", one, {900, 700, 300, 200}, {900, 700, 300, 200}},
      {"beyond the left edge, within reach", one, {-200, 0, 300, 200}, {-200, 0, 300, 200}},
      {"too little of the title bar", one, {-260, 0, 300, 200}, {0, 0, 300, 200}},
      {"title bar above the screen", one, {100, -10, 300, 200}, {100, 0, 300, 200}},
      {"title bar below the screen", one, {100, 790, 300, 200}, {100, 600, 300, 200}},
      {"far away", one, {5000, 4000, 300, 200}, {700, 600, 300, 200}},
      {"larger than the screen", one, {50, 50, 3000, 2000}, {50, 50, 1000, 800}},
      {"larger and lost", one, {-4000, -4000, 3000, 2000}, {0, 0, 1000, 800}},
      {"on the second screen", two, {1100, -100, 300, 200}, {1100, -100, 300, 200}},
      {"beside the second screen", two, {1900, -150, 300, 200}, {1300, -150, 300, 200}},
      {"too large for the second screen", two, {1100, -100, 900, 200}, {1100, -100, 600, 200}},
      {"where the second screen was", one, {1100, 100, 300, 200}, {700, 100, 300, 200}},
      {"no screen at all", {}, {5000, 4000, 300, 200}, {5000, 4000, 300, 200}},
  };
  for (const auto& c : cases)
    EXPECT_EQ(InSight(c.outer, c.screens), c.placed) << c.what;
}

class PlacementTest : public Part1Test {
 protected:
  PlacementTest() { LoadFrame(120, 60); }
  static void Resize(QWidget* window, const QSize& size) {
    window->resize(size);
    QApplication::processEvents();
  }
};

TEST_F(PlacementTest, WhatWasNotMovedKeepsItsPlaceToTheTwip) {
  const std::array<int, 4> odd{307, 511, 9001, 5003};
  session->plotRow = session->plotColumn = session->plotContinuum = {307, 511, 9001, 5003};
  session->mainWindow = {503, 496};
  main->Open();
  Press(OpenContinuum(), "Command6");
  Window("frmPlot_Continuum")->close();
  Press(OpenRowPlot("20"), "Command7");
  for (const SizedPlacement& plot : {session->plotRow, session->plotColumn, session->plotContinuum})
    EXPECT_EQ(Numbers(plot), odd);
  main->close();
  const Settings kept = ParseSettings(ReadFile(folder.File("Halmek8.ini")));
  EXPECT_EQ(Numbers(kept.plotContinuum), odd);
  EXPECT_EQ(Range(kept.mainWindow.left, kept.mainWindow.top), Range(503, 496));
}

TEST_F(PlacementTest, ThePlotFollowsItsWindowAndItsPlaceIsKept) {
  Press(OpenContinuum(), "Command6");
  const struct {
    const char* window;
    SizedPlacement& placement;
    PlotFrame& frame;
    std::function<void()> open;
    int extraWidth;  // of the plot area, over the distance of its edges
  } plots[] = {
      {"frmPlot_Row", session->plotRow, session->rowPlot.rowFrame, [&] { OpenRowPlot("20"); }, 1},
      {"frmPlot_Column", session->plotColumn, session->slice.colFrame, [&] { OpenSlice(); }, 1},
      {"frmPlot_Continuum", session->plotContinuum, session->continuum.contFrame, [&] { Press("Command6"); },
       0},
  };
  for (const auto& p : plots) {
    p.open();
    QWidget* const window = Window(p.window);
    const QSize usual[] = {{600, 380}, {760, 500}};
    for (const QSize size :
         {QSize(100, 100), QSize(1, 1), QSize(3000, 2600), QSize(400, 4000), usual[0], usual[1]}) {
      SCOPED_TRACE(p.window + std::to_string(size.width()));
      Resize(window, size);
      SurfaceOf(window).grab();
      const double width = TwipsOf(window->frameGeometry().width());
      const double height = TwipsOf(window->frameGeometry().height());
      EXPECT_EQ(p.frame.plotRight, static_cast<int>(width) - 415);
      EXPECT_EQ(p.frame.plotWidth, p.frame.plotRight - 800 + p.extraWidth);
      EXPECT_EQ(Range(p.frame.plotLeft, p.frame.plotTop), Range(800, 300));
      EXPECT_EQ(SurfaceOf(window).drawing()->plotBottomRight.x, static_cast<float>(p.frame.plotRight));
      // As large as the settings file can say.
      EXPECT_EQ(p.placement.width, std::min(32767L, std::lround(width)));
      EXPECT_EQ(p.placement.height, std::min(32767L, std::lround(height)));
      if (size != usual[0] && size != usual[1])
        continue;
      EXPECT_LE(p.frame.plotBottom, height - 2050);
      EXPECT_GT(p.frame.plotBottom, height - 3400);
      // The controls stand below the plot, within the window.
      const auto* const button = Find<QPushButton>(window, "Command1");
      const int top = button->mapTo(window, QPoint(0, 0)).y();
      const PlotSurface& surface = SurfaceOf(window);
      EXPECT_GE(top, surface.mapTo(window, QPoint(0, PixelsOf(p.frame.plotBottom))).y());
      EXPECT_LE(top + button->height(), window->height());
    }
    window->move(90, 70);
    QApplication::processEvents();
    window->close();
    EXPECT_EQ(Range(PixelsOf(p.placement.left), PixelsOf(p.placement.top)), Range(90, 70)) << p.window;
    const std::array<int, 4> kept = Numbers(p.placement);
    p.open();
    EXPECT_EQ(window->pos(), QPoint(90, 70)) << "opens where it was closed";
    EXPECT_EQ(window->size(), QSize(760, 500));
    window->close();
    EXPECT_EQ(Numbers(p.placement), kept);
  }
}

TEST_F(PlacementTest, AResizeDoesNothingWhileAPlotIsDrawn) {
  QWidget* const window = OpenSlice();
  PlotFrame& frame = session->slice.colFrame;
  const int right = frame.plotRight;
  const std::array<int, 4> placement = Numbers(session->plotColumn);
  frame.plotBusy = true;
  Resize(window, {500, 350});
  EXPECT_EQ(frame.plotRight, right);
  EXPECT_EQ(Numbers(session->plotColumn), placement);
  frame.plotBusy = false;
  Resize(window, {510, 350});
  EXPECT_LT(frame.plotRight, right);
}

}  // namespace
}  // namespace halmek::test
