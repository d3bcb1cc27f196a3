// The continuum, by its clicks and buttons.
#include <gtest/gtest.h>

#include <QRadioButton>

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
  std::vector<double> Points() {
    return Values(continuum.ContinuumPointColumn.Range(1, continuum.continuumPointCount));
  }
  std::vector<double> Spectrum() { return Values(spectrum.Range(1, 120)); }
  bool CanSave() { return Find<QWidget>(main.get(), "Command9")->isEnabled(); }
};

TEST_F(ContinuumWindowTest, OpensInTheModeThatWasKept) {
  EXPECT_EQ(window->windowTitle(), "File:  star.fts     Object:  Test star");
  EXPECT_TRUE(Find<QRadioButton>(window, "Option1(0)")->isChecked());
  EXPECT_EQ(Find<QComboBox>(window, "Combo1")->currentText(), "Polyn. power 4");
  ChooseMode(true);
  EXPECT_EQ(session->manualFit, -1);
  Choose(window, "Combo1", 0);
  EXPECT_EQ(continuum.continuumPower, 2);
  window->close();
  Press("Command6");
  EXPECT_TRUE(Find<QRadioButton>(window, "Option1(1)")->isChecked());
  EXPECT_EQ(continuum.continuumPower, 4) << "loaded anew";
}

TEST_F(ContinuumWindowTest, PointsAreAddedAndDeletedByHandOnly) {
  AddPoints({20, 60});
  EXPECT_EQ(Points(), std::vector<double>{}) << "in automatic mode";
  ChooseMode(true);
  AddPoints({20, 60, 118, 2});
  // The spectrum grows with the column: the highest pixel lies 5 columns to the right, or at the end.
  EXPECT_EQ(Points(), (std::vector<double>{25, 65, 120, 7}));
  EXPECT_EQ(Marks(window), "Roooo");
  Click(Qt::RightButton, 35);
  EXPECT_EQ(Points().size(), 4u) << "10 columns away";
  Click(Qt::RightButton, 56);
  EXPECT_EQ(Points(), (std::vector<double>{25, 120, 7}));
  EXPECT_EQ(Marks(window), "Rooo");
}

TEST_F(ContinuumWindowTest, WhatCannotBeDoneIsRefusedAndChangesNothing) {
  const auto tooFew = [](const std::string& power, const std::string& points) {
    return "Hey, for a fit of power " + power + " you need " + points +
           " points (and preferably more).  Please try again.";
  };
  const std::string belowOne = "Hey, the sample interval must be 1 or more.  Please try again.";
  const struct {
    std::vector<int> points;  // none: in automatic mode
    int power;
    const char* interval;
    std::string message;
  } cases[] = {
      {{10, 30, 60, 90}, 4, "10", tooFew("4", "5")},
      {{}, 5, "60", tooFew("5", "6")},
      {{}, 5, "-7", belowOne},
      {{}, 5, "x", belowOne},
      {{}, 5, "99999", "Error: 6  Error: Overflow."},
  };
  for (const auto& c : cases) {
    ChooseMode(!c.points.empty());
    AddPoints(c.points);
    Choose(window, "Combo1", c.power - 2);
    Type(window, "Text1", c.interval);
    ExpectRefused([&] { Press(window, "Command1"); }, c.message.c_str());
  }
  ExpectRefused([&] { Press(window, "Command2"); }, "Sorry!  This is not implemented yet.");

  ChooseMode(true);
  for (int column = 1; column <= 40; ++column)
    spectrum(column) = -5;
  ExpectRefused([&] { AddPoints({20}); }, "There is no positive pixel near column 20.  Please try again.");
}

TEST_F(ContinuumWindowTest, NormalizeRevertAndReset) {
  const std::vector<double> crunched = Spectrum();
  for (const char* early : {"Command4", "Command5"}) {
    Press(window, early);
    EXPECT_EQ(Spectrum(), crunched) << early;
  }
  Press(window, "Command1");
  EXPECT_EQ(continuum.continuumPointCount, 12);
  EXPECT_TRUE(Marks(window).ends_with("ooB")) << Marks(window);
  Press(window, "Command4");
  const std::vector<double> once = Spectrum();
  EXPECT_EQ(Marks(window), "R");
  Press(window, "Command4");
  EXPECT_DOUBLE_EQ(Spectrum()[0] / once[0], once[0] / crunched[0]) << "divided again";
  Press(window, "Command5");
  EXPECT_EQ(Spectrum(), once) << "the latest normalisation is undone";
  EXPECT_FALSE(continuum.continuumFitDone);
  Press(window, "Command5", "Command4");
  EXPECT_EQ(Spectrum(), once) << "nothing more to undo, and no fit";

  Press(window, "Command1", "Command3");
  EXPECT_FALSE(continuum.continuumFitDone);
  EXPECT_EQ(Marks(window), "R");
  EXPECT_EQ(Spectrum(), once);
}

TEST_F(ContinuumWindowTest, AutomaticPointsServeAFitByHand) {
  Press(window, "Command1");
  ChooseMode(true);
  Press(window, "Command1");
  const double before = spectrum(1), fit = continuum.ContinuumCoefficients[4](1);
  Press(window, "Command4");
  EXPECT_NEAR(spectrum(1), before * continuum.continuumFitMax / fit, 1e-6 * before);
}

TEST_F(ContinuumWindowTest, OkLetsTheSpectrumBeSavedAndKeepsTheFit) {
  EXPECT_FALSE(CanSave());
  Press(window, "Command6");
  EXPECT_TRUE(CanSave()) << "an arc is saved without a fit";
  EXPECT_EQ(LabelText(main.get(), "Label27"), "");
  Press("Command6");
  Press(window, "Command1", "Command6");
  EXPECT_FALSE(window->isVisible());
  EXPECT_EQ(LabelText(main.get(), "Label27"), "DONE!");
  Press("Command6");
  EXPECT_EQ(Marks(window), "RB") << "the points are gone, the fit is kept";
  EXPECT_TRUE(continuum.continuumFitDone);
  window->close();
  Press("Command6");
  EXPECT_EQ(Marks(window), "R") << "the close box drops it";
  EXPECT_FALSE(continuum.continuumFitDone);
}

}  // namespace
}  // namespace halmek::test
