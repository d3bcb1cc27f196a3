// What windows share through the desk: frames that change under open windows, and the recipe of an evening.
#include "platform/desk.h"

#include <gtest/gtest.h>

#include <QMessageBox>
#include <QPlainTextEdit>
#include <QTimer>
#include <filesystem>
#include <tuple>

#include "windows/part1_test.h"

namespace halmek::test {
namespace {

constexpr const char* badColumn = "Enter a valid column number, please - not within 3 pixels of the edge.";

class DeskTest : public Part1Test {
 protected:
  std::string RecipeText() {
    return Find<QPlainTextEdit>(Window("frmRecipe"), "textRecipe")->toPlainText().toStdString();
  }
  // Which plot windows are open, a letter each.
  std::string OpenPlots() {
    std::string open;
    for (const auto& [name, letter] :
         {std::pair("frmPlot_Row", 'r'), {"frmPlot_Column", 's'}, {"frmPlot_Continuum", 'c'}})
      open += IsOpen(name) ? letter : '-';
    return open;
  }
  void OpenAllPlots() {
    LoadFrame(120, 60);
    OpenContinuum();
    OpenSlice();
    OpenRowPlot("50");
    ASSERT_EQ(OpenPlots(), "rsc");
  }
  int CurvePoints(const char* window) {
    for (const DrawingItem& item : SurfaceOf(Window(window)).drawing()->items)
      if (const auto* curve = std::get_if<Polyline>(&item); curve && curve->colour == colours::red)
        return static_cast<int>(curve->points.size() / 2);
    return 0;
  }
};

TEST_F(DeskTest, StepsRunUnderTheBusyPointerUpToTheFirstThatFails) {
  WriteFrame("star.fts", 120, 60, Star);
  EXPECT_FALSE(
      desk.Do(main.get(), {steps::Load{"frame", "star.fts"}, steps::FixColumn{1}, steps::FixColumn{60}}));
  EXPECT_EQ(platform.TakeMessages(), Texts{badColumn});
  EXPECT_TRUE(Find<QPushButton>(main.get(), "Command2")->isEnabled()) << "shown before the message";
  EXPECT_EQ(std::pair(platform.busyCount, platform.isBusy), std::pair(1, false));
  EXPECT_EQ(session->journal.size(), 2u);
}

TEST_F(DeskTest, OpenPlotsShowANewFrameOrClose) {
  const std::tuple<const char*, int, int, PixelValue, bool> frames[] = {
      {"another size", 80, 20, Star, true},
      {"larger", 300, 90, Star, true},
      {"a single row", 120, 1, Star, true},
      {"a single column", 1, 60, Star, false},
      {"zeros", 50, 40, [](int, int) { return 0; }, false},
      {"a constant", 50, 40, [](int, int) { return 500; }, true},
      {"huge and negative", 50, 40, [](int c, int) { return std::ldexp(c % 2 ? -1 : 1, 126); }, false}};
  for (const auto& [what, columns, rows, value, hasRows] : frames) {
    SCOPED_TRACE(what);
    OpenAllPlots();
    LoadFrame(columns, rows, value);
    EXPECT_EQ(OpenPlots(), hasRows ? "rsc" : "-sc");
    EXPECT_EQ(CurvePoints("frmPlot_Column"), rows);
    EXPECT_LE(session->slice.sliceColumn, columns);
    EXPECT_EQ(CurvePoints("frmPlot_Continuum"), 120) << "the spectrum is that of the frame before";
    OpenRowPlot("1");
    EXPECT_EQ(OpenPlots(), hasRows ? "rsc" : "-sc");
    EXPECT_EQ(platform.TakeMessages().size(), hasRows ? 0u : 1u);
    if (hasRows) {
      EXPECT_EQ(CurvePoints("frmPlot_Row"), columns);
      EXPECT_EQ(Find<QScrollBar>(Window("frmPlot_Row"), "VScroll1")->maximum(), rows);
    }
  }
}

TEST_F(DeskTest, ATrimReachesOpenPlotsAndAFailedLoadLeavesThem) {
  OpenAllPlots();
  Snip("11", "21", "50", "45");
  const auto expectTrimmed = [&] {
    EXPECT_EQ(OpenPlots(), "rsc");
    EXPECT_EQ(Range(CurvePoints("frmPlot_Row"), CurvePoints("frmPlot_Column")), Range(40, 25));
  };
  expectTrimmed();
  EXPECT_EQ(Range(session->rowPlot.plotRow, session->slice.sliceColumn), Range(25, 20));
  EXPECT_EQ(session->slice.backgroundClicks, 0) << "the marks were those of other rows";
  EXPECT_FALSE(Find<QPushButton>(main.get(), "Command5")->isEnabled());

  Load("none.fts");
  EXPECT_EQ(platform.TakeMessages(), Texts{"Error: 53  Error: File not found."});
  expectTrimmed();
}

TEST_F(DeskTest, TheRecipeGrowsAsOneWorks) {
  Trigger(main.get(), "mShowRecipe");
  EXPECT_EQ(RecipeText(), "");
  LoadFrame(120, 60);
  Type("Text6", "2");
  Press("Command2");
  EXPECT_EQ(platform.TakeMessages(), Texts{badColumn});
  const std::string lines = std::string("load frame star.fts\n# refused: fix-column 2  # ") + badColumn;
  QTest::keyClick(Find<QPlainTextEdit>(Window("frmRecipe"), "textRecipe"), Qt::Key_X);
  EXPECT_EQ(RecipeText(), lines) << "read-only";
  Activate(Window("frmRecipe"));
  QTest::keyClick(Window("frmRecipe"), Qt::Key_Escape);
  EXPECT_FALSE(IsOpen("frmRecipe"));
  Press(OpenContinuum(), "Command6");
  Trigger(main.get(), "mShowRecipe");
  EXPECT_EQ(RecipeText(), lines + "\naperture 26 34\nbackground 5 15 45 55 0\ncrunch");
}

TEST_F(DeskTest, RunRecipeNamesTheLineThatIsRefused) {
  WriteFrame("star.fts", 120, 60, Star);
  const std::tuple<const char*, std::string, int> cases[] = {
      {"load frame star.fts\n\ntrim 1 1 90 60\nfix-column 89\ncrunch\n",
       std::string("r.recipe:4: ") + badColumn, 90},
      {"load frame star.fts\nload frames x\n", "r.recipe:2: ", 90},
      {"# nothing but a frame\nload frame star.fts\n", "r.recipe: 1 step done.", 120}};
  platform.fileToOpen = folder.File("r.recipe");
  for (const auto& [recipe, message, columns] : cases) {
    WriteFile(folder.File("r.recipe"), recipe);
    Trigger(main.get(), "mRunRecipe");
    const Texts messages = platform.TakeMessages();
    ASSERT_EQ(messages.size(), 1u);
    EXPECT_TRUE(messages[0].starts_with(message)) << messages[0];
    EXPECT_EQ(Columns(*session), columns) << recipe;
    EXPECT_EQ(LabelText(main.get(), "Label43"), "star.fts");
  }
  platform.fileToOpen.reset();
  Trigger(main.get(), "mRunRecipe");
  EXPECT_EQ(platform.TakeMessages(), Texts{}) << "cancelled";
}

TEST(MessageBoxes, ShowPlainTextOnLinesOfItsOwnAndWhichFileItIsAbout) {
  QString shown;
  QTimer::singleShot(0, [&] {
    auto* const box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
    EXPECT_EQ(box->textFormat(), Qt::PlainText);
    shown = box->text() + "|" + box->informativeText();
    box->accept();
  });
  QtPlatform().Show(nullptr, {"One warning.\nAnother one.", NamingFile("It is gone.", "<b>a</b>.fts")});
  EXPECT_EQ(shown.toStdString(), "One warning.\nAnother one.|It is gone; the file is \"<b>a</b>.fts\".");
  EXPECT_EQ(NamingFile("", "a.fts"), "the file is \"a.fts\"");
}

}  // namespace
}  // namespace halmek::test
