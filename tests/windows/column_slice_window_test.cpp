// The column slice, by its clicks and buttons.
#include <gtest/gtest.h>

#include <QRadioButton>

#include "windows/part1_test.h"

namespace halmek::test {
namespace {

constexpr const char* noSelection = "Hey, you need to set the aperture(s).";
constexpr const char* noFit = "Background fit was not done.  Fit background or press 'Cancel'.";

// The slice of a star of 120 x 60 pixels.
class ColumnSliceWindowTest : public Part1Test {
 protected:
  QWidget* window = nullptr;
  Slice& slice = session->slice;
  int axisLines = 0;

  ColumnSliceWindowTest() {
    LoadFrame(120, 60);
    window = OpenSlice();
    axisLines = BlackLines();
  }
  int BlackLines() {
    int lines = 0;
    for (const DrawingItem& item : SurfaceOf(window).drawing()->items)
      if (const auto* line = std::get_if<Line>(&item))
        lines += line->colour == colours::black;
    return lines;
  }
  // Each has three lines, beside those of the axes, which were all when the window was opened.
  int Brackets() { return (BlackLines() - axisLines) / 3; }
};

TEST_F(ColumnSliceWindowTest, ClicksMarkTheRangesThatAreFittedAndExtracted) {
  MarkRows({34}, {55});
  MarkRows({26}, {45, 5});
  EXPECT_EQ(Brackets(), 2) << "the aperture and a range";
  MarkRows({}, {15, 20});
  MarkRows({20}, {});
  EXPECT_EQ(Brackets(), 2) << "both ranges, which complete the selection";
  EXPECT_EQ(Range(slice.apertureFirstRow, slice.apertureLastRow), Range(34, 26));
  EXPECT_EQ(Range(slice.background1FirstRow, slice.background1LastRow), Range(55, 45));
  EXPECT_EQ(Range(slice.background2FirstRow, slice.background2LastRow), Range(5, 15));

  // Clicked backwards, the ranges are those between the ends: 11 rows each.
  Press(window, "Command2", "Command4");
  Press("Command5");
  EXPECT_EQ(session->background.backgroundMedian(7), (415 + 445) / 2.0);
  double sum = 0;
  for (int row = 26; row <= 34; ++row)
    sum += Star(7, row) - 430;
  EXPECT_EQ(session->slot[slots::spectrum].spectrum(7), sum);
}

TEST_F(ColumnSliceWindowTest, ButtonsBeforeTheirTimeAreRefused) {
  const struct {
    std::vector<int> aperture, background;
    int power;
    const char *button, *message;
  } cases[] = {
      {{}, {}, 0, "Command4", noFit},
      {{26, 34}, {}, 0, "Command2", noSelection},
      {{}, {5, 15, 45}, 0, "Command2", noSelection},
      {{}, {55}, 3, "Command2", "Sorry, power 3 has not been implemented yet.  Try 0, 1, or 2."},
      {{}, {}, 0, "Command4", noFit},
  };
  for (const auto& c : cases) {
    MarkRows(c.aperture, c.background);
    Choose(window, "Combo1", c.power);
    ExpectRefused([&] { Press(window, c.button); }, c.message);
    EXPECT_TRUE(window->isVisible());
    EXPECT_FALSE(session->workflow.crunchEnabled);
  }
}

TEST_F(ColumnSliceWindowTest, FourRightClicksAreFittedButNothingIsExtractedWithoutAWholeAperture) {
  MarkRows({}, {5, 15, 45, 55});
  Press(window, "Command2", "Command4");
  EXPECT_EQ(LabelText(main.get(), "Label25"), "DONE!");
  const auto refusal = "Hey, you need to set the aperture and fit the background first!";
  const auto crunch = [&] { Press("Command5"); };
  ExpectRefused(crunch, refusal);
  OpenSlice();
  Press(window, "Command1");
  MarkRows({50}, {});
  ExpectRefused(crunch, refusal);
  MarkRows({55}, {});
  crunch();
  EXPECT_EQ(session->journal.at(session->journal.size() - 2), "aperture 50 55");
}

TEST_F(ColumnSliceWindowTest, TheClearButtonsDropMarksOrFitAndCancelBoth) {
  const struct {
    const char *button, *marks;
    int clicks, brackets;
    bool isFitted;
  } cases[] = {
      {"Command1", "GR", 0, 0, true}, {"Command3", "R", 4, 2, false}, {"Command5", "R", 0, 0, false}};
  for (const auto& c : cases) {
    FitSlice();
    EXPECT_EQ(LabelText(main.get(), "Label25"), "DONE!");
    OpenSlice();
    EXPECT_EQ(Marks(window), "GR") << "as it was left";
    Press(window, c.button);
    const bool isCancelled = c.button == std::string("Command5");
    EXPECT_EQ(window->isVisible(), !isCancelled);
    EXPECT_EQ(Find<QWidget>(main.get(), "Command5")->isEnabled(), !isCancelled);
    OpenSlice();
    EXPECT_EQ(Marks(window), c.marks) << c.button;
    EXPECT_EQ(Range(slice.backgroundClicks, Brackets()), Range(c.clicks, c.brackets)) << c.button;
    EXPECT_EQ(session->background.backgroundFitted, c.isFitted) << c.button;
    EXPECT_EQ(LabelText(main.get(), "Label25"), "") << c.button;
    Press(window, "Command1");
  }
}

TEST_F(ColumnSliceWindowTest, TheScaleIsFixedOrThatOfTheColumn) {
  const auto expectScale = [&](double least, double most) {
    EXPECT_EQ(std::pair(slice.colFrame.yMin, slice.colFrame.yMax), std::pair(least, NiceUpperBound(most)));
  };
  const double least = NiceLowerBound(401);
  auto* const columns = Find<QScrollBar>(window, "HScroll1");
  EXPECT_TRUE(Find<QRadioButton>(window, "Option2")->isChecked());
  expectScale(least, Star(60, 30));
  columns->setValue(1);
  EXPECT_EQ(LabelText(window, "Label13"), "1");
  expectScale(least, Star(1, 30));
  Press(window, "Option1");
  columns->setValue(120);
  expectScale(0, session->imageMax);
  Press(window, "Option2");
  expectScale(least, Star(120, 30));
  Wheel(window, 1);
  EXPECT_EQ(slice.sliceColumn, 119);

  Press(window, "Option1");
  Choose(window, "Combo1", 2);
  Press(window, "Command5");
  OpenSlice();
  EXPECT_TRUE(Find<QRadioButton>(window, "Option2")->isChecked()) << "opens on its own scale";
  EXPECT_EQ(Find<QComboBox>(window, "Combo1")->currentIndex(), 0);
}

TEST_F(ColumnSliceWindowTest, OpensOnTheMiddleColumnOfAnyFrame) {
  for (const auto& [columns, middle] : {Range{1003, 502}, {1, 1}, {2, 1}}) {
    LoadFrame(columns, 60);
    OpenSlice();
    EXPECT_EQ(StateOfBar(window, "HScroll1"), (ScrollBar{1, columns, middle, 1, 10}));
  }
}

}  // namespace
}  // namespace halmek::test
