// The main window: start and stop, which controls are enabled when, the checks of its steps, its menus.
#include "app/main_window.h"

#include <gtest/gtest.h>

#include <QPushButton>
#include <tuple>

#include "windows/part1_test.h"

namespace halmek::test {
namespace {

constexpr const char* noTable =
    "Wavelength file 'WL_Table.txt' not found - load from menu bar or enter tabular values manually.";

using MainWindowTest = Part1Test;

TEST_F(MainWindowTest, KeepsWhatWasTypedAndWhereItStoodWhereTheyCanBeWritten) {
  const auto boxes = [&] { return BoxText("Text1") + " " + BoxText("Text5") + " " + BoxText("Text6"); };
  EXPECT_EQ(main->frameGeometry(), QRect(PixelsOf(500), PixelsOf(500), PixelsOf(10920), PixelsOf(7950)));
  EXPECT_EQ(boxes(), "1 50 1397");
  EXPECT_EQ(Find<QComboBox>(main.get(), "Combo1")->currentText(), "2");
  Type("Text5", "71");
  Type("Text6", "-12.5");
  Type("Text1", "33");
  main->move(40, 60);
  main->close();
  Start();
  EXPECT_EQ(platform.TakeMessages(), Texts{noTable});
  EXPECT_EQ(main->pos(), QPoint(40, 60));
  EXPECT_EQ(boxes(), "1 71 -12") << "only Snip ! takes the corners";

  // Of a file that is cut off, nothing is taken.
  const std::string ini = ReadFile(folder.File("Halmek8.ini"));
  WriteFile(folder.File("Halmek8.ini"), ini.substr(0, ini.size() / 2));
  Start();
  EXPECT_EQ(platform.TakeMessages(), (Texts{"Default values are being loaded.", noTable}));
  EXPECT_EQ(boxes(), "1 50 1397");

  session->settingsPath = folder.File("gone/Halmek8.ini");
  main->close();
  EXPECT_EQ(platform.TakeMessages(), Texts{"Error: 76  Error: Path not found."});
  EXPECT_FALSE(main->isVisible()) << "it closes all the same";
}

TEST_F(MainWindowTest, EventsEnableTheControlsOfTheNextSteps) {
  WriteFrame("star.fts", 120, 60, Star);
  const std::string bytes = ReadFile(folder.File("star.fts"));
  WriteFile(folder.File("short.fts"), bytes.substr(0, bytes.size() / 2));
  std::string trimmed = bytes;
  trimmed.replace(trimmed.find("OBJECT"), 10, "OVERSCAN '");
  WriteFile(folder.File("trimmed.fts"), trimmed);
  WriteSpectrum("arc.fts", std::vector<double>(50, 300));
  const auto choose = [&](int index) { Choose(main.get(), "Combo1", index); };

  const std::vector<Event> events = {
      {"start", [] {}, "13", "----"},
      {"no such frame", [&] { Load("none.fts"); }, "13", "----", "Error: 53  Error: File not found."},
      {"frame", [&] { Load("star.fts"); }, "1 2 3 4 13", "----"},
      {"arc 1", [&] { Load("arc.fts", "arc1"); }, "1 2 3 4 7 13", "----"},
      {"arc 2", [&] { Load("arc.fts", "arc2"); }, "1 2 3 4 7 13 14", "----"},
      {"one arc", [&] { choose(0); }, "1 2 3 4 7", "----"},
      {"two arcs", [&] { choose(1); }, "1 2 3 4 7 13 14", "----"},
      {"object", [&] { Load("arc.fts", "object"); }, "1 2 3 4 7 10 13 14", "----"},
      {"fix", [&] { Type("Text6", "60"), Press("Command2"); }, "1 3 4 7 10 13 14", "----"},
      {"trim", [&] { Snip("1", "1", "110", "60"); }, "3 4 7 10 13 14", "----"},
      {"slice", [&] { FitSlice(); }, "3 4 5 7 10 13 14", "-D--"},
      {"crunch", [&] { Press("Command5"); }, "3 4 5 6 7 10 13 14", "-DD-"},
      {"continuum open", [&] { Press("Command6"); }, "3 4 5 6 7 10 13 14", "-DD-"},
      {"continuum", [&] { Press(Window("frmPlot_Continuum"), "Command1", "Command6"); },
       "3 4 5 6 7 9 10 13 14", "-DDD"},
      {"no arc", [&] { Load("short.fts", "arc1"); }, "3 4 5 6 7 9 10 13 14", "-DDD",
       "Hey, this is not a 1-D file!  Please try again."},
      {"no frame", [&] { Load("short.fts"); }, "3 4 5 6 7 9 10 13 14", "-DDD",
       "Error: 62  Error: Input past end of file."},
      {"trimmed frame", [&] { Load("trimmed.fts"); }, "2 3 4 6 7 9 10 13 14", "----"},
      {"frame again", [&] { Load("star.fts"); }, "1 2 3 4 6 7 9 10 13 14", "----"},
  };
  Follow(events, [&] { return Done(main.get(), {"Label24", "Label25", "Label26", "Label27"}); });
  EXPECT_EQ(main->windowTitle(), "Halmek.  File:  star.fts     Object:  Test star");
  std::string labels;
  for (const char* label : {"Label43", "Label44", "Label30", "Label40", "Label33", "Label36"})
    labels += LabelText(main.get(), label) + "|";
  EXPECT_EQ(labels, "star.fts|Test star|arc.fts|Test star|arc.fts|Test star|");
}

TEST_F(MainWindowTest, SnipAndFixTakeWholeNumbersAndFixProposesTheStartRow) {
  constexpr auto overflow = "Error: 6  Error: Overflow.", load = "load frame star.fts",
                 badRow = "Row 2 value must be <= NAXIS2.  Please try again.",
                 badColumn = "Enter a valid column number, please - not within 3 pixels of the edge.";
  const std::tuple<std::array<const char*, 4>, std::string, const char*> snips[] = {
      {{"1", "1", "20", "99999"}, load, overflow},
      {{"10", "5", "20", "60.6"}, std::string("# refused: trim 10 5 20 61  # ") + badRow, badRow},
      {{"12.5", "3", "13.5", "3"}, "trim 12 3 14 3", nullptr}};
  LoadFrame(120, 60);
  for (const auto& [corners, step, message] : snips) {
    Snip(corners[0], corners[1], corners[2], corners[3]);
    EXPECT_EQ(session->journal.back(), step);
    EXPECT_EQ(platform.TakeMessages(), Told(message));
  }
  const std::tuple<const char*, const char*, std::string, const char*> columns[] = {
      {"99999", "17", load, overflow},
      {"none", "17", std::string("# refused: fix-column 0  # ") + badColumn, badColumn},
      {"4.5", "26", "fix-column 4", nullptr}};
  LoadFrame(120, 60);
  Type("Text5", "17");
  for (const auto& [typed, startRow, step, message] : columns) {
    Type("Text6", typed);
    Press("Command2");
    EXPECT_EQ(session->journal.back(), step);
    EXPECT_EQ(platform.TakeMessages(), Told(message));
    EXPECT_EQ(BoxText("Text5"), startRow);
  }
}

TEST_F(MainWindowTest, FixTraceOpensOnTheRowTypedOrRefusesIt) {
  LoadFrame(120, 60, [](int column, int row) { return row == 3 ? 99 : 200 + column; });
  const std::tuple<const char*, const char*, const char*> cases[] = {
      {"61", "", "Row to plot is greater than the number of rows.  Press any key to continue."},
      {"99999", "", "Error: 6  Error: Overflow."},
      {"3", "", "Row 3 cannot be shown, because it has values under 100."},
      {"60", "60", nullptr},
      {"-40", "1", nullptr},
      {"2.5x", "2", nullptr}};
  for (const auto& [typed, shown, message] : cases) {
    Type("Text5", typed);
    Press("Command4");
    EXPECT_EQ(platform.TakeMessages(), Told(message)) << typed;
    EXPECT_EQ(IsOpen("frmPlot_Row") ? LabelText(Window("frmPlot_Row"), "Label7") : "", shown) << typed;
  }
}

TEST_F(MainWindowTest, MenusRefuseWhatIsNotLoaded) {
  const auto noFrame = "Hey, no 2-D file has been loaded!", noFile = "Hey, no file has been loaded.",
             noObject = "Hey, no Object (2-D) file has been loaded!",
             noArc1 = "Hey, no Arc 1 file has been loaded!", noArc2 = "Hey, no Arc 2 file has been loaded!";
  // The slot that is current is that of the header shown last.
  const std::pair<const char*, const char*> items[] = {
      {"mSave", noFrame},   {"mSaveAs", noFrame},   {"mSave2D_Text", noFrame},
      {"mHeader0", noFile}, {"mySave1D", noObject}, {"mSave1D_Text", noObject},
      {"mHeader1", noFile}, {"mySave1D", noArc1},   {"mSave1D_Text", noArc1},
      {"mHeader2", noFile}, {"mySave1D", noArc2},   {"mSave1D_Text", noArc2},
      {"mHeader4", noFile}, {"mySave1D", nullptr},  {"mSave1D_Text", nullptr}};
  for (const auto& [item, message] : items) {
    Trigger(main.get(), item);
    EXPECT_EQ(platform.TakeMessages(), Told(message)) << item << session->currentSlot;
  }
  session->slot[slots::object].fileName = "obj.fts";
  Trigger(main.get(), "mySave1D");
  EXPECT_EQ(platform.TakeMessages(), Texts{"Sorry; this feature has not been implemented yet."});
}

TEST_F(MainWindowTest, ButtonsOpenTheChoosersOfTheirSteps) {
  LoadFrame(120, 60);
  fs::copy(folder.File("star.fts"), folder.File("s.fits"));
  Press(OpenContinuum(), "Command6");
  // The spectrum keeps the name of its frame.
  WriteFrame("other.fts", 60, 60, Star);
  Load("other.fts");
  WriteSpectrum("obj.x.fts", std::vector<double>(50, 300));
  Load("obj.x.fts", "object");
  session->workflow.saveObjectEnabled = true;
  desk.RefreshViews();
  // Loads offer the first file of the type that they list.
  const struct {
    const char *control, *window, *title, *step;
    int slot = 0;
  } cases[] = {
      {"Command9", "frmSave_datafiles", "Save 1-D Fits File", "save spectrum star_1D.fts", 3},
      {"mSave1D_Text", "frmSave_1DText", "Save 1-D Data to Text File", "export spectrum star_1D.txt", 3},
      {"Command15", "frmSave_datafiles", "Save Calibrated 1-D Program File", "save object obj.xcal.fts", 4},
      {"mSaveAs", "frmSave_datafiles", "Save 2-D Program File", "save frame other.fts"},
      {"mSave2D_Text", "frmSave_2DText", "Save 2-D Data to Text File", "export frame other_2D.txt"},
      {"Command11", "frmLoad_Datafiles", "Load 2-D Fits File", "load frame s.fits"},
      {"mLoad2DFitsFile", "frmLoad_Datafiles", "Load 2-D Fits File", "load frame s.fits"},
      {"Command12", "frmLoad_Datafiles", "Load 1-D Fits File", "load arc1 obj.x.fts", 1},
      {"Command13", "frmLoad_Datafiles", "Load 1-D Fits File", "load arc2 obj.x.fts", 2},
      {"Command16", "frmLoad_Datafiles", "Load Program 1-D Fits File", "load object obj.x.fts", 4},
      {"mLoadDAO", "frmLoad_Datafiles", "Load DAO Non-standard 2-D Fits File", "# refused: load dao "},
      {"mLoadWLtable", "frmLoad_WLtable", "Load Wavelength Table", "# refused: load table "},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.control);
    if (c.control[0] == 'm')
      Trigger(main.get(), c.control);
    else
      Press(c.control);
    ASSERT_TRUE(IsOpen(c.window));
    EXPECT_EQ(Window(c.window)->windowTitle(), c.title);
    EXPECT_EQ(session->currentSlot, c.slot);
    Press(Window(c.window), "Command1");
    EXPECT_TRUE(session->journal.back().starts_with(c.step)) << session->journal.back();
    EXPECT_EQ(platform.TakeMessages().size(), c.step[0] == '#') << "only refusals are told";
  }
}

TEST_F(MainWindowTest, TabFollowsTheStepsAndSelectsTexts) {
  // All enabled, as after an evening.
  for (auto* const button : main->findChildren<QPushButton*>())
    button->setEnabled(true);
  Activate(main.get());
  Find<QWidget>(main.get(), "Command11")->setFocus();
  std::string order;
  for (int i = 0; i < 22; ++i) {
    QWidget* const focus = QApplication::focusWidget();
    order += focus->objectName().replace("Command", "").toStdString() + " ";
    if (const auto* box = qobject_cast<QLineEdit*>(focus)) {
      EXPECT_EQ(box->selectedText(), box->text()) << order;
    }
    QTest::keyClick(focus, Qt::Key_Tab);
  }
  EXPECT_EQ(order, "11 Text6 2 Text1 Text2 Text3 Text4 1 Text5 4 3 5 6 9 Combo1 12 13 7 14 16 10 15 ");
  auto* const box = Find<QLineEdit>(main.get(), "Text3");
  for (const char* selected : {"1748", ""}) {
    QTest::mouseClick(box, Qt::LeftButton);
    EXPECT_EQ(box->selectedText(), selected) << "the first click selects, the next puts the cursor";
  }
}

}  // namespace
}  // namespace halmek::test
