// The identification of a line, in its window.
#include "calib/line_window.h"

#include <gtest/gtest.h>

#include <tuple>

#include "platform/placement.h"
#include "windows/part2_test.h"

namespace halmek::test {
namespace {

TEST(ClearOf, MovesAWindowBelowOrToTheNearerSideOfWhatStaysFree) {
  const QRect screen(0, 0, 1000, 800);
  const std::tuple<const char*, QRect, QRect, QPoint> cases[] = {
      {"beside it", {100, 100, 200, 150}, {300, 50, 50, 700}, {100, 100}},
      {"below", {100, 100, 200, 150}, {150, 50, 50, 600}, {100, 650}},
      {"one pixel too low", {100, 100, 200, 150}, {150, 50, 50, 601}, {200, 100}},
      {"nearer to the left", {400, 100, 200, 150}, {480, 0, 50, 750}, {280, 100}},
      {"nearer to the right", {430, 100, 200, 150}, {480, 0, 50, 750}, {530, 100}},
      {"no room to the right", {700, 100, 290, 150}, {800, 0, 50, 750}, {510, 100}},
      {"too wide, right of the middle", {9, 9, 700, 150}, {480, 0, 50, 750}, {0, 9}},
      {"too wide, left of the middle", {9, 9, 700, 150}, {440, 0, 50, 750}, {300, 9}},
  };
  for (const auto& [what, outer, free, placed] : cases)
    EXPECT_EQ(ClearOf(outer, free, screen), QRect(placed, outer.size())) << what;
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

TEST_F(LineWindowTest, AClickFillsThePanelAndUpdateFitRefillsIt) {
  LoadTable("5808,\"He, II\"\r\n5804,Ar\r\n5503.5,\"Fe \"\r\n");
  Identify(1, 200, 5200);
  Identify(1, 500, 5503);
  const std::tuple<int, const char*, const char*, const char*> clicks[] = {
      {803, " 800|  800.00000|    0.00000|He, II|   -2.00000| 5806.00000|| 2|", "5808.00000",
       "    1.000| 5801.000|    1.732| 3|This line is identified as 5800.00000."},
      {500,
       " 500|  500.00000|    0.00000|Fe |   -2.50000| 5501.00000|    1.732| 3|This line is identified as "
       "5503.00000.",
       "5503.50000", " -299.00000| 5501.00000|    1.732| 3|This line is identified as 5503.00000."}};
  for (const auto& [column, panel, proposed, updated] : clicks) {
    ClickColumn(1, column);
    EXPECT_EQ(Labels({"Label3", "Label5", "Label16", "Label17", "Label12", "Label8", "Label14", "Label19",
                      "labelState"}),
              panel);
    EXPECT_EQ(Wavelength(), proposed);
    EXPECT_EQ(Line()->focusWidget(), Box());
    EXPECT_EQ(Box()->selectedText(), Box()->text());
    Type(Line(), "Text1", "5800");
    Press(Line(), "Command1");
    EXPECT_TRUE(IsLineOpen());
    EXPECT_EQ(Wavelength(), "5800");
    EXPECT_EQ(Labels({"Label12", "Label8", "Label14", "Label19", "labelState"}), updated);
  }
}

TEST_F(LineWindowTest, NameAndDeviationFollowWhatIsTyped) {
  LoadTable("5808,He\r\n5804,Ar\r\n");
  ClickColumn(1, 200);
  Type(Line(), "Text1", "5808");
  EXPECT_EQ(Labels({"Label17", "Label12"}), "He|") << "there is no estimate to deviate from";
  Identify(1, 200, 5200);
  Identify(1, 500, 5500);
  ClickColumn(1, 800);
  const std::pair<const char*, const char*> cases[] = {{"5804", "Ar|   -4.00000"},
                                                       {"5808.0", "He|   -8.00000"},
                                                       {"5808.5", "|   -8.50000"},
                                                       {"58", "|"},
                                                       {"He", "|"},
                                                       {"", "|"}};
  for (const auto& [text, labels] : cases) {
    Type(Line(), "Text1", text);
    EXPECT_EQ(Labels({"Label17", "Label12"}), labels) << text;
  }
}

TEST_F(LineWindowTest, ReturnIdentifiesEscapeAndTheOthersDoNot) {
  const std::function<void()> ways[] = {[&] { Key(Qt::Key_Escape); }, [&] { Press(Line(), "Command4"); },
                                        [&] { Press(Line(), "Command2"); }, [&] { Line()->close(); },
                                        [&] { Key(Qt::Key_Enter); }};
  for (const auto& leave : ways) {
    EXPECT_EQ(arc.LineCount, 0);
    ClickColumn(1, 200);
    Type(Line(), "Text1", "5200");
    leave();
    EXPECT_FALSE(IsLineOpen());
  }
  EXPECT_EQ(arc.LineCount, 1);
}

TEST_F(LineWindowTest, WavelengthsOutOfRangeAreRefusedByBothButtons) {
  for (const std::string button : {"Command1", "Command3"})
    for (const char* typed : {"2999.99", "Ne 5000"}) {
      ClickColumn(1, 500);
      Type(Line(), "Text1", typed);
      Press(Line(), button.c_str());
      EXPECT_EQ(
          platform.TakeMessages(),
          Texts{"Hey, you need to type a valid wavelength! (It must be between 3000 and 9000 Angstroms.)"});
      EXPECT_EQ(IsLineOpen(), button == "Command1") << typed;
      EXPECT_EQ(arc.LineCount, 0) << typed;
    }
}

TEST_F(LineWindowTest, KeysAndScrollBarWalkTheTable) {
  std::string table;
  for (int i = 1; i <= 1000; ++i)
    table += std::to_string(4000 + i) + ",\"no. " + std::to_string(i) + ", x\"\r\n";
  LoadTable(table);
  ClickColumn(1, 200);
  const std::pair<std::function<void()>, int> moves[] = {
      {[&] { Key(Qt::Key_Down); }, 1},          {[&] { Key(Qt::Key_PageDown); }, 11},
      {[&] { Key(Qt::Key_Up); }, 10},           {[&] { Key(Qt::Key_PageUp); }, 1},
      {[&] { Table()->setValue(1000); }, 1000}, {[&] { Key(Qt::Key_PageDown); }, 1000}};
  for (const auto& [move, entry] : moves) {
    move();
    EXPECT_EQ(Table()->value(), entry);
    EXPECT_EQ(Wavelength(), std::to_string(4000 + entry) + ".00000");
    EXPECT_EQ(Labels({"Label17", "Label12"}), "no. " + std::to_string(entry) + ", x|-" + Wavelength())
        << "there is no estimate";
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
  EXPECT_EQ(Table()->maximum(), 1);
  EXPECT_EQ(Wavelength() + Labels({"Label17"}), "4000.00000only") << "however far it lies";
}

TEST_F(LineWindowTest, StandsClearOfTheLineAndKeepsItsOwnPlace) {
  for (const auto left : {int16_t{900}, int16_t{3750}, int16_t{6300}})
    for (int column : {200, 500, 800}) {
      session->clickMax = {left, 1800};
      ClickColumn(1, column);
      const PlotFrame& f = arc.plotFrame;
      const QRect line(PixelsOf(ScreenX(f, column)), PixelsOf(f.plotTop), 1, PixelsOf(f.plotHeight));
      const QRect seen(SurfaceOf(ArcPlot(1)).mapToGlobal(line.topLeft()), line.size());
      EXPECT_FALSE(Line()->frameGeometry().intersects(seen)) << left << ' ' << column;
      Press(Line(), "Command4");
      EXPECT_EQ(Range(session->clickMax.left, session->clickMax.top), Range(left, 1800));
    }
  ClickColumn(1, 200);
  Line()->move(430, 410);
  Press(Line(), "Command4");
  EXPECT_EQ(PixelsOf(session->clickMax.left), 430) << "moved by hand";
}

TEST_F(LineWindowTest, ClosesWhenItsLineIsGoneAndStaysWhereTheOtherArcChanges) {
  OpenArc(2, {200, 500, 800});
  LoadMask("500 5500\r\n800 5800\r\n");
  const std::tuple<const char*, std::function<void()>, bool> cases[] = {
      {"all deleted", [&] { Press(ArcPlot(1), "Command2"); }, false},
      {"another arc",
       [&] {
         LoadValues("arc1", ArcOf(1000, {200, 500, 800}));
       },
       false},
      {"plot cancelled", [&] { Press(ArcPlot(1), "Command7"); }, false},
      {"plot closed", [&] { ArcPlot(1)->close(); }, false},
      {"the peak moved by a mask", [&] { Press(ArcPlot(1), "Command6"); }, false},
      {"the peak moved by the other's mask", [&] { Press(ArcPlot(2), "Command6"); }, false},
      {"the other arc clicked", [&] { ClickColumn(2, 500), Choose(main.get(), "Combo1", 0); }, false},
      {"no such arc", [&] { Load("x.fts", "arc1"); }, true},
      {"the other arc loaded", [&] { LoadValues("arc2", ArcOf(1000, {200})); }, true},
      {"the other arc's lines deleted", [&] { Press(ArcPlot(2), "Command2"); }, true},
      {"the other plot closed", [&] { ArcPlot(2)->close(); }, true}};
  for (const auto& [what, event, staysOpen] : cases) {
    Choose(main.get(), "Combo1", 1);
    for (int a : {2, 1}) {
      PlotArc(a);
      ClickColumn(a, 200);
    }
    event();
    platform.TakeMessages();
    EXPECT_EQ(IsLineOpen(), staysOpen) << what;
    if (staysOpen)
      Press(Line(), "Command4");
  }
}

}  // namespace
}  // namespace halmek::test
