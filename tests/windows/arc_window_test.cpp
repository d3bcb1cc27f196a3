// The arcs' windows, by their clicks and marks.
#include <gtest/gtest.h>

#include "calib/arc_plot.h"
#include "windows/part2_test.h"

namespace halmek::test {
namespace {

class ArcWindowTest : public Part2Test {
 protected:
  Arc& arc = session->arc[1];
  PlotFrame& f = arc.plotFrame;
};

TEST_F(ArcWindowTest, AClickInsideThePlotFindsTheLineWithinNinePixelsByAnyButton) {
  const double hundredth = NiceUpperBound(1000) / 100;
  std::vector<double> values = ArcOf(1000, {200, 500});
  const auto faint = ArcOf(1000, {800}, 0.99 * hundredth), enough = ArcOf(1000, {900}, 1.01 * hundredth);
  for (size_t i = 0; i < values.size(); ++i)
    values[i] += faint[i] + enough[i];
  LoadValues("arc1", values);
  PlotArc(1);
  for (const int in : {0, 1})
    for (const auto& [x, y] : {Range(f.plotLeft + in, 900),
                               {f.plotRight - in, 900},
                               {900, f.plotTop + in},
                               {900, f.plotBottom - in}}) {
      PressAt(ArcPlot(1), Qt::LeftButton, x, y);
      EXPECT_EQ(platform.TakeMessages(), Told(in ? noMaximum : nullptr)) << x << ' ' << y;
    }
  const struct {
    Qt::MouseButton button;
    int column, peak;  // peak 0 = refused
  } clicks[] = {{Qt::LeftButton, 209, 200}, {Qt::RightButton, 191, 200}, {Qt::MiddleButton, 200, 200},
                {Qt::BackButton, 508, 500}, {Qt::LeftButton, 210, 0},    {Qt::RightButton, 190, 0},
                {Qt::MiddleButton, 350, 0}, {Qt::LeftButton, 800, 0},    {Qt::LeftButton, 900, 900}};
  for (const auto& c : clicks) {
    const std::string before = StateOfArc(*session, 1);
    ClickColumn(1, c.column, c.button);
    EXPECT_EQ(platform.TakeMessages(), Told(c.peak ? nullptr : noMaximum)) << c.column;
    ASSERT_EQ(IsLineOpen(), c.peak != 0) << c.column;
    if (c.peak == 0) {
      EXPECT_EQ(StateOfArc(*session, 1), before) << c.column;
      continue;
    }
    EXPECT_EQ(LabelText(Line(), "Label3"), " " + std::to_string(c.peak));
    QTest::keyClick(Line(), Qt::Key_Escape);
  }
}

TEST_F(ArcWindowTest, AMarkTellsItsLineToThePointerOverIt) {
  OpenArc(1, {200, 212, 500});
  Identify(1, 200, 5200.25);
  Identify(1, 212, 5212);
  const double at200 = ScreenX(f, 200), at212 = ScreenX(f, 212);
  const double top = f.plotTop, end = top + 0.05 * f.plotHeight;
  const auto text200 = "5200.25 Angstroms at column 200.000", text212 = "5212 Angstroms at column 212.000";
  const struct {
    double x, y;
    std::string text;
  } cases[] = {{at200, top + 20, text200},     {at200 - 70, end, text200}, {at200 - 90, end, ""},
               {at200, end + 60, text200},     {at200, end + 100, ""},     {at200, top - 100, ""},
               {at200 + 50, end, text200},     {at212 - 50, end, text212}, {at212, f.plotBottom - 9.0, ""},
               {ScreenX(f, 500), top + 20, ""}};
  for (const auto& c : cases)
    EXPECT_EQ(MarkTextAt(*session, 1, c.x, c.y), c.text) << c.x << ' ' << c.y;
  EXPECT_EQ(MarkTextAt(*session, 2, at200, top + 20), "") << "the other arc has no lines";
}

TEST_F(ArcWindowTest, ArcsWithoutGoodLinesAreShownAndTheirClicksAndMasksRefused) {
  std::vector<double> saturated = ArcOf(1000, {100, 300, 500}, 90000), close(1000, 0);
  for (double& value : saturated)
    value = std::min(value, 65535.0);
  const double pair[] = {10, 60, 300, 150, 280, 60, 10};
  std::copy(std::begin(pair), std::end(pair), close.begin() + 96);
  const struct {
    const char* what;
    std::vector<double> values;
    std::vector<int> found;  // the peaks that the clicks below find
  } arcs[] = {{"flat", std::vector<double>(1000, 500), {}},
              {"zeros", std::vector<double>(1000, 0), {}},
              {"negative", std::vector<double>(1000, -70), {}},
              {"one pixel", {700}, {}},
              {"3000 pixels", ArcOf(3000, {100, 300, 500}), {100, 300, 500}},
              {"saturated", saturated, {99, 299, 499}},
              {"at the edges", ArcOf(1000, {1, 3, 998, 1000}), {}},
              {"two close", close, {99, 101}}};
  LoadMask("100 5100\r\n300 5300\r\n500 5500\r\n2950 8000\r\n");
  for (const auto& a : arcs) {
    LoadValues("arc1", a.values);
    PlotArc(1);
    const int last = static_cast<int>(a.values.size());
    std::vector<int> found;
    for (int column : {1, 2, 5, 100, 110, 300, 500, 995, 999, 1000, 2999}) {
      if (column > last)
        continue;
      ClickColumn(1, column);
      EXPECT_EQ(platform.TakeMessages(), Told(IsLineOpen() ? nullptr : noMaximum)) << a.what << column;
      if (!IsLineOpen())
        continue;
      found.push_back(session->peakPixel);
      QTest::keyClick(Line(), Qt::Key_Escape);
    }
    EXPECT_EQ(found, a.found) << a.what;
    Press(ArcPlot(1), "Command6");
    const std::string refused = platform.TakeMessages().at(0);
    EXPECT_TRUE(refused.starts_with("Mask entry ") && refused.ends_with(noMaximum)) << a.what << refused;
    EXPECT_EQ(Columns(1), std::vector<double>{}) << a.what;
    ArcPlot(1)->grab();
  }
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
