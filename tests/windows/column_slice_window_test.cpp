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

  ColumnSliceWindowTest() {
    LoadFrame(120, 60);
    window = OpenSlice();
  }
  std::string Marked() { return LabelText(window, "labelMarks"); }
};

TEST_F(ColumnSliceWindowTest, ClicksMarkTheRangesUntilTheyAreComplete) {
  MarkRows({34}, {55});
  MarkRows({26}, {45, 5, 15, 20});
  MarkRows({20}, {});
  EXPECT_EQ(Marked(), "Aperture 34 to 26   Background 55 to 45, 5 to 15");
}

TEST_F(ColumnSliceWindowTest, ButtonsBeforeTheirTimeAreRefused) {
  const std::pair<const char*, const char*> cases[] = {
      {"Command2", "Hey, you need to set the aperture(s)."},
      {"Command4", "Background fit was not done.  Fit background or press 'Cancel'."}};
  MarkRows({}, {5, 15, 45});
  for (const auto& [button, message] : cases) {
    Press(window, button);
    EXPECT_EQ(platform.TakeMessages(), Texts{message});
    EXPECT_TRUE(window->isVisible());
  }
}

TEST_F(ColumnSliceWindowTest, FourRightClicksAreFittedButNothingIsExtractedWithoutAWholeAperture) {
  MarkRows({}, {5, 15, 45, 55});
  Press(window, "Command2", "Command4");
  EXPECT_EQ(LabelText(main.get(), "Label25"), "DONE!");
  OpenSlice();
  Press(window, "Command1");
  MarkRows({50}, {});
  Press("Command5");
  EXPECT_EQ(platform.TakeMessages(),
            Texts{"Hey, you need to set the aperture and fit the background first!"});
  MarkRows({55}, {});
  Press("Command5");
  EXPECT_EQ(session->journal.at(session->journal.size() - 2), "aperture 50 55");
}

TEST_F(ColumnSliceWindowTest, TheClearButtonsDropMarksOrFitAndCancelBoth) {
  const std::tuple<std::string, const char*, bool> cases[] = {
      {"Command1", "GR", false}, {"Command3", "R", true}, {"Command5", "R", false}};
  for (const auto& [button, marks, isMarked] : cases) {
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
    EXPECT_EQ(Marked().starts_with("Aperture 26 to 34"), isMarked) << Marked();
    Press(window, "Command1");
  }
}

TEST_F(ColumnSliceWindowTest, TheScaleIsFixedOrThatOfTheColumn) {
  const auto expectScale = [&](int column, double most) {
    EXPECT_EQ(LabelText(window, "Label13"), std::to_string(column));
    EXPECT_EQ(session->slice.colFrame.yMax, NiceUpperBound(most));
  };
  Find<QScrollBar>(window, "HScroll1")->setValue(2);
  expectScale(2, Star(2, 30));
  Press(window, "Option1");
  Wheel(window, 1);
  expectScale(1, session->imageMax);
  Press(window, "Command5");
  OpenSlice();
  EXPECT_TRUE(Find<QRadioButton>(window, "Option2")->isChecked()) << "opens on its own scale";
}

}  // namespace
}  // namespace halmek::test
