// The continuum, by its clicks and buttons.
#include <gtest/gtest.h>

#include <QRadioButton>
#include <tuple>

#include "windows/part1_test.h"

namespace halmek::test {
namespace {

// The spectrum of a star of 120 columns.
class ContinuumWindowTest : public Part1Test {
 protected:
  QWidget* window = nullptr;
  Continuum& continuum = session->continuum;
  FixedTable<double>& spectrum = session->slot[slots::spectrum].spectrum;

  ContinuumWindowTest() {
    LoadFrame(120, 60);
    window = OpenContinuum();
  }
  void ChooseMode(bool isManual) { Press(window, isManual ? "Option1(1)" : "Option1(0)"); }
  void Click(Qt::MouseButton button, int column) {
    ClickAt(window, continuum.contFrame, button, ScreenX(continuum.contFrame, column));
  }
  void AddPoints(const std::vector<int>& columns) {
    for (int column : columns)
      Click(Qt::LeftButton, column);
  }
  std::vector<double> Spectrum() { return Values(spectrum.Range(1, 120)); }
};

TEST_F(ContinuumWindowTest, TakesPointsInManualModeWhichIsKept) {
  AddPoints({20, 60});
  EXPECT_EQ(Marks(window), "R") << "in automatic mode";
  ChooseMode(true);
  AddPoints({20, 60, 118});
  Click(Qt::RightButton, 56);
  EXPECT_EQ(Marks(window), "Roo");
  window->close();
  Press("Command6");
  EXPECT_TRUE(Find<QRadioButton>(window, "Option1(1)")->isChecked());
}

TEST_F(ContinuumWindowTest, WhatCannotBeDoneIsRefused) {
  Choose(window, "Combo1", 3);
  const std::tuple<const char*, const char*, const char*> cases[] = {
      {"60", "Command1",
       "Hey, for a fit of power 5 you need 6 points (and preferably more).  Please try again."},
      {"99999", "Command1", "Error: 6  Error: Overflow."},
      {"10", "Command2", "Sorry!  This is not implemented yet."}};
  for (const auto& [interval, button, message] : cases) {
    Type(window, "Text1", interval);
    Press(window, button);
    EXPECT_EQ(platform.TakeMessages(), Texts{message});
    EXPECT_EQ(Marks(window), "R");
  }
  ChooseMode(true);
  for (int column = 1; column <= 40; ++column)
    spectrum(column) = -5;
  AddPoints({20});
  EXPECT_EQ(platform.TakeMessages(), Texts{"There is no positive pixel near column 20.  Please try again."});
}

TEST_F(ContinuumWindowTest, NormalizeRevertAndReset) {
  const std::vector<double> crunched = Spectrum();
  Press(window, "Command4", "Command5");
  EXPECT_EQ(Spectrum(), crunched) << "too early";
  Press(window, "Command1");
  EXPECT_TRUE(Marks(window).ends_with("ooB")) << Marks(window);
  Press(window, "Command4");
  const std::vector<double> once = Spectrum();
  EXPECT_NE(once, crunched);
  Press(window, "Command4", "Command5", "Command5", "Command4");
  EXPECT_EQ(Spectrum(), once) << "the second is undone; nothing more to undo, and no fit";
  Press(window, "Command1", "Command3");
  EXPECT_EQ(Marks(window), "R");
}

TEST_F(ContinuumWindowTest, OkLetsTheSpectrumBeSavedAndKeepsTheFit) {
  Press(window, "Command6");
  EXPECT_TRUE(Find<QWidget>(main.get(), "Command9")->isEnabled()) << "an arc is saved without a fit";
  EXPECT_EQ(LabelText(main.get(), "Label27"), "");
  Press("Command6");
  Press(window, "Command1", "Command6");
  EXPECT_EQ(LabelText(main.get(), "Label27"), "DONE!");
  for (const char* marks : {"RB", "R"}) {
    Press("Command6");
    EXPECT_EQ(Marks(window), marks) << "the points are gone, the fit is kept, and dropped by the close box";
    window->close();
    EXPECT_FALSE(continuum.continuumFitDone);
  }
}

}  // namespace
}  // namespace halmek::test
