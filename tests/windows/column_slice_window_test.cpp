// The column slice, by its clicks and buttons.
#include <gtest/gtest.h>

#include <QRadioButton>
#include <tuple>

#include "windows/part1_test.h"

namespace halmek::test {
namespace {

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

TEST_F(ColumnSliceWindowTest, ClicksMarkTheRangesUntilTheyAreComplete) {
  MarkRows({34}, {55});
  MarkRows({26}, {45, 5});
  EXPECT_EQ(Brackets(), 2) << "the aperture and a range";
  MarkRows({}, {15, 20});
  MarkRows({20}, {});
  EXPECT_EQ(Brackets(), 2) << "both ranges, which complete the selection";
  EXPECT_EQ(LabelText(window, "labelMarks"), "Aperture 34 to 26   Background 55 to 45, 5 to 15");
}

TEST_F(ColumnSliceWindowTest, ButtonsBeforeTheirTimeAreRefused) {
  constexpr const char* noSelection = "Hey, you need to set the aperture(s).";
  const std::tuple<std::vector<int>, int, const char*, const char*> cases[] = {
      {{}, 0, "Command2", noSelection},
      {{5, 15, 45}, 0, "Command2", noSelection},
      {{55}, 3, "Command2", "Sorry, power 3 has not been implemented yet.  Try 0, 1, or 2."},
      {{}, 0, "Command4", "Background fit was not done.  Fit background or press 'Cancel'."}};
  for (const auto& [background, power, button, message] : cases) {
    MarkRows({}, background);
    Choose(window, "Combo1", power);
    Press(window, button);
    EXPECT_EQ(platform.TakeMessages(), Texts{message});
    EXPECT_TRUE(window->isVisible());
  }
}

TEST_F(ColumnSliceWindowTest, FourRightClicksAreFittedButNothingIsExtractedWithoutAWholeAperture) {
  MarkRows({}, {5, 15, 45, 55});
  Press(window, "Command2", "Command4");
  EXPECT_EQ(LabelText(main.get(), "Label25"), "DONE!");
  const auto expectRefused = [&] {
    Press("Command5");
    EXPECT_EQ(platform.TakeMessages(),
              Texts{"Hey, you need to set the aperture and fit the background first!"});
  };
  expectRefused();
  OpenSlice();
  Press(window, "Command1");
  MarkRows({50}, {});
  expectRefused();
  MarkRows({55}, {});
  Press("Command5");
  EXPECT_EQ(session->journal.at(session->journal.size() - 2), "aperture 50 55");
}

TEST_F(ColumnSliceWindowTest, TheClearButtonsDropMarksOrFitAndCancelBoth) {
  const std::tuple<std::string, const char*, int> cases[] = {
      {"Command1", "GR", 0}, {"Command3", "R", 2}, {"Command5", "R", 0}};
  for (const auto& [button, marks, brackets] : cases) {
    SCOPED_TRACE(button);
    const bool isCancel = button == "Command5";
    FitSlice();
    EXPECT_EQ(LabelText(main.get(), "Label25"), "DONE!");
    OpenSlice();
    EXPECT_EQ(Marks(window), "GR") << "as it was left";
    Press(window, button.c_str());
    EXPECT_EQ(window->isVisible(), !isCancel);
    EXPECT_EQ(Find<QWidget>(main.get(), "Command5")->isEnabled(), !isCancel);
    EXPECT_EQ(LabelText(main.get(), "Label25"), "");
    OpenSlice();
    EXPECT_EQ(Marks(window), marks);
    EXPECT_EQ(Brackets(), brackets);
    Press(window, "Command1");
  }
}

TEST_F(ColumnSliceWindowTest, TheScaleIsFixedOrThatOfTheColumn) {
  const auto expectScale = [&](int column, double least, double most) {
    EXPECT_EQ(LabelText(window, "Label13"), std::to_string(column));
    EXPECT_EQ(std::pair(slice.colFrame.yMin, slice.colFrame.yMax), std::pair(least, NiceUpperBound(most)));
  };
  const double least = NiceLowerBound(401);
  EXPECT_TRUE(Find<QRadioButton>(window, "Option2")->isChecked());
  expectScale(60, least, Star(60, 30));
  Find<QScrollBar>(window, "HScroll1")->setValue(2);
  expectScale(2, least, Star(2, 30));
  Press(window, "Option1");
  Wheel(window, 1);
  expectScale(1, 0, session->imageMax);
  Choose(window, "Combo1", 2);
  Press(window, "Command5");
  OpenSlice();
  EXPECT_TRUE(Find<QRadioButton>(window, "Option2")->isChecked()) << "opens on its own scale";
  EXPECT_EQ(Find<QComboBox>(window, "Combo1")->currentIndex(), 0);
  EXPECT_EQ(StateOfBar(window, "HScroll1"), (ScrollBar{1, 120, 60, 1, 10}));
}

}  // namespace
}  // namespace halmek::test
