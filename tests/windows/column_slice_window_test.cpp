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

  ColumnSliceWindowTest() {
    LoadFrame(120, 60);
    window = OpenSlice();
  }
  // How many black lines there are beyond those of the axes: three a bracket.
  int Brackets() {
    const auto black = [&] {
      int lines = 0;
      for (const DrawingItem& item : SurfaceOf(window).drawing()->items)
        if (const auto* line = std::get_if<Line>(&item))
          lines += line->colour == colours::black;
      return lines;
    }();
    return (black - axisLines_) / 3;
  }
  void RememberAxes() { axisLines_ = Brackets() * 3 + axisLines_; }
  std::pair<double, double> Limits() const { return {slice.colFrame.yMin, slice.colFrame.yMax}; }

 private:
  int axisLines_ = 0;
};

TEST_F(ColumnSliceWindowTest, ClicksGoThroughTheStatesOfTheSelection) {
  RememberAxes();
  const auto left = Qt::LeftButton, right = Qt::RightButton;
  const struct {
    Qt::MouseButton button;
    int row;
    int state, clicks, brackets;
  } clicks[] = {{left, 34, 1, 0, 0},   {right, 55, 1, 1, 0},  {left, 26, 2, 1, 1},
                {left, 10, 2, 1, 1},   {right, 45, 2, 2, 2},  {right, 5, 2, 3, 2},
                {right, 15, -1, 4, 2}, {right, 20, -1, 4, 2}, {left, 20, -1, 4, 2}};
  for (const auto& c : clicks) {
    ClickRow(c.button, c.row);
    EXPECT_EQ(Range(slice.apertureState, slice.backgroundClicks), Range(c.state, c.clicks)) << c.row;
    EXPECT_EQ(Brackets(), c.brackets) << c.row;
  }
  EXPECT_EQ(Range(slice.apertureFirstRow, slice.apertureLastRow), Range(34, 26));
  EXPECT_EQ(Range(slice.background1FirstRow, slice.background1LastRow), Range(55, 45));
  EXPECT_EQ(Range(slice.background2FirstRow, slice.background2LastRow), Range(5, 15));

  // Clicked backwards, the ranges are those between the ends: 11 rows each.
  Press(window, "Command2");
  EXPECT_EQ(session->background.BackgroundCount, 22);
  EXPECT_EQ(session->background.backgroundMedian(7), (415 + 445) / 2.0);
  Press(window, "Command4");
  Press("Command5");
  double sum = 0;
  for (int row = 26; row <= 34; ++row)
    sum += Star(7, row) - 430;
  EXPECT_EQ(session->slot[slots::spectrum].spectrum(7), sum);
  EXPECT_EQ(platform.messages, Texts{});
}

TEST_F(ColumnSliceWindowTest, ButtonsBeforeTheirTimeAreRefused) {
  const auto choose = [&](int power) { Choose(window, "Combo1", power); };
  const struct {
    const char* what;
    std::function<void()> before;
    const char* button;
    const char* message;
  } cases[] = {
      {"no click", [] {}, "Command2", noSelection},
      {"no fit", [] {}, "Command4", noFit},
      {"aperture only",
       [&] {
         MarkRows({26, 34}, {});
       },
       "Command2", noSelection},
      {"three clicks",
       [&] {
         MarkRows({}, {5, 15, 45});
       },
       "Command2", noSelection},
      {"cubic", [&] { MarkRows({}, {55}), choose(3); }, "Command2",
       "Sorry, power 3 has not been implemented yet.  Try 0, 1, or 2."},
      {"no fit, all marked", [&] { choose(0); }, "Command4", noFit},
  };
  for (const auto& c : cases) {
    c.before();
    const std::string before = StateOf(*session);
    Press(window, c.button);
    EXPECT_EQ(platform.TakeMessages(), Texts{c.message}) << c.what;
    EXPECT_EQ(StateOf(*session), before) << c.what;
    EXPECT_TRUE(window->isVisible());
    EXPECT_FALSE(session->workflow.crunchEnabled);
  }
}

TEST_F(ColumnSliceWindowTest, FourRightClicksNeedNoAperture) {
  MarkRows({}, {5, 15, 45, 55});
  Press(window, "Command2");
  Press(window, "Command4");
  EXPECT_EQ(platform.TakeMessages(), Texts{});
  EXPECT_EQ(LabelText(main.get(), "Label25"), "DONE!");
  const std::string before = StateOf(*session);
  Press("Command5");
  EXPECT_EQ(platform.TakeMessages(),
            Texts{"Hey, you need to set the aperture and fit the background first!"});
  EXPECT_EQ(StateOf(*session), before);
}

TEST_F(ColumnSliceWindowTest, TheClearButtonsDropMarksOrFitAndTheMainWindowsStatus) {
  RememberAxes();
  FitSlice();
  OpenSlice();
  EXPECT_EQ(Marks(window), "GR") << "as it was left";
  Press(window, "Command1");
  EXPECT_EQ(Range(slice.apertureState, slice.backgroundClicks), Range(0, 0));
  EXPECT_TRUE(session->background.backgroundFitted) << "the fit stays";
  EXPECT_EQ(Brackets(), 0);
  EXPECT_EQ(Marks(window), "GR");
  EXPECT_EQ(LabelText(main.get(), "Label25"), "");

  MarkRows({26, 34}, {5, 15, 45, 55});
  Press(window, "Command4");
  EXPECT_EQ(LabelText(main.get(), "Label25"), "DONE!");
  OpenSlice();
  Press(window, "Command3");
  EXPECT_FALSE(session->background.backgroundFitted);
  EXPECT_EQ(slice.backgroundClicks, 4) << "the marks stay";
  EXPECT_EQ(Marks(window), "R");
  EXPECT_EQ(LabelText(main.get(), "Label25"), "");
}

TEST_F(ColumnSliceWindowTest, CancelDropsEverything) {
  RememberAxes();
  FitSlice();
  OpenSlice();
  Press(window, "Command5");
  EXPECT_FALSE(window->isVisible());
  EXPECT_FALSE(Find<QPushButton>(main.get(), "Command5")->isEnabled());
  OpenSlice();
  EXPECT_EQ(Brackets(), 0);
  EXPECT_EQ(Marks(window), "R");
  Press(window, "Command2");
  EXPECT_EQ(platform.TakeMessages(), Texts{noSelection});
}

TEST_F(ColumnSliceWindowTest, TheScaleIsFixedOrThatOfTheColumn) {
  const auto choose = [&](const char* option) {
    QTest::mouseClick(Find<QRadioButton>(window, option), Qt::LeftButton, {}, QPoint(8, 8));
  };
  const auto columnLimits = [&](int column) {
    return std::pair(NiceLowerBound(401), NiceUpperBound(Star(column, 30)));
  };
  EXPECT_TRUE(Find<QRadioButton>(window, "Option2")->isChecked());
  EXPECT_EQ(Limits(), columnLimits(60));
  Find<QScrollBar>(window, "HScroll1")->setValue(1);
  EXPECT_EQ(LabelText(window, "Label13"), "1");
  EXPECT_EQ(Limits(), columnLimits(1));
  choose("Option1");
  const std::pair fixed(0.0, NiceUpperBound(session->imageMax));
  EXPECT_EQ(Limits(), fixed);
  Find<QScrollBar>(window, "HScroll1")->setValue(120);
  EXPECT_EQ(Limits(), fixed);
  choose("Option2");
  EXPECT_EQ(Limits(), columnLimits(120));
  Wheel(window, 1);
  EXPECT_EQ(slice.sliceColumn, 119);

  choose("Option1");
  Choose(window, "Combo1", 2);
  Press(window, "Command5");
  OpenSlice();
  EXPECT_TRUE(Find<QRadioButton>(window, "Option2")->isChecked()) << "opens on its own scale";
  EXPECT_EQ(Find<QComboBox>(window, "Combo1")->currentIndex(), 0);
}

TEST_F(ColumnSliceWindowTest, OpensOnTheMiddleColumnOfAnyFrame) {
  for (const auto& [columns, middle] : {Range{1001, 500}, {1003, 502}, {1, 1}, {3, 2}, {2, 1}}) {
    LoadFrame(columns, 60);
    OpenSlice();
    EXPECT_EQ(slice.sliceColumn, middle);
    EXPECT_EQ(LabelText(window, "Label13"), std::to_string(middle));
    const auto* const bar = Find<QScrollBar>(window, "HScroll1");
    EXPECT_EQ(Range(bar->minimum(), bar->maximum()), Range(1, columns));
    EXPECT_EQ(Range(bar->singleStep(), bar->pageStep()), Range(1, 10));
  }
}

}  // namespace
}  // namespace halmek::test
