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
  ScrollBar State(const char* name) {
    const QScrollBar* const bar = Bar(name);
    return {bar->minimum(), bar->maximum(), bar->value(), bar->singleStep(), bar->pageStep()};
  }
  std::vector<double> Pixels(int row) {
    const auto pixels = session->image.Row(row, 1, 200);
    return {pixels.begin(), pixels.end()};
  }
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

TEST_F(RowPlotWindowTest, TheZoomButtonsFollowTheArithmetic) {
  constexpr auto in = "Command1", out = "Command2", full = "Command3";
  const struct {
    Range before;
    const char* button;
    Range after;
  } cases[] = {{{101, 140}, in, {111, 130}}, {{101, 120}, in, {106, 115}},  {{101, 119}, in, {101, 119}},
               {{1, 40}, out, {1, 80}},      {{161, 200}, out, {121, 200}}, {{41, 160}, out, {1, 200}},
               {{101, 140}, full, {1, 200}}, {{101, 140}, out, {81, 160}}};
  for (const auto& c : cases) {
    ZoomTo(c.before.first, c.before.second);
    Press(window, c.button);
    EXPECT_EQ(Shown(), c.after) << c.before.first << ' ' << c.button;
    EXPECT_EQ(frame.xMin * 1000 + frame.xMax, (c.after.first - 1) * 1000 + c.after.second) << "drawn";
  }
  EXPECT_EQ(State("HScroll1"), (ScrollBar{40, 160, 120, 8, 80}));
}

TEST_F(RowPlotWindowTest, TwoLeftClicksOnDifferentColumnsZoom) {
  Left(60);
  EXPECT_EQ(Marks(window), "Rr");
  Left(60);
  EXPECT_EQ(Shown(), Range(1, 200));
  EXPECT_EQ(Marks(window), "Rr") << "the second click is still awaited";
  Left(31);
  EXPECT_EQ(Shown(), Range(31, 60));
  EXPECT_EQ(Marks(window), "R");

  Left(40);
  Press(window, "Command5");
  EXPECT_EQ(Marks(window), "R") << "deselected";
  Left(50);
  EXPECT_EQ(Shown(), Range(31, 60)) << "again the first click of a pair";
}

TEST_F(RowPlotWindowTest, ClicksOutsideThePlotDoNothing) {
  const std::string before = StateOf(*session);
  for (const auto button : {Qt::LeftButton, Qt::RightButton})
    for (const auto& [x, y] : {Range{400, 1000},
                               {frame.plotRight + 100, 1000},
                               {3000, 200},
                               {3000, frame.plotBottom + 60},
                               {15, 15}})
      ClickAnywhere(window, button, x, y);
  EXPECT_EQ(Marks(window), "R");
  EXPECT_EQ(StateOf(*session), before);
}

TEST_F(RowPlotWindowTest, ZapAveragesWithTheCountTyped) {
  const auto mean = [](std::initializer_list<int> columns) {
    double sum = 0;
    for (int column : columns)
      sum += Value(column, 20);
    return sum / static_cast<double>(columns.size());
  };
  const struct {
    const char* typed;
    std::vector<int> clicks;
    Range zapped;
    double value;
    const char* shown;
  } cases[] = {{"3", {50, 52}, {50, 52}, mean({46, 47, 48, 54, 55, 56}), "3"},
               {"", {50, 52}, {50, 52}, mean({46, 47, 48, 54, 55, 56}), "3"},
               {"0", {50, 52}, {50, 52}, mean({46, 47, 48, 54, 55, 56}), "3"},
               {"-2", {51}, {51, 51}, mean({47, 48, 49, 53, 54, 55}), "3"},
               {"1.5", {60, 55}, {55, 60}, mean({52, 53, 62, 63}), "2"},
               {"2", {60, 55, 57}, {55, 60}, mean({52, 53, 62, 63}), "2"},
               {"3", {2}, {2, 2}, mean({4, 5, 6}), "3"},
               {"1", {199}, {199, 199}, mean({197}), "1"}};
  for (const auto& c : cases) {
    Type(window, "Text1", c.typed);
    for (int column : c.clicks)
      Right(column);
    EXPECT_EQ(Range(plot.zapFirst, plot.zapLast), c.zapped);
    EXPECT_EQ(Marks(window), "Rbb");
    const std::vector<double> before = Pixels(20);
    Press(window, "Command4");
    std::vector<double> expected = before;
    std::fill(expected.begin() + c.zapped.first - 1, expected.begin() + c.zapped.second, c.value);
    EXPECT_EQ(Pixels(20), expected) << c.typed;
    EXPECT_EQ(Find<QLineEdit>(window, "Text1")->text(), c.shown);
    EXPECT_EQ(Marks(window), "R") << "the selection is dropped";
    Press(window, "Command6");
    EXPECT_EQ(Pixels(20), before) << c.typed;
  }
  EXPECT_EQ(platform.messages, Texts{});
}

TEST_F(RowPlotWindowTest, ZapsThatCannotBeDoneChangeNothing) {
  const std::string nothing = StateOf(*session);
  Press(window, "Command4");
  EXPECT_EQ(platform.TakeMessages(), Texts{});
  EXPECT_EQ(StateOf(*session), nothing) << "no selection";

  const struct {
    const char* typed;
    Range clicks;
    const char* message;
  } cases[] = {{"99999", {50, 52}, "Error: 6  Error: Overflow."},
               {"3", {2, 199}, "There are no pixels to average next to this selection."}};
  for (const auto& c : cases) {
    Type(window, "Text1", c.typed);
    Right(c.clicks.first);
    Right(c.clicks.second);
    const std::string before = StateOf(*session);
    Press(window, "Command4");
    EXPECT_EQ(platform.TakeMessages(), Texts{c.message});
    EXPECT_EQ(StateOf(*session), before) << c.message;
    EXPECT_EQ(Marks(window), "Rbb") << "the selection stays";
    Press(window, "Command5");
    EXPECT_EQ(StateOf(*session), nothing);
  }
}

TEST_F(RowPlotWindowTest, UndoGoesBackToTheRowThatWasZapped) {
  const std::vector<double> before = Pixels(20), other = Pixels(33);
  Right(50);
  Press(window, "Command4");
  Bar("VScroll1")->setValue(33);
  Right(70);
  Press(window, "Command6");
  EXPECT_EQ(Pixels(20), before);
  EXPECT_EQ(Pixels(33), other);
  EXPECT_EQ(LabelText(window, "Label7"), "20");
  EXPECT_EQ(Marks(window), "R") << "the selection is dropped";

  Right(70);
  Press(window, "Command6");
  EXPECT_EQ(Marks(window), "R") << "also where there is nothing to undo";
  EXPECT_EQ(Pixels(20), before);
  EXPECT_EQ(platform.messages, Texts{});
}

TEST_F(RowPlotWindowTest, UndoBringsTheScrollBarToTheRowToo) {
  Right(50);
  Press(window, "Command4");
  Bar("VScroll1")->setValue(33);
  Press(window, "Command6");
  EXPECT_EQ(Bar("VScroll1")->value(), 20);
  QTest::keyClick(Bar("VScroll1"), Qt::Key_Down);
  EXPECT_EQ(LabelText(window, "Label7"), "21");
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

TEST_F(RowPlotWindowTest, RowsAreScrolledByBarKeysAndWheel) {
  QScrollBar* const rows = Bar("VScroll1");
  const auto drawn = [&] { return plot.plotRow == plot.lastDrawnRow ? plot.plotRow : -1; };
  rows->setValue(60);
  EXPECT_EQ(drawn(), 60);
  QTest::keyClick(rows, Qt::Key_PageUp);
  EXPECT_EQ(drawn(), 55);
  QTest::keyClick(rows, Qt::Key_Up);
  EXPECT_EQ(drawn(), 54);
  Wheel(window, 2);
  EXPECT_EQ(drawn(), 52);
  Wheel(window, -20);
  EXPECT_EQ(drawn(), 60) << "the last row";
  EXPECT_EQ(LabelText(window, "Label7"), "60");
}

TEST_F(RowPlotWindowTest, ColumnsAreScrolledByBarAndShiftedWheel) {
  ZoomTo(101, 140);
  Press(window, "Command1");  // 111 to 130 of 200, in steps of 2
  const struct {
    int value;
    Range shown;
  } cases[] = {{60, {50, 70}}, {10, {1, 21}}, {190, {180, 200}}};
  for (const auto& c : cases) {
    Bar("HScroll1")->setValue(c.value);
    EXPECT_EQ(Shown(), c.shown) << c.value;
    EXPECT_EQ(frame.xMax, c.shown.second) << "drawn";
  }
  const int value = Bar("HScroll1")->value();
  Wheel(window, 1, Qt::ShiftModifier);
  EXPECT_EQ(Bar("HScroll1")->value(), value - Bar("HScroll1")->singleStep());
  EXPECT_EQ(plot.plotRow, 20) << "the row stays";
}

TEST_F(RowPlotWindowTest, ARowWithValuesUnder100IsNotShown) {
  Bar("VScroll1")->setValue(40);
  EXPECT_EQ(LabelText(window, "Label7"), "20") << "the row before stays";
  EXPECT_EQ(Bar("VScroll1")->value(), 20);
  EXPECT_EQ(LabelText(window, "Label16"), " Row 40 cannot be shown, because it has values under 100.");
  Bar("VScroll1")->setValue(41);
  EXPECT_EQ(LabelText(window, "Label7"), "41");
  EXPECT_EQ(LabelText(window, "Label16"), usualHint);
  EXPECT_EQ(platform.messages, Texts{});
}

TEST_F(RowPlotWindowTest, LeavingDropsTheSelection) {
  const struct {
    const char* how;
    std::function<void()> leave;
  } cases[] = {{"Return", [&] { Press(window, "Command7"); }},
               {"Exit", [&] { Trigger(window, "mExit"); }},
               {"close box", [&] { window->close(); }}};
  for (const auto& c : cases) {
    Right(50);
    ASSERT_TRUE(plot.zapSelected);
    c.leave();
    EXPECT_FALSE(window->isVisible()) << c.how;
    EXPECT_EQ(Range(plot.zapFirst, plot.zapLast), Range(RowPlot::noFirst, RowPlot::noLast)) << c.how;
    EXPECT_FALSE(plot.zapSelected);
    EXPECT_EQ(OpenRowPlot("20"), window);
    EXPECT_EQ(Marks(window), "R");
  }
}

}  // namespace
}  // namespace halmek::test
