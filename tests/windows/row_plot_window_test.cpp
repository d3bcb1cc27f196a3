// The row plot, by its buttons, scroll bars and clicks.
#include <gtest/gtest.h>

#include <tuple>

#include "windows/part1_test.h"

namespace halmek::test {
namespace {

// A frame of 200 x 60 pixels, whose row 40 cannot be shown, with row 20 in the window.
class RowPlotWindowTest : public Part1Test {
 protected:
  QWidget* window = nullptr;
  RowPlot& plot = session->rowPlot;
  PlotFrame& frame = plot.rowFrame;

  RowPlotWindowTest() {
    LoadFrame(200, 60, Value);
    window = OpenRowPlot("20");
  }
  static double Value(int column, int row) {
    return row == 40 && column == 5 ? 99 : 200 + column * column + 1000 * row;
  }

  Range Shown() const { return {frame.firstColumn, frame.lastColumn}; }
  void Left(int edge) { ClickAt(window, frame, Qt::LeftButton, ScreenX(frame, edge)); }
  void Right(int column) { ClickAt(window, frame, Qt::RightButton, ScreenX(frame, column - 0.5)); }
  void ZoomTo(int first, int last) {
    Press(window, "Command3");
    Left(first);
    Left(last);
    ASSERT_EQ(Shown(), Range(first, last));
  }
  QScrollBar* Bar(const char* name) { return Find<QScrollBar>(window, name); }
  std::vector<double> Pixels(int row) { return Values(session->image.Row(row, 1, 200)); }
};

TEST_F(RowPlotWindowTest, TheZoomButtonsDrawOtherColumns) {
  EXPECT_EQ(Shown(), Range(1, 200)) << "when it is opened";
  const std::pair<const char*, Range> cases[] = {
      {"Command1", {111, 130}}, {"Command3", {1, 200}}, {"Command2", {81, 160}}};
  for (const auto& [button, shown] : cases) {
    ZoomTo(101, 140);
    Press(window, button);
    EXPECT_EQ(Shown(), shown) << button;
    EXPECT_EQ(Range(frame.xMin, frame.xMax), Range(shown.first - 1, shown.second)) << "drawn";
  }
}

TEST_F(RowPlotWindowTest, ClicksOutsideThePlotDoNothingAndDeselectDropsAZoomBegun) {
  for (const auto button : {Qt::LeftButton, Qt::RightButton})
    ClickAnywhere(window, button, frame.plotRight + 100, 1000);
  EXPECT_EQ(Marks(window), "R");
  Left(40);
  EXPECT_EQ(Marks(window), "Rr");
  Press(window, "Command5");
  EXPECT_EQ(Marks(window), "R");
  Left(50);
  EXPECT_EQ(Shown(), Range(1, 200)) << "again the first click of a pair";
}

TEST_F(RowPlotWindowTest, ZapTakesTheCountTypedAndUndoGoesBackToItsRow) {
  const std::vector<double> before = Pixels(20);
  Type(window, "Text1", "1.5");
  for (int column : {60, 55, 57})
    Right(column);
  Press(window, "Command4");
  EXPECT_EQ(session->journal.back(), "zap 20 55 60 2");
  EXPECT_EQ(BoxText(window, "Text1"), "2");
  EXPECT_EQ(Marks(window), "R") << "the selection is dropped";
  const double top = frame.yMax;
  Bar("VScroll1")->setValue(59);
  for (const char* left : {"undone", "nothing to undo"}) {
    Right(70);
    Press(window, "Command6");
    EXPECT_EQ(Pixels(20), before) << left;
    EXPECT_EQ(Marks(window), "R") << left << ": the selection is dropped";
    EXPECT_EQ(Bar("VScroll1")->value(), 20) << left << ": the row that was zapped";
    EXPECT_EQ(frame.yMax, top) << left << ": on its own scale";
  }
}

TEST_F(RowPlotWindowTest, ZapsThatCannotBeDoneChangeNothing) {
  const std::vector<double> before = Pixels(20);
  Press(window, "Command4");
  Right(50);
  Type(window, "Text1", "99999");
  Press(window, "Command4");
  EXPECT_EQ(platform.TakeMessages(), Texts{"Error: 6  Error: Overflow."});
  EXPECT_EQ(Pixels(20), before);
  EXPECT_EQ(Marks(window), "Rbb") << "the selection stays";
}

TEST_F(RowPlotWindowTest, TheMenuChoosesWhetherAZapGoesBackToTheFullRow) {
  for (const bool isFull : {false, true}) {
    if (isFull)
      Trigger(window, "mRestoreAfterZap");
    ZoomTo(41, 80);
    Right(50);
    Press(window, "Command4");
    EXPECT_EQ(Shown(), isFull ? Range(1, 200) : Range(41, 80));
    EXPECT_EQ(frame.xMax, isFull ? 200 : 80);
  }
}

TEST_F(RowPlotWindowTest, BarsKeysAndWheelScrollRowsAndWithShiftColumns) {
  QScrollBar* const rows = Bar("VScroll1");
  const std::pair<std::function<void()>, int> cases[] = {
      {[&] { rows->setValue(60); }, 60},
      {[&] { QTest::keyClick(rows, Qt::Key_PageUp); }, 55},
      {[&] { Wheel(window, 2); }, 53},
      {[&] { Wheel(window, -20); }, 60},
  };
  for (const auto& [scroll, row] : cases) {
    scroll();
    EXPECT_EQ(LabelText(window, "Label7"), std::to_string(row));
    EXPECT_EQ(plot.lastDrawnRow, row);
  }
  ZoomTo(101, 140);
  Press(window, "Command1");  // 111 to 130 of 200, in steps of 2
  Bar("HScroll1")->setValue(60);
  EXPECT_EQ(Shown(), Range(50, 70));
  Wheel(window, 1, Qt::ShiftModifier);
  EXPECT_EQ(Bar("HScroll1")->value(), 58);
  EXPECT_EQ(plot.plotRow, 60) << "the row stays";
}

TEST_F(RowPlotWindowTest, ARowWithValuesUnder100IsNotShown) {
  Bar("VScroll1")->setValue(40);
  EXPECT_EQ(Bar("VScroll1")->value(), 20) << "the row before stays";
  EXPECT_EQ(LabelText(window, "Label7"), "20");
  EXPECT_EQ(LabelText(window, "Label16"), " Row 40 cannot be shown, because it has values under 100.");
}

TEST_F(RowPlotWindowTest, LeavingDropsTheSelection) {
  const std::function<void()> ways[] = {[&] { Press(window, "Command7"); }, [&] { window->close(); }};
  for (const auto& leave : ways) {
    Right(50);
    ASSERT_EQ(Marks(window), "Rbb");
    leave();
    EXPECT_FALSE(window->isVisible() || plot.zapSelected);
    EXPECT_EQ(OpenRowPlot("20"), window);
    EXPECT_EQ(Marks(window), "R");
  }
}

}  // namespace
}  // namespace halmek::test
