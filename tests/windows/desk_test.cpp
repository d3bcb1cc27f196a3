// What windows share through the desk: frames that change under open windows, and the recipe of an evening.
#include "platform/desk.h"

#include <gtest/gtest.h>

#include <QPlainTextEdit>
#include <filesystem>

#include "windows/part1_test.h"

namespace halmek::test {
namespace {

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
  size_t CurvePoints(const char* window) {
    for (const DrawingItem& item : SurfaceOf(Window(window)).drawing()->items)
      if (const auto* curve = std::get_if<Polyline>(&item); curve && curve->colour == colours::red)
        return curve->points.size() / 2;
    return 0;
  }
};

TEST_F(DeskTest, StepsRunUnderTheBusyPointerUpToTheFirstThatFails) {
  WriteFrame("star.fts", 120, 60, Star);
  EXPECT_FALSE(
      desk.Do(main.get(), {steps::Load{"frame", "star.fts"}, steps::FixColumn{1}, steps::FixColumn{60}}));
  EXPECT_EQ(platform.TakeMessages(),
            Texts{"Enter a valid column number, please - not within 3 pixels of the edge."});
  EXPECT_TRUE(Find<QPushButton>(main.get(), "Command2")->isEnabled()) << "shown before the message";
  EXPECT_EQ(platform.busyCount, 1);
  EXPECT_FALSE(platform.isBusy);
  EXPECT_EQ(session->journal.size(), 2u);
}

TEST_F(DeskTest, OpenPlotsShowANewFrameOrClose) {
  const struct {
    const char* what;
    int columns, rows;
    PixelValue value;
    const char* open;
  } frames[] = {
      {"another size", 80, 20, Star, "rsc"},
      {"larger", 300, 90, Star, "rsc"},
      {"a single row", 120, 1, Star, "rsc"},
      {"a single column", 1, 60, Star, "-sc"},
      {"a single pixel", 1, 1, Star, "-sc"},
      {"zeros", 50, 40, [](int, int) { return 0; }, "-sc"},
      {"a constant", 50, 40, [](int, int) { return 500; }, "rsc"},
      {"huge", 50, 40, [](int c, int r) { return std::ldexp(1.0 + c, 100) * r; }, "rsc"},
      {"negative", 50, 40, [](int c, int) { return -1000.0 * c; }, "-sc"},
      {"huge and negative", 50, 40,
       [](int c, int) { return c % 2 ? -std::ldexp(1, 126) : std::ldexp(1, 126); }, "-sc"},
  };
  for (const auto& f : frames) {
    OpenAllPlots();
    LoadFrame(f.columns, f.rows, f.value);
    EXPECT_EQ(OpenPlots(), f.open) << f.what;
    EXPECT_EQ(CurvePoints("frmPlot_Column"), static_cast<size_t>(f.rows)) << f.what;
    EXPECT_LE(session->slice.sliceColumn, f.columns) << f.what;
    EXPECT_EQ(CurvePoints("frmPlot_Continuum"), 120u) << "the spectrum is that of the frame before";
    if (IsOpen("frmPlot_Row")) {
      EXPECT_EQ(CurvePoints("frmPlot_Row"), static_cast<size_t>(f.columns)) << f.what;
      EXPECT_EQ(session->rowPlot.plotRow, std::min(50, f.rows)) << f.what;
      EXPECT_EQ(Find<QScrollBar>(Window("frmPlot_Row"), "VScroll1")->maximum(), f.rows);
    }
    for (const char* window : {"frmPlot_Row", "frmPlot_Column", "frmPlot_Continuum"})
      if (IsOpen(window))
        SurfaceOf(Window(window)).grab();

    OpenRowPlot("1");
    const bool isShown = OpenPlots().starts_with("r");
    EXPECT_EQ(platform.TakeMessages().size(), isShown ? 0u : 1u) << f.what;
    EXPECT_EQ(isShown, f.open[0] == 'r') << f.what;
  }
}

TEST_F(DeskTest, ATrimReachesOpenPlotsAndAFailedLoadLeavesThem) {
  OpenAllPlots();
  Snip("11", "21", "50", "45");
  EXPECT_EQ(OpenPlots(), "rsc");
  EXPECT_EQ(CurvePoints("frmPlot_Row"), 40u);
  EXPECT_EQ(session->rowPlot.plotRow, 25);
  EXPECT_EQ(CurvePoints("frmPlot_Column"), 25u);
  EXPECT_EQ(session->slice.sliceColumn, 20);
  EXPECT_EQ(session->slice.backgroundClicks, 0) << "the marks were those of other rows";
  EXPECT_FALSE(Find<QPushButton>(main.get(), "Command5")->isEnabled());

  WriteFrame("long.fts", 2000, 400, Star);
  fs::resize_file(folder.File("long.fts"), 5760);
  Load("long.fts");
  EXPECT_EQ(platform.TakeMessages(), Texts{"Error: 62  Error: Input past end of file."});
  EXPECT_EQ(OpenPlots(), "rsc");
  EXPECT_EQ(CurvePoints("frmPlot_Row"), 40u);
}

TEST_F(DeskTest, TheRecipeGrowsAsOneWorks) {
  Trigger(main.get(), "mShowRecipe");
  ASSERT_TRUE(IsOpen("frmRecipe"));
  EXPECT_EQ(RecipeText(), "");
  LoadFrame(120, 60);
  Type("Text6", "2");
  Press("Command2");
  const std::string lines =
      "load frame star.fts\n# refused: fix-column 2  # Enter a valid column number, please - not within 3 "
      "pixels of the edge.";
  EXPECT_EQ(RecipeText(), lines);
  QTest::keyClick(Find<QPlainTextEdit>(Window("frmRecipe"), "textRecipe"), Qt::Key_X);
  EXPECT_EQ(RecipeText(), lines) << "read-only";
  QTest::keyClick(Window("frmRecipe"), Qt::Key_Escape);
  Press(OpenContinuum(), "Command6");
  Trigger(main.get(), "mShowRecipe");
  EXPECT_EQ(platform.TakeMessages().size(), 1u);
  EXPECT_EQ(RecipeText(), lines + "\naperture 26 34\nbackground 5 15 45 55 0\ncrunch");
}

TEST_F(DeskTest, RunRecipeNamesTheLineThatIsRefused) {
  WriteFrame("star.fts", 120, 60, Star);
  const struct {
    const char *recipe, *message;
    int columns;
  } cases[] = {
      {"load frame star.fts\n\ntrim 1 1 90 60\nfix-column 89\ncrunch\n",
       "r.recipe:4: Enter a valid column number, please - not within 3 pixels of the edge.", 90},
      {"load frame star.fts\nload frames x\n", "r.recipe:2: ", 90},
      {"# nothing but a frame\nload frame star.fts\n", "r.recipe: 1 step done.", 120},
  };
  for (const auto& c : cases) {
    WriteFile(folder.File("r.recipe"), c.recipe);
    platform.fileToOpen = folder.File("r.recipe");
    Trigger(main.get(), "mRunRecipe");
    const Texts messages = platform.TakeMessages();
    ASSERT_EQ(messages.size(), 1u);
    EXPECT_TRUE(messages[0].starts_with(c.message)) << messages[0];
    EXPECT_EQ(Columns(*session), c.columns) << c.recipe;
    EXPECT_FALSE(platform.isBusy);
  }

  // Cancelled.
  platform.fileToOpen.reset();
  Trigger(main.get(), "mRunRecipe");
}

TEST_F(DeskTest, TheSavedRecipeOfAnEveningGivesTheSameBytes) {
  const TemporaryFolder copy;
  WriteFrame("star.fts", 120, 60, Star);
  fs::copy(folder.File("star.fts"), copy.File("star.fts"));
  Load("star.fts");
  Type("Text6", "60");
  Press("Command2");
  Snip("2.5", "1", "110", "58");
  QWidget* const row = OpenRowPlot("29");
  const PlotFrame& f = session->rowPlot.rowFrame;
  const auto zap = [&](int first, int last) {
    for (int column : {first, last})
      ClickAt(row, f, Qt::RightButton, ScreenX(f, column - 0.5));
    Press(row, "Command4");
  };
  zap(50, 52);
  zap(70, 70);
  Press(row, "Command6");
  Type(row, "Text1", "5");
  zap(90, 88);
  QWidget* const slice = OpenSlice();
  Choose(slice, "Combo1", 2);
  MarkRows({34, 26}, {15, 5, 45, 55});
  Press(slice, "Command2");
  Choose(slice, "Combo1", 1);
  Press(slice, "Command2", "Command4");
  Press("Command5", "Command6");
  QWidget* const continuum = Window("frmPlot_Continuum");
  Type(continuum, "Text1", "7");
  Press(continuum, "Command1", "Command4", "Command5", "Option1(1)");
  Choose(continuum, "Combo1", 1);
  const PlotFrame& c = session->continuum.contFrame;
  for (int column : {10, 30, 55, 80, 100})
    ClickAt(continuum, c, Qt::LeftButton, ScreenX(c, column));
  ClickAt(continuum, c, Qt::RightButton, ScreenX(c, 33));
  Press(continuum, "Command1", "Command4", "Command4", "Command6");
  Press("Command9");
  Press(Window("frmSave_datafiles"), "Command1");
  Trigger(main.get(), "mSave");
  EXPECT_EQ(platform.TakeAsked(), Texts{"Replace star.fts?"});

  platform.fileToSave = folder.File("evening.recipe");
  Trigger(main.get(), "mSaveRecipe");
  EXPECT_EQ(platform.questions.back().name, "star.recipe");

  // In a copy of the folder, in a session of its own, that of its windows still in mind.
  fs::copy(folder.File("evening.recipe"), copy.File("evening.recipe"));
  platform.fileToOpen = copy.File("evening.recipe");
  Trigger(main.get(), "mRunRecipe");
  EXPECT_EQ(platform.TakeMessages(), Texts{"evening.recipe: 17 steps done."})
      << ReadFile(copy.File("evening.recipe"));
  for (const char* file : {"star_1D.fts", "star.fts"}) {
    ASSERT_TRUE(fs::exists(copy.File(file))) << file;
    EXPECT_TRUE(ReadFile(copy.File(file)) == ReadFile(folder.File(file))) << file;
  }
  EXPECT_NE(ReadFile(copy.File("star.fts")).find("snipped out section (2,1) to (110,58)"), std::string::npos);
}

}  // namespace
}  // namespace halmek::test
