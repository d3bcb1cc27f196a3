// Windows where they stood: kept, restored, brought into sight; and plots that follow their windows.
#include "platform/placement.h"

#include <gtest/gtest.h>

#include <tuple>

#include "reduce/column_slice_window.h"
#include "windows/part1_test.h"

namespace halmek::test {
namespace {

TEST(InSight, MovesAndShrinksWindowsThatCannotBeReached) {
  const QList<QRect> one{{0, 0, 1000, 800}}, two{{0, 0, 1000, 800}, {1000, -200, 600, 500}};
  const std::tuple<const char*, QList<QRect>, QRect, QRect> cases[] = {
      {"beyond the right edge, within reach", one, {900, 700, 300, 200}, {900, 700, 300, 200}},
      {"too little of the title bar", one, {-260, 0, 300, 200}, {0, 0, 300, 200}},
      {"title bar above the screen", one, {100, -10, 300, 200}, {100, 0, 300, 200}},
      {"title bar below the screen", one, {100, 790, 300, 200}, {100, 600, 300, 200}},
      {"larger and lost", one, {-4000, -4000, 3000, 2000}, {0, 0, 1000, 800}},
      {"on the second screen", two, {1100, -100, 300, 200}, {1100, -100, 300, 200}},
      {"too large for the second screen", two, {1100, -100, 900, 200}, {1100, -100, 600, 200}},
      {"no screen at all", {}, {5000, 4000, 300, 200}, {5000, 4000, 300, 200}},
  };
  for (const auto& [what, screens, outer, placed] : cases)
    EXPECT_EQ(InSight(outer, screens), placed) << what;
}

class PlacementTest : public Part1Test {
 protected:
  PlacementTest() { LoadFrame(120, 60); }
};

TEST_F(PlacementTest, WhatWasNotMovedKeepsItsPlaceToTheTwip) {
  session->plotRow = {307, 511, 9001, 5003};
  session->mainWindow = {503, 496};
  main->Open();
  const std::string before = SettingsText(*session);
  OpenRowPlot("50")->close();
  main->close();
  EXPECT_EQ(SettingsText(*session), before);
}

TEST_F(PlacementTest, ThePlotFollowsItsWindowAndItsPlaceIsKept) {
  Press(OpenContinuum(), "Command6");
  const std::tuple<const char*, SizedPlacement&, PlotFrame&, std::function<void()>> plots[] = {
      {"frmPlot_Row", session->plotRow, session->rowPlot.rowFrame, [&] { OpenRowPlot("20"); }},
      {"frmPlot_Column", session->plotColumn, session->slice.colFrame, [&] { OpenSlice(); }},
      {"frmPlot_Continuum", session->plotContinuum, session->continuum.contFrame,
       [&] { Press("Command6"); }}};
  for (const auto& [name, placement, frame, open] : plots) {
    open();
    QWidget* const window = Window(name);
    for (const QSize size : {QSize(1, 1), QSize(3000, 2600), QSize(760, 500)}) {
      SCOPED_TRACE(name + std::to_string(size.width()));
      window->resize(size);
      QApplication::processEvents();
      window->grab();
      const QSize outer = window->frameGeometry().size();
      EXPECT_EQ(frame.plotRight, static_cast<int>(TwipsOf(outer.width())) - 415);
      // As large as the settings file can say.
      EXPECT_EQ(placement.width, std::min(32767L, std::lround(TwipsOf(outer.width()))));
      EXPECT_EQ(placement.height, std::min(32767L, std::lround(TwipsOf(outer.height()))));
    }
    window->move(90, 70);
    Trigger(window, "mExit");
    window->close();
    open();
    EXPECT_EQ(QRect(window->pos(), window->size()), QRect(90, 70, 760, 500)) << "as it was closed";
    window->close();
  }
}

}  // namespace
}  // namespace halmek::test
