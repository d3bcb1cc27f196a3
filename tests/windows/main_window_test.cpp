// The main window: start and stop, which controls are enabled when, the checks of its steps, its menus.
#include "app/main_window.h"

#include <gtest/gtest.h>

#include "windows/part1_test.h"

namespace halmek::test {
namespace {

constexpr const char* noTable =
    "Wavelength file 'WL_table.txt' not found - load from menu bar or enter tabular values manually.";

class MainWindowTest : public Part1Test {
 protected:
  std::string Ini() { return ReadFile(folder.File("Halmek8.ini")); }
};

TEST_F(MainWindowTest, StartsInAnEmptyFolderAndWritesTheDefaultsAtTheEnd) {
  *session = {};
  Start();
  EXPECT_EQ(platform.TakeMessages(), (Texts{"Default values are being loaded.", noTable}));
  EXPECT_EQ(main->frameGeometry(), QRect(PixelsOf(500), PixelsOf(500), PixelsOf(10920), PixelsOf(7950)));
  EXPECT_EQ(main->windowTitle(), "Halmek");
  std::string boxes;
  for (const char* box : {"Text1", "Text2", "Text3", "Text4", "Text5", "Text6"})
    boxes += BoxText(box) + " ";
  EXPECT_EQ(boxes, "1 1 1748 140 50 1397 ");
  EXPECT_EQ(Find<QComboBox>(main.get(), "Combo1")->currentText(), "2");

  main->close();
  EXPECT_FALSE(main->isVisible());
  EXPECT_EQ(Ini(), SettingsText(Settings{}));
}

TEST_F(MainWindowTest, KeepsWhatWasTypedAndWhereItStoodWhereTheyCanBeWritten) {
  Type("Text5", "71");
  Type("Text6", "-12.5");
  Type("Text1", "33");
  main->move(40, 60);
  main->close();
  Start();
  EXPECT_EQ(platform.TakeMessages(), Texts{noTable});
  EXPECT_EQ(main->pos(), QPoint(40, 60));
  EXPECT_EQ(BoxText("Text5") + BoxText("Text6"), "71-12");
  EXPECT_EQ(BoxText("Text1"), "1") << "only Snip ! takes the corners";

  // Of a file that is cut off, nothing is taken.
  WriteFile(folder.File("Halmek8.ini"), Ini().substr(0, Ini().size() / 2));
  Start();
  EXPECT_EQ(platform.TakeMessages().front(), "Default values are being loaded.");
  EXPECT_EQ(BoxText("Text6"), "1397");

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

TEST_F(MainWindowTest, SnipKeepsTheCornersThatItRefuses) {
  LoadFrame(120, 60);
  Session& s = *session;
  const auto corners = [&] { return std::array<int, 4>{s.trimCol1, s.trimRow1, s.trimCol2, s.trimRow2}; };
  const struct {
    std::array<const char*, 4> typed;
    std::array<int, 4> kept;
    const char* message = nullptr;
  } cases[] = {
      {{"0.5", "1", "9", "9"}, {0, 1, 9, 9}, "Col 1 value must be > 0.  Please try again."},
      {{"10", "abc", "120", "-3"}, {10, 0, 120, -3}, "Row 1 value must be > 0.  Please try again."},
      {{"10", "5", "20", "60.6"}, {10, 5, 20, 61}, "Row 2 value must be <= NAXIS2.  Please try again."},
      {{"1", "1", "20", "99999"}, {10, 5, 20, 61}, "Error: 6  Error: Overflow."},
      {{"12.5", "3", "13.5", "3"}, {12, 3, 14, 3}},
  };
  for (const auto& c : cases) {
    Snip(c.typed[0], c.typed[1], c.typed[2], c.typed[3]);
    EXPECT_EQ(platform.TakeMessages(), Told(c.message));
    EXPECT_EQ(corners(), c.kept) << c.typed[0];
    EXPECT_EQ(Range(Columns(s), Rows(s)), c.message ? Range(120, 60) : Range(3, 1)) << c.typed[0];
  }
  EXPECT_EQ(s.image(1, 3), Star(14, 3));
  main->close();
  EXPECT_NE(Ini().find("\r\n12,3,14,3\r\n"), std::string::npos);
}

TEST_F(MainWindowTest, FixRefusesColumnsAtTheEdgeAndProposesTheStartRow) {
  constexpr auto edge = "Enter a valid column number, please - not within 3 pixels of the edge.";
  const struct {
    const char* typed;
    int traceRow;
    int kept;
    const char *startRow, *message = nullptr;
  } cases[] = {{"none", 30, 0, "17", edge},
               {"3.4", 30, 3, "17", edge},
               {"99999", 30, 3, "17", "Error: 6  Error: Overflow."},
               {"117", 2, 117, "-2"},
               {"4.5", 30, 4, "26"}};
  for (const auto& c : cases) {
    const auto value = [&](int column, int row) {
      return column == c.kept ? 60000 : (row == c.traceRow ? 900 : 200) + column;
    };
    LoadFrame(120, 60, value);
    Type("Text5", "17");
    Type("Text6", c.typed);
    Press("Command2");
    EXPECT_EQ(platform.TakeMessages(), Told(c.message)) << c.typed;
    EXPECT_EQ(session->badColumn, c.kept) << c.typed;
    EXPECT_EQ(BoxText("Text5"), c.startRow) << c.typed;
    for (int column : {3, 4, 117})
      EXPECT_EQ(session->image(1, column), c.message ? value(column, 1) : 200 + column) << c.typed;
  }
}

TEST_F(MainWindowTest, FixTraceOpensOnTheRowTypedOrRefusesIt) {
  LoadFrame(120, 60, [](int column, int row) { return row == 3 ? 99 : 200 + column; });
  const struct {
    const char* typed;
    int startRow;
    const char *shown, *message = nullptr;
  } cases[] = {
      {"61", 61, "", "Row to plot is greater than the number of rows.  Press any key to continue."},
      {"99999", 61, "", "Error: 6  Error: Overflow."},
      {"3", 3, "", "Row 3 cannot be shown, because it has values under 100."},
      {"60", 60, "60"},
      {"", 0, "1"},
      {"-40", -40, "1"},
      {"2.5x", 2, "2"},
  };
  for (const auto& c : cases) {
    Type("Text5", c.typed);
    Press("Command4");
    EXPECT_EQ(platform.TakeMessages(), Told(c.message)) << c.typed;
    EXPECT_EQ(session->startRow, c.startRow) << c.typed;
    const bool isOpen = IsOpen("frmPlot_Row");
    EXPECT_EQ(isOpen ? LabelText(Window("frmPlot_Row"), "Label7") : "", c.shown) << c.typed;
  }
}

TEST_F(MainWindowTest, MenusRefuseWhatIsNotLoaded) {
  constexpr auto noFrame = "Hey, no 2-D file has been loaded!", noFile = "Hey, no file has been loaded.";
  const char* const noSlot[] = {"Hey, no Object (2-D) file has been loaded!",
                                "Hey, no Arc 1 file has been loaded!", "Hey, no Arc 2 file has been loaded!",
                                nullptr, nullptr};
  const auto expect = [&](const std::string& item, const char* message) {
    Trigger(main.get(), item.c_str());
    EXPECT_EQ(platform.TakeMessages(), Told(message)) << item << session->currentSlot;
  };
  for (const char* item : {"mSave", "mSaveAs", "mSave2D_Text"})
    expect(item, noFrame);
  for (int slot = 0; slot < 5; ++slot)
    for (const char* item : {"mySave1D", "mSave1D_Text"}) {
      session->currentSlot = slot;
      expect(item, noSlot[slot]);
    }
  for (int slot : {0, 1, 2, 4}) {
    expect("mHeader" + std::to_string(slot), noFile);
    EXPECT_EQ(session->currentSlot, slot);
  }
  WriteSpectrum("arc.fts", std::vector<double>(50, 300));
  Load("arc.fts", "arc1");
  expect("mySave1D", "Sorry; this feature has not been implemented yet.");
  EXPECT_EQ(session->writtenFiles, Texts{});
}

TEST_F(MainWindowTest, ButtonsOpenTheirChoosersWithTitleAndName) {
  LoadFrame(120, 60);
  Press(OpenContinuum(), "Command6");
  // The spectrum keeps the name of its frame.
  WriteFrame("other.fts", 60, 60, Star);
  Load("other.fts");
  WriteSpectrum("obj.x.fts", std::vector<double>(50, 300));
  Load("obj.x.fts", "object");
  session->workflow.saveObjectEnabled = true;
  desk.RefreshViews();
  const struct {
    const char *control, *window, *title, *name;
    int slot;
  } cases[] = {
      {"Command11", "frmLoad_Datafiles", "Load 2-D Fits File", nullptr, 0},
      {"mLoad2DFitsFile", "frmLoad_Datafiles", "Load 2-D Fits File", nullptr, 0},
      {"mLoadDAO", "frmLoad_Datafiles", "Load DAO Non-standard 2-D Fits File", nullptr, 0},
      {"Command12", "frmLoad_Datafiles", "Load 1-D Fits File", nullptr, 1},
      {"Command13", "frmLoad_Datafiles", "Load 1-D Fits File", nullptr, 2},
      {"Command16", "frmLoad_Datafiles", "Load Program 1-D Fits File", nullptr, 4},
      {"Command9", "frmSave_datafiles", "Save 1-D Fits File", "star_1D.fts", 3},
      {"mSave1D_Text", "frmSave_1DText", "Save 1-D Data to Text File", "star_1D.txt", 3},
      {"Command15", "frmSave_datafiles", "Save Calibrated 1-D Program File", "obj.xcal.fts", 4},
      {"mSaveAs", "frmSave_datafiles", "Save 2-D Program File", "other.fts", 0},
      {"mSave2D_Text", "frmSave_2DText", "Save 2-D Data to Text File", "other_2D.txt", 0},
  };
  for (const auto& c : cases) {
    if (c.control[0] == 'm')
      Trigger(main.get(), c.control);
    else
      Press(c.control);
    ASSERT_TRUE(IsOpen(c.window)) << c.control;
    EXPECT_EQ(Window(c.window)->windowTitle(), c.title) << c.control;
    EXPECT_EQ(session->currentSlot, c.slot) << c.control;
    if (c.slot == slots::frame && c.name == nullptr) {
      EXPECT_EQ(session->daoFrame, std::string(c.control) == "mLoadDAO") << c.control;
    }
    if (c.name) {
      EXPECT_EQ(BoxText(Window(c.window), "Text1"), c.name);
    }
    Window(c.window)->close();
  }
}

TEST_F(MainWindowTest, TabFollowsTheStepsAndSelectsTexts) {
  // All enabled, as after an evening.
  Workflow& w = session->workflow;
  w.trimEnabled = w.fixColumnEnabled = w.sliceEnabled = w.fixTraceEnabled = w.crunchEnabled = true;
  w.normalizeEnabled = w.saveSpectrumEnabled = w.correctEnabled = w.saveObjectEnabled = true;
  w.arc[1].plotEnabled = w.arc[2].plotEnabled = true;
  desk.RefreshViews();
  Activate(main.get());
  Find<QWidget>(main.get(), "Command11")->setFocus();
  Texts order;
  for (int i = 0; i < 22; ++i) {
    QWidget* const focus = QApplication::focusWidget();
    order.push_back(focus->objectName().toStdString());
    if (const auto* box = qobject_cast<QLineEdit*>(focus)) {
      EXPECT_EQ(box->selectedText(), box->text()) << order.back();
    }
    QTest::keyClick(focus, Qt::Key_Tab);
  }
  EXPECT_EQ(order, (Texts{"Command11", "Text6",     "Command2",  "Text1",     "Text2",     "Text3",
                          "Text4",     "Command1",  "Text5",     "Command4",  "Command3",  "Command5",
                          "Command6",  "Command9",  "Combo1",    "Command12", "Command13", "Command7",
                          "Command14", "Command16", "Command10", "Command15"}));
  auto* const box = Find<QLineEdit>(main.get(), "Text3");
  QTest::mouseClick(box, Qt::LeftButton);
  EXPECT_EQ(box->selectedText(), "1748") << "clicked";
  QTest::mouseClick(box, Qt::LeftButton);
  EXPECT_EQ(box->selectedText(), "") << "the next click puts the cursor";
}

}  // namespace
}  // namespace halmek::test
