// The row plot, the column slice and the continuum plot: zoom, scroll bars, clicks, and what is drawn.
#include <gtest/gtest.h>

#include <tuple>
#include <utility>
#include <variant>

#include "reduce/background.h"
#include "reduce/column_slice.h"
#include "reduce/continuum.h"
#include "reduce/row_plot.h"
#include "support/test_session.h"

namespace halmek::test {
namespace {

// The plot area of this window reaches from 800 to 13585 and from 300 down to 3950.
constexpr WindowSize window{14000, 6000};

// A letter an item, in the order of painting: small for lines, capital for curves, by their colours; t for
// texts, o for circles.
std::string Items(const Drawing& drawing) {
  std::string letters;
  for (const DrawingItem& item : drawing.items) {
    const auto* line = std::get_if<Line>(&item);
    const auto* curve = std::get_if<Polyline>(&item);
    const Colour c = line ? line->colour : curve ? curve->colour : Colour{};
    const size_t hue = c.red == 192 ? 0 : c.red ? 1 : c.green ? 2 : c.blue ? 3 : 4;
    letters += line ? "yrgbk"[hue] : curve ? "YRGBK"[hue] : "to"[std::holds_alternative<Circle>(item)];
  }
  return letters;
}

template <class T>
const T& ItemFromEnd(const Drawing& drawing, size_t count) {
  return std::get<T>(drawing.items[drawing.items.size() - count]);
}

using Range = std::pair<int, int>;

class Plots : public testing::Test {
 protected:
  // A row plot of columns first..last, drawn.
  void ShowRow(int columns, int first, int last) {
    SetFrame(s, columns, 5, [](int c, int r) { return r == 4 ? 99 : 200.0 + c; });
    OpenRowPlot(s, 2);
    plot.rowFrame.firstColumn = first;
    plot.rowFrame.lastColumn = last;
    ASSERT_TRUE(DrawRowPlot(s, window));
  }
  Range Shown() const { return {plot.rowFrame.firstColumn, plot.rowFrame.lastColumn}; }
  // The middle of a column's step, `shift` steps further right.
  double XOf(double column, double shift = 0) const {
    const PlotFrame& f = plot.rowFrame;
    return f.plotLeft + 12786 * (column - f.xMin - 0.5 + shift) / f.xSpan;
  }
  // A slice of 100 rows, and the left edge of a row's step, a little inside.
  void ShowSlice() {
    SetFrame(s, 9, 100, [](int c, int r) { return 1000.0 * c + r; });
    OpenColumnPlot(s);
    DrawColumnPlot(s, window);
  }
  static double XOfRow(int row) { return 800 + 127.86 * (row - 1) + 5; }

  std::unique_ptr<Session> session = SessionIn(".");
  Session& s = *session;
  RowPlot& plot = s.rowPlot;
};

TEST_F(Plots, ZoomButtonsChangeTheColumnsShownAndTheirScrollBar) {
  const std::tuple<void (*)(RowPlot&, int), int, Range, Range, ScrollBar> cases[] = {
      {ZoomIn, 1000, {101, 140}, {111, 130}, {10, 990, 121, 2, 20}},
      {ZoomIn, 1000, {1, 20}, {6, 15}, {5, 995, 11, 1, 10}},
      {ZoomIn, 1000, {1, 19}, {1, 19}, {500, 500, 500, 100, 999}},
      {ZoomOut, 1000, {101, 140}, {81, 160}, {40, 960, 120, 8, 80}},
      {ZoomOut, 1000, {1, 40}, {1, 80}, {40, 960, 40, 8, 80}},
      {ZoomOut, 1000, {961, 1000}, {921, 1000}, {40, 960, 960, 8, 80}},
      {ZoomOut, 25, {6, 25}, {1, 25}, {12, 12, 12, 2, 25}},
      {ShowFullRow, 1003, {101, 140}, {1, 1003}, {502, 502, 502, 100, 1002}},
  };
  for (const auto& [button, columns, before, after, scroll] : cases) {
    ShowRow(columns, before.first, before.second);
    button(plot, columns);
    EXPECT_EQ(Shown(), after);
    EXPECT_EQ(plot.columnScroll, scroll) << before.first;
  }
}

TEST_F(Plots, ScrollBarsMoveWithinTheFrame) {
  const std::tuple<Range, int, Range> cases[] = {{{101, 140}, 500, {480, 520}},
                                                 {{101, 139}, 100, {80, 120}},
                                                 {{101, 140}, 10, {1, 40}},
                                                 {{101, 140}, 995, {961, 1000}},
                                                 {{1, 1000}, 500, {1, 1000}}};
  for (const auto& [before, value, after] : cases) {
    ShowRow(1000, before.first, before.second);
    ScrollColumns(plot, value, 1000);
    EXPECT_EQ(Shown(), after) << value;
  }
  for (const auto& [value, row] : {Range{0, 1}, {3, 3}, {6, 5}}) {
    ScrollRows(plot, value, 5);
    EXPECT_EQ(plot.plotRow * 10 + plot.rowScroll.value, row * 11);
  }
  plot.rowFrame.plotBusy = true;
  ScrollRows(plot, 2, 5);
  ScrollColumns(plot, 10, 1000);
  EXPECT_EQ(plot.plotRow * 10000 + plot.rowFrame.lastColumn, 51000);
}

TEST_F(Plots, ARowPlotOpensOnAWholeRowOfTheFrame) {
  ShowRow(1000, 30, 40);
  plot.zapSelected = true;
  OpenRowPlot(s, -3);
  EXPECT_EQ(plot.rowScroll, (ScrollBar{1, 5, 1, 1, 5}));
  EXPECT_EQ(Shown(), Range(1, 1000));
  EXPECT_TRUE(plot.plotRow == 1 && !plot.zapSelected);
  EXPECT_EQ(RefusalOf([&] { OpenRowPlot(s, 6); }),
            "Row to plot is greater than the number of rows.  Press any key to continue.");
}

TEST_F(Plots, APositionNamesTheColumnInWhoseStepItLies) {
  ShowRow(1000, 101, 140);
  for (int column : {101, 120, 140})
    for (double shift : {-0.49, 0.49})
      EXPECT_EQ(ColumnAt(plot.rowFrame, XOf(column, shift)), column) << shift;
  const PlotFrame& f = plot.rowFrame;
  EXPECT_EQ(ValueAt(f, 3950), f.yMin);
  EXPECT_DOUBLE_EQ(ValueAt(f, 3950 - 3651), f.yMax);
  EXPECT_EQ(ReadOutRow(f, XOf(107), 3950 - 3651 / 2.0).columnText, "   107");
  EXPECT_FALSE(ReadOutRow(f, 800, 1000).inside || ReadOutRow(f, 1000, 3950).inside);
}

TEST_F(Plots, TwoLeftClicksOnDifferentColumnsZoom) {
  ShowRow(1000, 101, 140);
  EXPECT_FALSE(ClickForZoom(s, XOf(130)));
  EXPECT_FALSE(ClickForZoom(s, XOf(130, 0.1)));
  EXPECT_FALSE(plot.zoomAwaitingFirst);
  EXPECT_TRUE(ClickForZoom(s, XOf(110, 0.1)));
  EXPECT_EQ(Shown(), Range(110, 130));
  EXPECT_TRUE(plot.zoomAwaitingFirst);

  ClickForZoom(s, -1e9);
  EXPECT_TRUE(ClickForZoom(s, 1e9));
  EXPECT_EQ(Shown(), Range(1, 1000));
}

TEST_F(Plots, RightClicksSelectFromTheSmallestToTheLargestColumn) {
  ShowRow(100, 1, 100);
  ClickForZap(s, XOf(60));
  ClickForZap(s, XOf(55));
  ClickForZoom(s, XOf(20, 0.5));
  const Drawing drawing = DrawRowPlot(s, window).value();
  EXPECT_EQ(drawing.caption, "Plot Row   File: frame.fts   Object: Test star");
  EXPECT_TRUE(Items(drawing).ends_with("tkkkkRrbb")) << Items(drawing);
  const auto& curve = ItemFromEnd<Polyline>(drawing, 4);
  EXPECT_EQ(curve.points.size(), 200u);
  EXPECT_FLOAT_EQ(curve.points[3].x, 800 + 12786 * 0.02f);
  const float lines[] = {3357, 7704, 8472};
  for (size_t i = 0; i < 3; ++i)
    EXPECT_EQ(ItemFromEnd<Line>(drawing, 3 - i).from.x, lines[i]);

  Deselect(plot);
  EXPECT_TRUE(Items(*DrawRowPlot(s, window)).ends_with("tkkkkR"));
  ClickForZap(s, 0);
  ClickForZap(s, 99999);
  EXPECT_EQ(Range(plot.zapFirst, plot.zapLast), Range(1, 100));
}

TEST_F(Plots, ARowWithValuesUnder100GivesWayToTheLastDrawnOne) {
  ShowRow(100, 1, 100);
  ScrollRows(plot, 4, 5);
  EXPECT_FALSE(DrawRowPlot(s, window));
  EXPECT_EQ(plot.plotRow * 10 + plot.rowScroll.value, 22);
  EXPECT_EQ(plot.hint, " Row 4 cannot be shown, because it has values under 100.");
  s.image(2, 100) = 100;
  EXPECT_TRUE(DrawRowPlot(s, window));
  EXPECT_EQ(plot.hint, rowPlotHint);
  ShowRow(2, 1, 2);
  s.slot[0].naxis1 = 1;
  EXPECT_FALSE(DrawRowPlot(s, window));
}

TEST_F(Plots, ClicksMarkTheApertureAndCompleteTheSelectionWithTheFourthRightOne) {
  ShowSlice();
  const Slice& slice = s.slice;
  // Where the click is, negative for a right one, and the states of both selections after it.
  const std::pair<double, Range> clicks[] = {
      {700, {0, 0}},          {XOfRow(60), {1, 0}}, {-13584, {1, 1}},
      {XOfRow(50), {2, 1}},   {XOfRow(70), {2, 1}}, {-XOfRow(90), {2, 2}},
      {-801, {2, 3}},         {-13586, {2, 3}},     {-XOfRow(9) - 60, {-1, 4}},
      {-XOfRow(20), {-1, 4}}, {XOfRow(20), {-1, 4}}};
  for (const auto& [x, states] : clicks) {
    x > 0 ? ClickForAperture(s, x, 3950 - 365) : ClickForBackground(s, -x, 3950 - 730);
    EXPECT_EQ(Range(slice.apertureState, slice.backgroundClicks), states) << x;
  }
  EXPECT_EQ(MarksText(slice), "Aperture 60 to 50   Background 100 to 90, 1 to 10");
  EXPECT_DOUBLE_EQ(slice.apertureMarkValue, slice.colFrame.yMin + slice.colFrame.ySpan / 10);
  EXPECT_DOUBLE_EQ(slice.backgroundMarkValue, slice.colFrame.yMin + slice.colFrame.ySpan / 5);
  EXPECT_EQ(ReadOutSlice(s, XOfRow(60), 1000).columnText, "    60");
}

TEST_F(Plots, ASliceShowsMarkersModelAndCurve) {
  ShowSlice();
  EXPECT_TRUE(Items(DrawColumnPlot(s, window)).ends_with("tkkkkR"));
  SetAperture(s, 60, 50);
  EXPECT_TRUE(Items(DrawColumnPlot(s, window)).ends_with("tkkkkkkkR"));
  SetBackgroundRanges(s, 10, 1, 91, 100);
  s.background.backgroundPower = 2;
  FitBackground(s);
  // The aperture is no longer marked once the selection is complete.
  const Drawing drawing = DrawColumnPlot(s, window);
  EXPECT_EQ(drawing.caption, "Plot Column   File: frame.fts   Object: Test star");
  EXPECT_TRUE(Items(drawing).ends_with("tkkkkkkkkkkGR")) << Items(drawing);
  const PlotFrame& f = s.slice.colFrame;
  EXPECT_FLOAT_EQ(ItemFromEnd<Line>(drawing, 8).from.x, static_cast<float>(800 + 127.86 * 9));
  const auto& model = ItemFromEnd<Polyline>(drawing, 2);
  ASSERT_EQ(model.points.size(), 100u);
  EXPECT_FLOAT_EQ(model.points[49].x, static_cast<float>(800 + 127.86 * 49));
  EXPECT_NEAR(model.points[49].y, 3950 - 3650 * (4050 - f.yMin) / f.ySpan, 0.1);

  ClearBackgroundFit(s);
  ClearSelection(s);
  EXPECT_TRUE(Items(DrawColumnPlot(s, window)).ends_with("tkkkkR"));
}

TEST_F(Plots, ASliceOpensOnTheMiddleColumnOnItsOwnScale) {
  for (const auto& [columns, middle] : {Range{1001, 500}, {1003, 502}, {9, 4}}) {
    SetFrame(s, columns, 100, [](int c, int r) { return 1000.0 * c + r; });
    s.background.backgroundPower = 2;
    s.slice.fixedScale = true;
    OpenColumnPlot(s);
    EXPECT_EQ(s.slice.sliceColumn * 10 + s.background.backgroundPower, middle * 10);
  }
  const auto limits = [&] {
    DrawColumnPlot(s, window);
    return std::pair(s.slice.colFrame.yMin, s.slice.colFrame.yMax);
  };
  EXPECT_EQ(limits(), std::pair(NiceLowerBound(4001), NiceUpperBound(4100)));
  s.slice.fixedScale = true;
  EXPECT_EQ(limits(), std::pair(0.0, NiceUpperBound(9100)));
  s.imageMax = -5;
  EXPECT_EQ(limits(), std::pair(0.0, 1.0));
}

TEST_F(Plots, TheContinuumPlotShowsCurvePointsAndFit) {
  SetFrame(s, 3, 1, [](int, int) { return 1; });
  SetSpectrum(s, 3, std::vector<double>(101, 300));
  // The names are those of the frame that the spectrum came from, also after another was loaded.
  s.crunchFile = "star.fts";
  s.crunchHeader.objectName = "Vega";
  s.manualFit = -1;
  s.continuum.continuumPower = 2;
  for (int column : {10, 50, 90})
    AddContinuumPoint(s, column);
  FitContinuum(s);
  const Drawing drawing = PlotContinuum(s, window);
  EXPECT_EQ(drawing.caption, "File:  star.fts     Object:  Vega");
  EXPECT_TRUE(Items(drawing).ends_with("tkkkkRoooB")) << Items(drawing);
  const auto& circle = ItemFromEnd<Circle>(drawing, 4);
  EXPECT_FLOAT_EQ(circle.centre.x, 800 + 12785 * 4 / 101.0f);
  EXPECT_FLOAT_EQ(circle.centre.y, static_cast<float>(3950 - 3650 * 300 / s.continuum.contFrame.yMax));
  EXPECT_EQ(circle.innerRadius * 100 + circle.outerRadius, 2550);
  const auto& fit = ItemFromEnd<Polyline>(drawing, 1);
  ASSERT_EQ(fit.points.size(), 101u);
  EXPECT_FLOAT_EQ(fit.points[0].x, 927.85f);
  EXPECT_NEAR(fit.points[100].y, circle.centre.y, 0.1);
  EXPECT_EQ(ContinuumColumnAt(s, 800 + 12785 * 0.5), 50);
  EXPECT_EQ(ContinuumColumnAt(s, 13584), 101);
}

}  // namespace
}  // namespace halmek::test
