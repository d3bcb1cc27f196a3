// The main window: start and stop, which controls are enabled when, the checks of its steps, its menus.
#include "app/main_window.h"

#include <gtest/gtest.h>

#include <QMenu>
#include <QPlainTextEdit>
#include <filesystem>

#include "files/text_records.h"
#include "windows/part1_test.h"

namespace halmek::test {
namespace {

namespace fs = std::filesystem;

constexpr const char* noTable =
    "Wavelength file 'WL_table.txt' not found - load from menu bar or enter tabular values manually.";

class MainWindowTest : public Part1Test {
 protected:
  // The numbers of the buttons that can be pressed, of those that are not always enabled.
  std::string Enabled() { return Part1Test::Enabled({1, 2, 3, 4, 5, 6, 7, 9, 10, 13, 14, 15}); }
  // A letter for each of Label24 to Label27: D where it says that its step is done.
  std::string Status() {
    std::string status;
    for (const char* label : {"Label24", "Label25", "Label26", "Label27"}) {
      const std::string text = LabelText(main.get(), label);
      status += text == "DONE!" ? 'D' : text.empty() ? '-' : '?';
    }
    return status;
  }
  void Stop() { main->close(); }
  std::string Ini() { return ReadFile(folder.File("Halmek8.ini")); }
};

TEST_F(MainWindowTest, StartsInAnEmptyFolderAndWritesTheDefaultsAtTheEnd) {
  *session = {};
  main.reset();
  Start();
  EXPECT_EQ(platform.TakeMessages(), (Texts{"Default values are being loaded.", noTable}));
  const QRect outer = main->frameGeometry();
  EXPECT_EQ(outer, QRect(PixelsOf(500), PixelsOf(500), PixelsOf(10920), PixelsOf(7950)));
  EXPECT_EQ(main->windowTitle(), "Halmek");
  Texts boxes;
  for (const char* box : {"Text1", "Text2", "Text3", "Text4", "Text5", "Text6"})
    boxes.push_back(BoxText(box));
  EXPECT_EQ(boxes, (Texts{"1", "1", "1748", "140", "50", "1397"}));
  EXPECT_EQ(Find<QComboBox>(main.get(), "Combo1")->currentText(), "2");

  Stop();
  EXPECT_FALSE(main->isVisible());
  const std::string written = Ini();
  EXPECT_EQ(written, SettingsText(Settings{}));
  EXPECT_EQ(std::count(written.begin(), written.end(), '\n'), 30);
  EXPECT_TRUE(written.ends_with("\r\n1,1,1748,140\r\n"));
  EXPECT_EQ(platform.messages, Texts{});
}

TEST_F(MainWindowTest, KeepsWhatWasTypedAndWhereItStood) {
  Type("Text5", "71");
  Type("Text6", "-12.5");
  Type("Text1", "33");
  main->move(40, 60);
  main->close();
  const Settings kept = ParseSettings(Ini());
  EXPECT_EQ(kept.startRow, 71);
  EXPECT_EQ(kept.badColumn, -12);
  EXPECT_EQ(kept.trimCol1, 1) << "only Snip ! takes the corners";
  EXPECT_EQ(PixelsOf(kept.mainWindow.left), 40);
  EXPECT_EQ(PixelsOf(kept.mainWindow.top), 60);

  main.reset();
  Start();
  EXPECT_EQ(platform.TakeMessages(), Texts{noTable});
  EXPECT_EQ(main->pos(), QPoint(40, 60));
  EXPECT_EQ(BoxText("Text5") + BoxText("Text6"), "71-12");
}

TEST_F(MainWindowTest, SettingsThatAreCutOffOrCannotBeWritten) {
  std::string tenLines;
  Settings seventh;
  seventh.badColumn = 7;
  const std::string whole = SettingsText(seventh);
  for (size_t at = 0, line = 0; line < 10; ++line) {
    const size_t end = whole.find('\n', at) + 1;
    tenLines += whole.substr(at, end - at);
    at = end;
  }
  WriteFile(folder.File("Halmek8.ini"), tenLines);
  main.reset();
  Start();
  EXPECT_EQ(platform.TakeMessages().front(), "Default values are being loaded.");
  EXPECT_EQ(BoxText("Text6"), "1397");

  session->settingsPath = folder.File("gone/Halmek8.ini");
  Stop();
  EXPECT_EQ(platform.messages.size(), 1u);
  EXPECT_TRUE(platform.messages.at(0).starts_with("Error: ")) << platform.messages.at(0);
  EXPECT_FALSE(main->isVisible()) << "it closes all the same";
}

TEST_F(MainWindowTest, EventsEnableTheControlsOfTheNextSteps) {
  WriteFrame("star.fts", 120, 60, Star);
  const std::string bytes = ReadFile(folder.File("star.fts"));
  WriteFile(folder.File("short.fts"), bytes.substr(0, bytes.size() / 2));
  std::string trimmed = bytes;
  trimmed.replace(trimmed.find("OBJECT"), 10, "OVERSCAN '");
  WriteFile(folder.File("trimmed.fts"), trimmed);
  WriteSpectrum("arc.fts");
  const auto in = [](const char* window) { return Part1Test::Window(window); };
  const auto choose = [&](int index) { Choose(main.get(), "Combo1", index); };

  const struct {
    const char* what;
    std::function<void()> event;
    const char *enabled, *status;
    const char* message = nullptr;
  } events[] = {
      {"start", [] {}, "13", "----"},
      {"no such frame", [&] { Load("none.fts"); }, "13", "----", "Error: 53  Error: File not found."},
      {"frame", [&] { Load("star.fts"); }, "1 2 3 4 13", "----"},
      {"arc 1", [&] { Load("arc.fts", "arc1"); }, "1 2 3 4 7 13", "----"},
      {"arc 2", [&] { Load("arc.fts", "arc2"); }, "1 2 3 4 7 13 14", "----"},
      {"one arc", [&] { choose(0); }, "1 2 3 4 7", "----"},
      {"two arcs", [&] { choose(1); }, "1 2 3 4 7 13 14", "----"},
      {"object", [&] { Load("arc.fts", "object"); }, "1 2 3 4 7 10 13 14", "----"},
      {"fix", [&] { Type("Text6", "60"), Press("Command2"); }, "1 3 4 7 10 13 14", "----"},
      {"trim", [&] { Type("Text3", "110"), Type("Text4", "60"), Press("Command1"); }, "3 4 7 10 13 14",
       "----"},
      {"slice", [&] { FitSlice(); }, "3 4 5 7 10 13 14", "-D--"},
      {"crunch", [&] { Press("Command5"); }, "3 4 5 6 7 10 13 14", "-DD-"},
      {"continuum",
       [&] {
         Press("Command6");
         Press(in("frmPlot_Continuum"), "Command1");
         Press(in("frmPlot_Continuum"), "Command6");
       },
       "3 4 5 6 7 9 10 13 14", "-DDD"},
      {"no arc", [&] { Load("short.fts", "arc1"); }, "3 4 5 6 9 10 13 14", "-DDD",
       "Hey, this is not a 1-D file!  Please try again."},
      {"no frame", [&] { Load("short.fts"); }, "6 9 10 13 14", "-DDD",
       "Error: 62  Error: Input past end of file."},
      {"trimmed frame", [&] { Load("trimmed.fts"); }, "2 3 4 6 9 10 13 14", "----"},
      {"frame again", [&] { Load("star.fts"); }, "1 2 3 4 6 9 10 13 14", "----"},
  };
  for (const auto& e : events) {
    e.event();
    EXPECT_EQ(Enabled(), e.enabled) << e.what;
    EXPECT_EQ(Status(), e.status) << e.what;
    EXPECT_EQ(platform.TakeMessages(), e.message ? Texts{e.message} : Texts{}) << e.what;
    EXPECT_FALSE(platform.isBusy);
  }
  EXPECT_EQ(main->windowTitle(), "Halmek.  File:  star.fts     Object:  Test star");
  EXPECT_EQ(LabelText(main.get(), "Label43") + LabelText(main.get(), "Label44"), "star.ftsTest star");
  EXPECT_EQ(LabelText(main.get(), "Label30") + LabelText(main.get(), "Label40"), "arc.ftsTest star");
  EXPECT_EQ(LabelText(main.get(), "Label33") + LabelText(main.get(), "Label36"), "arc.ftsTest star");
}

TEST_F(MainWindowTest, SnipChecksTheCornersInOrderAndKeepsThem) {
  LoadFrame(120, 60);
  using Corners = std::array<const char*, 4>;
  const struct {
    Corners typed;
    std::array<int, 4> kept;
    const char* message;
  } cases[] = {
      {{"0", "1", "100", "50"}, {0, 1, 100, 50}, "Col 1 value must be > 0.  Please try again."},
      {{"abc", "0", "-1", "99"}, {0, 0, -1, 99}, "Col 1 value must be > 0.  Please try again."},
      {{"0.5", "1", "9", "9"}, {0, 1, 9, 9}, "Col 1 value must be > 0.  Please try again."},
      {{"10", "0", "9", "99"}, {10, 0, 9, 99}, "Col 2 value must be > Col 1 value.  Please try again."},
      {{"10", "0", "121", "99"}, {10, 0, 121, 99}, "Col 2 value must be <= NAXIS1.  Please try again."},
      {{"10", "", "120", "-3"}, {10, 0, 120, -3}, "Row 1 value must be > 0.  Please try again."},
      {{"10", "5", "20", "4"}, {10, 5, 20, 4}, "Row 2 value must be > Row 1 value.  Please try again."},
      {{"10", "5", "20", "60.6"}, {10, 5, 20, 61}, "Row 2 value must be <= NAXIS2.  Please try again."},
      {{"1", "1", "20", "99999"}, {10, 5, 20, 61}, "Error: 6  Error: Overflow."},
  };
  const auto type = [&](const Corners& corners) {
    for (size_t i = 0; i < 4; ++i)
      Type(("Text" + std::to_string(i + 1)).c_str(), corners[i]);
  };
  Session& s = *session;
  for (const auto& c : cases) {
    type(c.typed);
    const std::array<int16_t, 4> before{s.trimCol1, s.trimRow1, s.trimCol2, s.trimRow2};
    const std::string state = StateOf(s);
    Press("Command1");
    EXPECT_EQ(platform.TakeMessages(), Texts{c.message});
    EXPECT_EQ((std::array<int, 4>{s.trimCol1, s.trimRow1, s.trimCol2, s.trimRow2}), c.kept) << c.message;
    const std::array<int16_t, 4> after{s.trimCol1, s.trimRow1, s.trimCol2, s.trimRow2};
    std::tie(s.trimCol1, s.trimRow1, s.trimCol2, s.trimRow2) = std::tuple_cat(before);
    EXPECT_EQ(StateOf(s), state) << c.message;
    std::tie(s.trimCol1, s.trimRow1, s.trimCol2, s.trimRow2) = std::tuple_cat(after);
  }

  type({"12.5", "3", "13.5", "3"});
  Press("Command1");
  EXPECT_EQ(platform.TakeMessages(), Texts{});
  EXPECT_EQ(Range(Columns(s), Rows(s)), Range(3, 1));
  EXPECT_EQ(s.image(1, 3), Star(14, 3));
  EXPECT_FALSE(Find<QPushButton>(main.get(), "Command1")->isEnabled());
  Stop();
  EXPECT_NE(Ini().find("\r\n12,3,14,3\r\n"), std::string::npos);
}

TEST_F(MainWindowTest, FixRefusesColumnsAtTheEdgeAndProposesTheStartRow) {
  LoadFrame(120, 60);
  constexpr auto edge = "Enter a valid column number, please - not within 3 pixels of the edge.";
  const struct {
    const char* typed;
    int kept;
    const char* message;
  } refused[] = {{"3", 3, edge},   {"118", 118, edge}, {"none", 0, edge},
                 {"3.4", 3, edge}, {"-50", -50, edge}, {"99999", -50, "Error: 6  Error: Overflow."}};
  Type("Text5", "17");
  for (const auto& c : refused) {
    Type("Text6", c.typed);
    const int16_t before = session->badColumn;
    const std::string state = StateOf(*session);
    Press("Command2");
    EXPECT_EQ(platform.TakeMessages(), Texts{c.message}) << c.typed;
    EXPECT_EQ(session->badColumn, c.kept);
    session->badColumn = before;
    EXPECT_EQ(StateOf(*session), state) << c.typed;
    session->badColumn = static_cast<int16_t>(c.kept);
    EXPECT_EQ(BoxText("Text5"), "17");
  }
  const struct {
    const char* typed;
    int column, traceRow;
    const char* startRow;
  } accepted[] = {{"4", 4, 30, "26"}, {"117", 117, 2, "-2"}, {"4.5", 4, 4, "0"}};
  for (const auto& c : accepted) {
    LoadFrame(120, 60, [&](int column, int row) {
      return column == c.column ? 60000 : (row == c.traceRow ? 900 : 200) + column;
    });
    Type("Text6", c.typed);
    Press("Command2");
    EXPECT_EQ(platform.TakeMessages(), Texts{}) << c.typed;
    EXPECT_EQ(session->image(1, c.column), 200 + c.column);
    EXPECT_EQ(BoxText("Text5"), c.startRow);
    EXPECT_FALSE(Find<QPushButton>(main.get(), "Command2")->isEnabled());
  }
}

TEST_F(MainWindowTest, FixTraceOpensOnTheRowTypedOrRefusesIt) {
  LoadFrame(120, 60, [](int column, int row) { return row == 3 ? 99 : 200 + column; });
  constexpr auto tooGreat = "Row to plot is greater than the number of rows.  Press any key to continue.";
  const struct {
    const char* typed;
    int startRow, plotRow;
    const char* message;
  } cases[] = {
      {"61", 61, 0, tooGreat},
      {"99999", 61, 0, "Error: 6  Error: Overflow."},
      {"3", 3, 0, "Row 3 cannot be shown, because it has values under 100."},
      {"60", 60, 60, nullptr},
      {"61", 61, 60, tooGreat},
      {"", 0, 1, nullptr},
      {"-40", -40, 1, nullptr},
      {"1.5x", 2, 2, nullptr},
      {"2.5", 2, 2, nullptr},
  };
  for (const auto& c : cases) {
    Type("Text5", c.typed);
    Press("Command4");
    EXPECT_EQ(platform.TakeMessages(), c.message ? Texts{c.message} : Texts{}) << c.typed;
    EXPECT_EQ(session->startRow, c.startRow) << c.typed;
    EXPECT_EQ(IsOpen("frmPlot_Row"), c.plotRow != 0) << c.typed;
    if (c.plotRow != 0) {
      EXPECT_EQ(LabelText(Window("frmPlot_Row"), "Label7"), std::to_string(c.plotRow));
    }
  }
}

TEST_F(MainWindowTest, MenusRefuseWhatIsNotLoaded) {
  constexpr auto noFrame = "Hey, no 2-D file has been loaded!", noFile = "Hey, no file has been loaded.";
  const Texts noSlot[] = {{"Hey, no Object (2-D) file has been loaded!"},
                          {"Hey, no Arc 1 file has been loaded!"},
                          {"Hey, no Arc 2 file has been loaded!"},
                          {},
                          {}};
  for (const char* item : {"mSave", "mSaveAs", "mSave2D_Text"}) {
    Trigger(main.get(), item);
    EXPECT_EQ(platform.TakeMessages(), Texts{noFrame}) << item;
  }
  for (int slot = 0; slot < 5; ++slot)
    for (const char* item : {"mySave1D", "mSave1D_Text"}) {
      session->currentSlot = slot;
      Trigger(main.get(), item);
      EXPECT_EQ(platform.TakeMessages(), noSlot[slot]) << item << slot;
    }
  for (int slot : {0, 1, 2, 4}) {
    Trigger(main.get(), ("mHeader" + std::to_string(slot)).c_str());
    EXPECT_EQ(platform.TakeMessages(), Texts{noFile});
    EXPECT_EQ(session->currentSlot, slot);
  }
  WriteSpectrum("arc.fts");
  Load("arc.fts", "arc1");
  Trigger(main.get(), "mySave1D");
  EXPECT_EQ(platform.TakeMessages(), Texts{"Sorry; this feature has not been implemented yet."});
  EXPECT_EQ(session->writtenFiles, Texts{});
}

TEST_F(MainWindowTest, ButtonsOpenTheirChoosersWithTitleAndName) {
  LoadFrame(120, 60);
  Press(OpenContinuum(), "Command6");
  WriteSpectrum("obj.x.fts");
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
      {"mSaveAs", "frmSave_datafiles", "Save 2-D Program File", "star.fts", 0},
      {"mSave2D_Text", "frmSave_2DText", "Save 2-D Data to Text File", "star_2D.txt", 0},
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
      EXPECT_EQ(Find<QLineEdit>(Window(c.window), "Text1")->text(), c.name);
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
  main->activateWindow();
  ASSERT_TRUE(QTest::qWaitForWindowActive(main.get()));
  Find<QPushButton>(main.get(), "Command11")->setFocus();
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
