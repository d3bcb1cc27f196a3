// The arcs' windows, by their clicks and marks.
#include <gtest/gtest.h>

#include <functional>
#include <tuple>

#include "calib/arc_plot.h"
#include "numeric/number_prefix.h"
#include "windows/part2_test.h"

namespace halmek::test {
namespace {

class ArcWindowTest : public Part2Test {
 protected:
  Arc& arc = session->arc[1];
  PlotFrame& f = arc.plotFrame;

  // The pointer, without a button, at a position in twips.
  static void MoveTo(double x, double y) {
    PlotSurface& surface = SurfaceOf(ArcPlot(1));
    const QPointF at(PixelsOf(x), PixelsOf(y));
    QMouseEvent move(QEvent::MouseMove, at, surface.mapToGlobal(at), Qt::NoButton, Qt::NoButton, {});
    QApplication::sendEvent(&surface, &move);
  }
};

TEST_F(ArcWindowTest, AClickInsideThePlotFindsTheLineNearItByAnyButton) {
  OpenArc(1, {200, 500});
  for (const int in : {0, 1})
    for (const auto& [x, y] : {Range(f.plotLeft + in, 900),
                               {f.plotRight - in, 900},
                               {900, f.plotTop + in},
                               {900, f.plotBottom - in}}) {
      PressAt(ArcPlot(1), Qt::LeftButton, x, y);
      EXPECT_EQ(platform.TakeMessages(), Told(in ? noMaximum : nullptr)) << x << ' ' << y;
    }
  const std::tuple<Qt::MouseButton, int, const char*> clicks[] = {{Qt::LeftButton, 209, " 200"},
                                                                  {Qt::RightButton, 191, " 200"},
                                                                  {Qt::MiddleButton, 200, " 200"},
                                                                  {Qt::BackButton, 508, " 500"}};
  for (const auto& [button, column, peak] : clicks) {
    ClickColumn(1, column, button);
    EXPECT_EQ(LabelText(Line(), "Label3"), peak);
    QTest::keyClick(Line(), Qt::Key_Escape);
  }
  ClickColumn(1, 210);
  EXPECT_EQ(platform.TakeMessages(), Texts{noMaximum});
  EXPECT_FALSE(IsLineOpen());
}

TEST_F(ArcWindowTest, TheWavelengthPointedAtIsShownFromTheSecondLineOn) {
  OpenArc(1, {200, 500, 800});
  // Where the last click was.
  const auto shown = [&] { return NumericPrefix(LabelText(ArcPlot(1), "Label11")); };
  EXPECT_EQ(shown(), 0);
  Identify(1, 200, 5200);
  EXPECT_EQ(shown(), 0);
  Identify(1, 500, 5500);
  EXPECT_NEAR(shown(), 5500, 1);
  Delete(1, 500);
  EXPECT_EQ(shown(), 0) << "it goes with the second line";
}

TEST_F(ArcWindowTest, WhatBelongsToAnotherFileMaskOrLinesIsCleared) {
  const std::function<void()> events[] = {[&] {
                                            LoadValues("arc1", ArcOf(1000, {150, 450, 750}));
                                          },
                                          [&] { LoadMask("200 5200\r\n500 5500\r\n"); },
                                          [&] { Press(ArcPlot(1), "Command2"); },
                                          [&] {
                                            desk.Do(main.get(), steps::DeleteLine{"arc1", 500});
                                          }};
  for (const auto& happen : events) {
    OpenArc(1, {200, 500, 800});
    LoadMask("200 5200\r\n500 5500\r\n800 5801\r\n");
    Press(ArcPlot(1), "Command6");
    Fit(1, 2);
    const auto shown = [&](std::initializer_list<const char*> names) {
      std::string texts;
      for (const char* name : names)
        texts += LabelText(ArcPlot(1), name) + "|";
      return texts + LabelText(main.get(), "Label31");
    };
    EXPECT_EQ(shown({"Label15", "Label16"}), "DONE!|DONE!|DONE!");
    MoveTo(ScreenX(f, 600), f.plotTop + 900);
    EXPECT_NE(shown({"Label7", "Label10", "Label11"}).find("   600|"), std::string::npos);
    MoveTo(10, 10);  // out of the plot
    happen();
    const std::string fit = arc.LineCount == 3 ? "DONE!" : "";
    EXPECT_EQ(shown({"Label15", "Label7", "Label10", "Label11", "Label16"}), "||||" + fit + "|" + fit);
    PlotArc(1);
    EXPECT_EQ(shown({"Label15", "Label16"}), "|" + fit + "|" + fit) << "nor does it come back";
  }
}

TEST_F(ArcWindowTest, StaysInFrontAfterAMaskWasRefused) {
  OpenArc(1, {200, 500});
  WriteFile(folder.File("x.dat"), "no mask");
  const std::tuple<const char*, const char*, const char*> cases[] = {
      {"Command5", "frmLoad_Mask", "This is not a mask file for this program.  Please try again."},
      {"Command4", "frmSave_Mask", "There are no centroided peaks and tabular wavelengths to save."}};
  for (const auto& [button, chooser, refusal] : cases) {
    Press(ArcPlot(1), button);
    Type(Window(chooser), "Text1", "x.dat");
    Press(Window(chooser), "Command1");
    platform.TakeAsked();
    EXPECT_EQ(platform.TakeMessages(), Texts{refusal});
    EXPECT_EQ(platform.over, ArcPlot(1));
    EXPECT_TRUE(QTest::qWaitFor([] { return QApplication::activeWindow() == ArcPlot(1); })) << refusal;
  }
}

TEST_F(ArcWindowTest, AMarkTellsItsLineToThePointerOverIt) {
  OpenArc(1, {200, 212, 500});
  Identify(1, 200, 5200.25);
  Identify(1, 212, 5212);
  const double at200 = ScreenX(f, 200), at212 = ScreenX(f, 212);
  const double top = f.plotTop, end = top + 0.05 * f.plotHeight;
  const auto text200 = "5200.25 Angstroms at column 200.000", text212 = "5212 Angstroms at column 212.000";
  const std::tuple<double, double, const char*> cases[] = {
      {at200 - 70, end + 60, text200}, {at200 - 90, end, ""},      {at200, end + 100, ""},
      {at200, top - 100, ""},          {at200 + 50, end, text200}, {at212 - 50, end, text212},
      {ScreenX(f, 500), top + 20, ""}};
  for (const auto& [x, y, text] : cases)
    EXPECT_EQ(MarkTextAt(*session, 1, x, y), text) << x << ' ' << y;
  EXPECT_EQ(MarkTextAt(*session, 2, at200, top + 20), "") << "the other arc has no lines";
}

TEST_F(ArcWindowTest, AMaskIsShownInTheWindowThatAskedForIt) {
  for (int a : {1, 2})
    OpenArc(a, {200, 500});
  Identify(1, 200, 5200);
  const auto choose = [&](const char* button, const char* chooser, const QString& name) {
    Press(ArcPlot(1), button);
    PlotArc(2);  // which makes the other arc current
    Type(Window(chooser), "Text1", name);
    Press(Window(chooser), "Command1");
    EXPECT_EQ(LabelText(ArcPlot(1), "Label13") + "|" + LabelText(ArcPlot(2), "Label13"),
              name.toStdString() + "|");
  };
  choose("Command4", "frmSave_Mask", "saved.dat");
  WriteFile(folder.File("other.dat"), "Mask\r\n200 5200\r\n");
  choose("Command5", "frmLoad_Mask", "other.dat");
}

}  // namespace
}  // namespace halmek::test
