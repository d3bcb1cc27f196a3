// The identification of a line, in its window.
#include "calib/line_window.h"

#include <gtest/gtest.h>

#include "platform/placement.h"
#include "windows/part2_test.h"

namespace halmek::test {
namespace {

TEST(ClearOf, MovesAWindowBelowOrToTheNearerSideOfWhatStaysFree) {
  const QRect screen(0, 0, 1000, 800), second(1000, -200, 600, 500);
  const struct {
    const char* what;
    QRect outer, free, screen, placed;
  } cases[] = {
      {"beside it", {100, 100, 200, 150}, {300, 50, 50, 700}, screen, {100, 100, 200, 150}},
      {"below", {100, 100, 200, 150}, {150, 50, 50, 600}, screen, {100, 650, 200, 150}},
      {"one pixel too low", {100, 100, 200, 150}, {150, 50, 50, 601}, screen, {200, 100, 200, 150}},
      {"nearer to the left", {400, 100, 200, 150}, {480, 0, 50, 750}, screen, {280, 100, 200, 150}},
      {"nearer to the right", {430, 100, 200, 150}, {480, 0, 50, 750}, screen, {530, 100, 200, 150}},
      {"no room to the right", {700, 100, 290, 150}, {800, 0, 50, 750}, screen, {510, 100, 290, 150}},
      {"too wide, right of the middle", {9, 9, 700, 150}, {480, 0, 50, 750}, screen, {0, 9, 700, 150}},
      {"too wide, left of the middle", {9, 9, 700, 150}, {440, 0, 50, 750}, screen, {300, 9, 700, 150}},
      {"second screen", {1010, -99, 200, 150}, {1050, -180, 40, 400}, second, {1090, -99, 200, 150}},
  };
  for (const auto& c : cases)
    EXPECT_EQ(ClearOf(c.outer, c.free, c.screen), c.placed) << c.what;
}

class LineWindowTest : public Part2Test {
 protected:
  Arc& arc = session->arc[1];

  LineWindowTest() { OpenArc(1, {200, 500, 800}); }
  std::string Labels(std::initializer_list<const char*> names) {
    std::string texts;
    for (const char* name : names)
      texts += (texts.empty() && name == *names.begin() ? "" : "|") + LabelText(Line(), name);
    return texts;
  }
  QLineEdit* Box() { return Find<QLineEdit>(Line(), "Text1"); }
  std::string Wavelength() { return BoxText(Line(), "Text1"); }
  QScrollBar* Table() { return Find<QScrollBar>(Line(), "VScroll1"); }
  void Key(Qt::Key key) { QTest::keyClick(Box(), key); }
};

TEST_F(LineWindowTest, AClickFillsThePanelWithAProposalFromTheSecondLineOn) {
  LoadTable("5200,Ne I\r\n5808,\"He, II\"\r\n5804,Ar\r\n5503.5,\"Fe \"\r\n");
  const struct {
    int click;
    const char *panel, *typed;
    const char* updated;  // deviation, estimate, RMS and number of lines after "Update Fit"
  } clicks[] = {
      {203, " 200|  200.00000|    0.00000||||| 0", "5200", "||| 1"},
      {497, " 500|  500.00000|    0.00000||||| 1", "5503", "    0.000| 5503.000|    0.000| 2"},
      {800, " 800|  800.00000|    0.00000|5808.00000|He, II|   -2.00000| 5806.00000| 2", "5800",
       "    1.000| 5801.000|    1.732| 3"},
      {500, " 500|  500.00000|    0.00000|5503.50000|Fe |   -2.50000| 5501.00000| 3", "5600",
       "   -2.50000| 5501.00000|    1.732| 3"},
  };
  for (const auto& c : clicks) {
    ClickColumn(1, c.click);
    EXPECT_EQ(Labels({"Label3", "Label5", "Label16"}) + "|" + Wavelength() + "|" +
                  Labels({"Label17", "Label12", "Label8", "Label19"}),
              c.panel);
    EXPECT_EQ(Line()->focusWidget(), Box());
    EXPECT_EQ(Box()->selectedText(), Box()->text());
    const bool isKnown = arc.LineCount == 3;
    EXPECT_EQ(Labels({"labelState"}), isKnown ? "This line is identified as 5503.00000." : "");
    const std::string before = StateOfArc(*session, 1);
    Type(Line(), "Text1", c.typed);
    Press(Line(), "Command1");
    EXPECT_TRUE(IsLineOpen());
    EXPECT_EQ(Wavelength(), c.typed);
    EXPECT_EQ(Labels({"Label12", "Label8", "Label14", "Label19"}), c.updated);
    EXPECT_EQ(StateOfArc(*session, 1) == before, isKnown) << "it keeps its wavelength";
  }
}

TEST_F(LineWindowTest, ReturnIdentifiesEscapeAndTheOthersDoNot) {
  const std::pair<std::function<void()>, int> cases[] = {{[&] { Key(Qt::Key_Escape); }, 0},
                                                         {[&] { Press(Line(), "Command4"); }, 0},
                                                         {[&] { Press(Line(), "Command2"); }, 0},
                                                         {[&] { Line()->close(); }, 0},
                                                         {[&] { Key(Qt::Key_Enter); }, 1}};
  for (const auto& [leave, lines] : cases) {
    ClickColumn(1, 200);
    Type(Line(), "Text1", "5200");
    leave();
    EXPECT_FALSE(IsLineOpen());
    EXPECT_EQ(arc.LineCount, lines);
  }
}

TEST_F(LineWindowTest, WavelengthsOutOfRangeAreRefusedByBothButtons) {
  constexpr auto refusal =
      "Hey, you need to type a valid wavelength! (It must be between 3000 and 9000 Angstroms.)";
  const std::pair<const char*, bool> cases[] = {
      {"2999.99", false}, {"", false}, {"Ne 5000", false}, {"1e999", false}, {" 9000 A", true}};
  for (const auto& [typed, isAccepted] : cases)
    for (const std::string button : {"Command1", "Command3"}) {
      ClickColumn(1, 500);
      Type(Line(), "Text1", typed);
      Press(Line(), button.c_str());
      EXPECT_EQ(platform.TakeMessages(), Told(isAccepted ? nullptr : refusal)) << typed;
      EXPECT_EQ(IsLineOpen(), button == "Command1") << typed;
      EXPECT_EQ(arc.LineCount, isAccepted) << typed;
      Press(ArcPlot(1), "Command2");
    }
}

TEST_F(LineWindowTest, KeysAndScrollBarWalkTheTable) {
  std::string table;
  for (int i = 1000; i >= 1; --i)
    table += std::to_string(4000 + i) + ",\"no. " + std::to_string(i) + ", x\"\r\n";
  LoadTable(table);
  ClickColumn(1, 200);
  const std::pair<std::function<void()>, int> moves[] = {
      {[&] { Key(Qt::Key_Down); }, 1},          {[&] { Key(Qt::Key_PageDown); }, 11},
      {[&] { Key(Qt::Key_Up); }, 10},           {[&] { Key(Qt::Key_PageUp); }, 1},
      {[&] { Table()->setValue(1000); }, 1000}, {[&] { Key(Qt::Key_PageDown); }, 1000},
      {[&] { Key(Qt::Key_Up); }, 999}};
  for (const auto& [move, entry] : moves) {
    move();
    const std::string wavelength = std::to_string(5001 - entry) + ".00000";
    EXPECT_EQ(Table()->value(), entry);
    EXPECT_EQ(Wavelength(), wavelength);
    EXPECT_EQ(Labels({"Label17"}), "no. " + std::to_string(1001 - entry) + ", x");
    EXPECT_EQ(Labels({"Label12"}), "-" + wavelength) << "there is no estimate";
  }
}

TEST_F(LineWindowTest, WithoutATableTheWavelengthIsTyped) {
  Identify(1, 200, 5200);
  Identify(1, 500, 5500);
  ClickColumn(1, 800);
  EXPECT_EQ(Labels({"Label8"}) + Wavelength(), " 5800.00000");
  EXPECT_FALSE(Table()->isEnabled());
  Type(Line(), "Text1", "5800");
  Key(Qt::Key_PageDown);
  EXPECT_EQ(Wavelength(), "5800");
  LoadTable("4000,only\r\n");
  EXPECT_TRUE(Table()->isEnabled()) << "at once";
  ClickColumn(1, 800);
  EXPECT_EQ(Range(Table()->minimum(), Table()->maximum()), Range(1, 1));
  EXPECT_EQ(Wavelength() + Labels({"Label17"}), "4000.00000only") << "however far it lies";
}

TEST_F(LineWindowTest, StandsClearOfTheLineAndKeepsItsOwnPlace) {
  const auto place = [&] {
    return QPoint(PixelsOf(session->clickMax.left), PixelsOf(session->clickMax.top));
  };
  for (const WindowPlacement own : {WindowPlacement{900, 900}, {3750, 1800}, {6300, 6000}})
    for (const int top : {300, 5500}) {
      session->clickMax = own;
      session->plot1D[1] = {300, static_cast<int16_t>(top), 11000, 6000};
      ArcPlot(1)->close();
      PlotArc(1);
      for (int column : {200, 500, 800}) {
        ClickColumn(1, column);
        const PlotFrame& f = arc.plotFrame;
        const QRect line(PixelsOf(ScreenX(f, column)), PixelsOf(f.plotTop), 1, PixelsOf(f.plotHeight));
        const QRect seen(SurfaceOf(ArcPlot(1)).mapToGlobal(line.topLeft()), line.size());
        EXPECT_FALSE(Line()->frameGeometry().intersects(seen)) << own.left << ' ' << column << ' ' << top;
      }
      Press(Line(), "Command4");
      EXPECT_EQ(place(), QPoint(PixelsOf(own.left), PixelsOf(own.top)));
    }
  ClickColumn(1, 200);
  Line()->move(430, 410);
  Press(Line(), "Command4");
  EXPECT_EQ(place(), QPoint(430, 410)) << "moved by hand";
}

TEST_F(LineWindowTest, ClosesWhenItsLineIsGoneAndServesTheOtherArc) {
  const std::vector<double> columns{200, 500, 800};
  OpenArc(2, columns);
  LoadMask("500 5500\r\n800 5800\r\n");
  const struct {
    const char* what;
    int arc;
    std::function<void()> event;
    bool staysOpen;
  } cases[] = {
      {"all deleted", 1, [&] { Press(ArcPlot(1), "Command2"); }, false},
      {"another arc", 1, [&] { LoadValues("arc1", ArcOf(1000, columns)); }, false},
      {"plot cancelled", 1, [&] { Press(ArcPlot(1), "Command7"); }, false},
      {"plot closed", 1, [&] { ArcPlot(1)->close(); }, false},
      {"no such arc", 1, [&] { Load("x.fts", "arc1"); }, true},
      {"the other arc loaded", 1, [&] { LoadValues("arc2", ArcOf(1000, columns)); }, true},
      {"the other arc's lines deleted", 1, [&] { Press(ArcPlot(2), "Command2"); }, true},
      {"the other plot closed", 1, [&] { ArcPlot(2)->close(); }, true},
      {"the peak moved by a mask", 1, [&] { Press(ArcPlot(1), "Command6"); }, false},
      {"the peak moved by the other's mask", 1, [&] { Press(ArcPlot(2), "Command6"); }, false},
      {"one arc", 2, [&] { Choose(main.get(), "Combo1", 0); }, false},
  };
  for (const auto& c : cases) {
    Choose(main.get(), "Combo1", 1);
    for (int a : {3 - c.arc, c.arc}) {
      PlotArc(a);
      ClickColumn(a, 300 * a - 100);
    }
    c.event();
    platform.TakeMessages();
    EXPECT_EQ(IsLineOpen(), c.staysOpen) << c.what;
    if (!c.staysOpen)
      continue;
    Type(Line(), "Text1", "5200");
    Press(Line(), "Command1");
    EXPECT_EQ(Columns(1), std::vector<double>{200}) << c.what;
    EXPECT_EQ(session->arc[2].LineCount, 0) << c.what;
    Press(ArcPlot(1), "Command2");
  }
}

}  // namespace
}  // namespace halmek::test
