// The row plot, by its buttons, scroll bars and clicks.
#include <gtest/gtest.h>

#include "windows/part1_test.h"

namespace halmek::test {
namespace {

constexpr const char* usualHint =
    " Left-click to select range for zoom; Right-click to select pixels to zap.";

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
    return row == 40 && column == 5 ? 99 : 200 + column * column + row;
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
  ScrollBar State(const char* name) { return StateOfBar(window, name); }
  std::vector<double> Pixels(int row) { return Values(session->image.Row(row, 1, 200)); }
};

TEST_F(RowPlotWindowTest, OpensOnTheWholeRow) {
  EXPECT_EQ(window->windowTitle(), "Plot Row   File: star.fts   Object: Test star");
  EXPECT_EQ(LabelText(window, "Label7"), "20");
  EXPECT_EQ(LabelText(window, "Label16"), usualHint);
  EXPECT_EQ(Shown(), Range(1, 200));
  EXPECT_EQ(State("VScroll1"), (ScrollBar{1, 60, 20, 1, 5}));
  EXPECT_EQ(State("HScroll1"), (ScrollBar{100, 100, 100, 20, 199}));
  EXPECT_EQ(Marks(window), "R");
}

TEST_F(RowPlotWindowTest, TheZoomButtonsDrawOtherColumns) {
  const std::pair<const char*, Range> cases[] = {
      {"Command1", {111, 130}}, {"Command3", {1, 200}}, {"Command2", {81, 160}}};
  for (const auto& [button, shown] : cases) {
    ZoomTo(101, 140);
    Press(window, button);
    EXPECT_EQ(Shown(), shown) << button;
    EXPECT_EQ(Range(frame.xMin, frame.xMax), Range(shown.first - 1, shown.second)) << "drawn";
  }
  EXPECT_EQ(State("HScroll1"), (ScrollBar{40, 160, 120, 8, 80}));
}

TEST_F(RowPlotWindowTest, DeselectDropsAZoomThatWasBegun) {
  Left(40);
  EXPECT_EQ(Marks(window), "Rr");
  Press(window, "Command5");
  EXPECT_EQ(Marks(window), "R");
  Left(50);
  EXPECT_EQ(Shown(), Range(1, 200)) << "again the first click of a pair";
}

TEST_F(RowPlotWindowTest, ClicksOutsideThePlotDoNothing) {
  const Range outside[] = {
      {400, 1000}, {frame.plotRight + 100, 1000}, {3000, 200}, {3000, frame.plotBottom + 60}};
  const std::string before = StateOf(*session);
  for (const auto button : {Qt::LeftButton, Qt::RightButton})
    for (const auto& [x, y] : outside)
      ClickAnywhere(window, button, x, y);
  EXPECT_EQ(Marks(window), "R");
  EXPECT_EQ(StateOf(*session), before);
}

TEST_F(RowPlotWindowTest, ZapTakesTheCountTypedAndUndoGoesBackToItsRow) {
  const struct {
    const char* typed;
    std::vector<int> clicks;
    const char *step, *shown;
  } cases[] = {{"3", {50, 52}, "zap 20 50 52", "3"},
               {"", {51}, "zap 20 51 51", "3"},
               {"1.5", {60, 55, 57}, "zap 20 55 60 2", "2"},
               {"1", {199}, "zap 20 199 199 1", "1"}};
  const std::vector<double> before = Pixels(20), other = Pixels(33);
  for (const auto& c : cases) {
    Type(window, "Text1", c.typed);
    for (int column : c.clicks)
      Right(column);
    EXPECT_EQ(Marks(window), "Rbb");
    Press(window, "Command4");
    EXPECT_EQ(session->journal.back(), c.step);
    EXPECT_NE(Pixels(20), before) << c.typed;
    EXPECT_EQ(BoxText(window, "Text1"), c.shown);
    EXPECT_EQ(Marks(window), "R") << "the selection is dropped";
    // Undone, and where nothing is left to undo.
    Bar("VScroll1")->setValue(33);
    for (int i : {1, 2}) {
      Right(70);
      Press(window, "Command6");
      EXPECT_EQ(Pixels(20), before) << c.typed;
      EXPECT_EQ(Pixels(33), other) << c.typed;
      EXPECT_EQ(Marks(window), "R") << i << ": the selection is dropped";
      EXPECT_EQ(LabelText(window, "Label7"), "20") << i << ": the row that was zapped";
      EXPECT_EQ(Bar("VScroll1")->value(), 20) << i;
    }
  }
}

TEST_F(RowPlotWindowTest, ZapsThatCannotBeDoneChangeNothing) {
  const struct {
    const char* typed;
    std::vector<int> clicks;
    const char *message, *marks;
  } cases[] = {{"3", {}, nullptr, "R"},
               {"99999", {50, 52}, "Error: 6  Error: Overflow.", "Rbb"},
               {"3", {2, 199}, "There are no pixels to average next to this selection.", "Rbb"}};
  for (const auto& c : cases) {
    Type(window, "Text1", c.typed);
    for (int column : c.clicks)
      Right(column);
    ExpectRefused([&] { Press(window, "Command4"); }, c.message);
    EXPECT_EQ(Marks(window), c.marks) << "the selection stays";
    Press(window, "Command5");
    EXPECT_EQ(Marks(window), "R") << "deselected";
  }
}

TEST_F(RowPlotWindowTest, TheMenuChoosesWhetherAZapGoesBackToTheFullRow) {
  for (const bool isFull : {false, true}) {
    if (isFull)
      Trigger(window, "mRestoreAfterZap");
    EXPECT_EQ(session->restoreAfterZap, isFull ? -1 : 0);
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
      {[&] { QTest::keyClick(rows, Qt::Key_Up); }, 54},
      {[&] { Wheel(window, 2); }, 52},
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
  EXPECT_EQ(frame.xMax, 70) << "drawn";
  Wheel(window, 1, Qt::ShiftModifier);
  EXPECT_EQ(Bar("HScroll1")->value(), 58);
  EXPECT_EQ(plot.plotRow, 60) << "the row stays";
}

TEST_F(RowPlotWindowTest, ARowWithValuesUnder100IsNotShown) {
  Bar("VScroll1")->setValue(40);
  EXPECT_EQ(LabelText(window, "Label7"), "20") << "the row before stays";
  EXPECT_EQ(Bar("VScroll1")->value(), 20);
  EXPECT_EQ(LabelText(window, "Label16"), " Row 40 cannot be shown, because it has values under 100.");
  Bar("VScroll1")->setValue(41);
  EXPECT_EQ(LabelText(window, "Label7"), "41");
  EXPECT_EQ(LabelText(window, "Label16"), usualHint);
}

TEST_F(RowPlotWindowTest, LeavingDropsTheSelection) {
  const std::function<void()> ways[] = {[&] { Press(window, "Command7"); }, [&] { Trigger(window, "mExit"); },
                                        [&] { window->close(); }};
  for (const auto& leave : ways) {
    Right(50);
    ASSERT_TRUE(plot.zapSelected);
    leave();
    EXPECT_FALSE(window->isVisible());
    EXPECT_EQ(Range(plot.zapFirst, plot.zapLast), Range(RowPlot::noFirst, RowPlot::noLast));
    EXPECT_FALSE(plot.zapSelected);
    EXPECT_EQ(OpenRowPlot("20"), window);
    EXPECT_EQ(Marks(window), "R");
  }
}

}  // namespace
}  // namespace halmek::test
