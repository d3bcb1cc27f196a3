// File choosers, by their controls.
#include "dialogs/file_chooser.h"

#include <gtest/gtest.h>

#include <QComboBox>
#include <QListWidget>
#include <QRadioButton>
#include <filesystem>

#include "fits/fits_writer.h"
#include "platform/text.h"
#include "platform/twips.h"
#include "windows/window_test.h"

namespace halmek::test {
namespace {

namespace fs = std::filesystem;
using Texts = std::vector<std::string>;

constexpr const char* pathNotFound = "Error: 76  Error: Path not found.";

const ChooserKind* const kinds[] = {
    &choosers::loadData,  &choosers::saveData,         &choosers::loadMask,     &choosers::saveMask,
    &choosers::loadTable, &choosers::saveSpectrumText, &choosers::saveFrameText};

// A chooser in a folder with the frame star.fts and two folders: "empty" and "night", which holds B.FTS,
// c.fts and a.fits.
class FileChooserTest : public WindowTest {
 protected:
  std::unique_ptr<FileChooser> chooser;

  FileChooserTest() {
    session->dataFolder = fs::canonical(folder.path()).string();
    fs::create_directory(folder.File("empty"));
    fs::create_directory(folder.File("night"));
    const auto writer = SessionIn(folder.path());
    SetFrame(*writer, 5, 4, [](int column, int row) { return column + row; });
    writer->slot[slots::frame].savePixelType = -32;
    SaveFits2D(*writer, "star.fts");
    for (const char* copy : {"night/a.fits", "night/B.FTS", "night/c.fts"})
      fs::copy(folder.File("star.fts"), folder.File(copy));
  }

  void Open(const ChooserKind& kind, const std::string& what, const std::string& name = {}, int pattern = 0) {
    if (!chooser || chooser->objectName() != kind.name)
      chooser = std::make_unique<FileChooser>(desk, kind);
    chooser->Open({.what = what, .title = {}, .pattern = pattern, .name = name});
    ASSERT_TRUE(QTest::qWaitForWindowActive(chooser.get()));
  }

  std::string Here(const std::string& name) { return FullName(*session, name); }
  template <class Control>
  Control* In(const char* name) {
    return Find<Control>(chooser.get(), name);
  }
  std::string Name() { return Typed(In<QLineEdit>("Text1")->text()); }
  std::string FolderShown() { return Typed(In<QLabel>("Label4")->text()); }
  void Type(const QString& text) {
    In<QLineEdit>("Text1")->selectAll();
    QTest::keyClicks(In<QLineEdit>("Text1"), text);
  }
  // Not in the middle: an option button ends with its caption.
  void Press(const char* name) {
    auto* const button = In<QAbstractButton>(name);
    QTest::mouseClick(button, Qt::LeftButton, {}, {10, button->height() / 2});
  }
  void Key(const char* control, Qt::Key key) { QTest::keyClick(In<QWidget>(control), key); }

  void Choose(int pattern) { In<QComboBox>("Combo1")->setCurrentIndex(pattern); }

  Texts Rows(const char* list) {
    Texts texts;
    for (int i = 0; i < In<QListWidget>(list)->count(); ++i)
      texts.push_back(Typed(In<QListWidget>(list)->item(i)->text()));
    return texts;
  }

  // Clicks at the last row that shows `text`.
  void Click(const char* list, const QString& text, bool twice = false) {
    auto* const rows = In<QListWidget>(list);
    const auto found = rows->findItems(text, Qt::MatchExactly);
    ASSERT_FALSE(found.isEmpty()) << text.toStdString();
    rows->scrollToItem(found.last());
    const QPoint at(rows->viewport()->width() / 2, rows->visualItemRect(found.last()).center().y());
    QTest::mouseClick(rows->viewport(), Qt::LeftButton, {}, at);
    if (twice)
      QTest::mouseDClick(rows->viewport(), Qt::LeftButton, {}, at);
  }
  void DoubleClick(const char* list, const QString& text) { Click(list, text, true); }
};

TEST_F(FileChooserTest, LoadsTheFileChosenInAnotherFolder) {
  QWidget mainWindow;
  desk.SetMainWindow(&mainWindow);
  Open(choosers::loadData, "frame");
  DoubleClick("Dir1", "night");
  EXPECT_EQ(FolderShown(), Here("night"));
  EXPECT_EQ(Rows("File1"), (Texts{"B.FTS", "c.fts"}));
  EXPECT_EQ(Name(), "B.FTS");
  Click("File1", "c.fts");
  EXPECT_EQ(Name(), "c.fts");
  EXPECT_TRUE(session->journal.empty());

  const std::string night = Here("night");
  Press("Command1");
  EXPECT_FALSE(chooser->isVisible());
  EXPECT_EQ(session->journal, (Texts{"folder " + night, "load frame c.fts"}));
  EXPECT_EQ(session->dataFolder, night);
  EXPECT_EQ(session->slot[slots::frame].fileName, "c.fts");
  EXPECT_EQ(platform.busyCount, 1);
  EXPECT_TRUE(platform.messages.empty());

  // The next one begins there, and needs no step to it.
  Open(choosers::loadData, "frame", {}, 2);
  EXPECT_EQ(Name(), "a.fits");
  DoubleClick("File1", "a.fits");
  EXPECT_FALSE(chooser->isVisible());
  EXPECT_EQ(session->journal.back(), "load frame a.fits");
  EXPECT_EQ(session->journal.size(), 3u);
}

TEST_F(FileChooserTest, PerformsTheStepThatItWasOpenedFor) {
  const struct {
    const ChooserKind& kind;
    const char* what;
    const char* option;
    std::string line;
  } cases[] = {
      {choosers::loadData, "frame", nullptr, "load frame x.y"},
      {choosers::loadData, "dao", nullptr, "load dao x.y"},
      {choosers::loadData, "arc2", nullptr, "load arc2 x.y"},
      {choosers::loadMask, "mask", nullptr, "load mask x.y"},
      {choosers::loadTable, "table", nullptr, "load table x.y"},
      {choosers::saveData, "object", nullptr, "save object x.y -32"},
      {choosers::saveData, "spectrum", "Option1(0)", "save spectrum x.y 16"},
      {choosers::saveData, "frame", "Option1(2)", "save frame x.y 32"},
      {choosers::saveMask, "arc2", nullptr, "save mask arc2 x.y"},
      {choosers::saveSpectrumText, "", "Option1", "export spectrum x.y"},
      {choosers::saveSpectrumText, "", "Option2", "export arc1 x.y"},
      {choosers::saveSpectrumText, "", "Option3", "export arc2 x.y"},
      {choosers::saveSpectrumText, "", "Option4", "export object x.y"},
      {choosers::saveFrameText, "frame", nullptr, "export frame x.y"},
  };
  for (const auto& c : cases) {
    for (Slot& slot : session->slot)
      slot.fileName.clear();
    Open(c.kind, c.what);
    Type("x.y");
    if (c.option != nullptr)
      Press(c.option);
    // Another window may be used meanwhile.
    session->currentSlot = slots::frame;
    Press("Command1");
    // There is nothing to load or save: what counts is what was tried.
    EXPECT_EQ(session->journal.back().substr(0, c.line.size() + 14), "# refused: " + c.line + "  #");
    EXPECT_EQ(platform.TakeMessages().size(), 1u) << c.line;
    EXPECT_FALSE(chooser->isVisible());
  }
}

TEST_F(FileChooserTest, StoresItsPlaceAndNothingElseWhenItIsClosed) {
  const std::function<void()> ways[] = {
      [&] { Press("Command2"); },
      [&] { Key("Text1", Qt::Key_Escape); },
      [&] { Key("Dir1", Qt::Key_Escape); },
      [&] { Key("Command2", Qt::Key_Return); },
      [&] { chooser->close(); },
      [&] { Press("Command1"); },
  };
  int moved = 0;
  for (const auto& close : ways) {
    Settings expected = *session;
    Open(choosers::loadTable, "table");
    DoubleClick("Dir1", "night");
    Choose(2);
    Type("other.txt");
    chooser->move(PixelsOf(1500 + 150 * ++moved), PixelsOf(3000));
    EXPECT_EQ(SettingsText(*session), SettingsText(expected));

    const std::string before = session->dataFolder;
    close();
    expected.loadWLtable = {static_cast<int16_t>(1500 + 150 * moved), 3000};
    EXPECT_EQ(SettingsText(*session), SettingsText(expected)) << moved;
    EXPECT_FALSE(chooser->isVisible()) << moved;
    if (moved < 6) {
      EXPECT_EQ(session->dataFolder, before);
      EXPECT_TRUE(session->journal.empty());
    }
  }
  session->dataFolder = folder.path();
  Open(choosers::loadTable, "table");
  EXPECT_EQ(chooser->pos(), QPoint(PixelsOf(2400), PixelsOf(3000)));
}

TEST_F(FileChooserTest, ListsTheFilesOfTheTypeAndKeepsTheName) {
  Open(choosers::loadData, "frame");
  DoubleClick("Dir1", "night");
  const Texts expected[] = {{"B.FTS", "c.fts"}, {}, {"a.fits"}, {"a.fits", "B.FTS", "c.fts"}};
  for (int pattern : {1, 2, 3, 0}) {
    Choose(pattern);
    EXPECT_EQ(Rows("File1"), expected[pattern]) << pattern;
    EXPECT_EQ(Name(), "B.FTS");
  }
  DoubleClick("Dir1", QString::fromStdString(LeafName(session->dataFolder)));
  DoubleClick("Dir1", "empty");
  EXPECT_EQ(Rows("File1"), Texts{});
  EXPECT_EQ(Name(), "");
}

TEST_F(FileChooserTest, LeavesAFileOfAnyTypeToTheReader) {
  WriteFile(folder.File("notes"), std::string(5000, 'x'));
  Open(choosers::loadData, "frame", {}, 3);
  Click("File1", "notes");
  Press("Command1");
  EXPECT_EQ(platform.TakeMessages(), Texts{"This is not a fits file!  Please try again."});
}

TEST_F(FileChooserTest, KeepsTheBytesOfANameThatIsNoUtf8) {
  const std::string name = "\xE9toile.fts";
  fs::copy(folder.File("star.fts"), folder.File(name));
  const std::function<void()> ways[] = {[&] { Click("File1", "étoile.fts"); },
                                        [&] { In<QLineEdit>("Text1")->setText("étoile.fts"); }};
  for (const auto& choose : ways) {
    Open(choosers::loadData, "frame");
    choose();
    Choose(1);  // where it is not listed
    Press("Command1");
    EXPECT_EQ(platform.TakeMessages(), Texts{});
    EXPECT_EQ(session->slot[slots::frame].fileName, name);
  }
}

TEST_F(FileChooserTest, GoesByTheKeyboard) {
  Open(choosers::loadData, "frame", "none.fts");
  DoubleClick("Dir1", "night");
  Type("typed.fts");
  In<QWidget>("File1")->setFocus();
  EXPECT_EQ(Name(), "typed.fts");
  Key("File1", Qt::Key_Down);
  EXPECT_EQ(Name(), "B.FTS");
  Key("File1", Qt::Key_Down);
  EXPECT_EQ(Name(), "c.fts");

  Key("Dir1", Qt::Key_Backspace);
  EXPECT_EQ(FolderShown(), session->dataFolder);
  EXPECT_EQ(Name(), "star.fts");
  Key("Dir1", Qt::Key_Down);
  Key("Dir1", Qt::Key_Down);
  EXPECT_EQ(FolderShown(), session->dataFolder);
  Key("Dir1", Qt::Key_Return);
  EXPECT_EQ(FolderShown(), Here("night"));
  EXPECT_TRUE(chooser->isVisible());

  for (const char* control : {"Text1", "File1", "Combo1", "Drive1", "Command1"}) {
    Open(choosers::loadData, "frame");
    Key(control, Qt::Key_Return);
    EXPECT_FALSE(chooser->isVisible()) << control;
    EXPECT_EQ(session->journal.back(), "load frame star.fts") << control;
  }
}

TEST_F(FileChooserTest, ReachesTheControlsInTheirOrder) {
  Open(choosers::saveData, "frame", "new.fts");
  EXPECT_EQ(In<QLineEdit>("Text1")->selectedText(), "new.fts");
  for (const char* next : {"Text1", "File1", "Combo1", "Dir1", "Drive1", "Option1", "Command1", "Command2"}) {
    ASSERT_NE(chooser->focusWidget(), nullptr);
    EXPECT_TRUE(chooser->focusWidget()->objectName().startsWith(next)) << next;
    QTest::keyClick(chooser->focusWidget(), Qt::Key_Tab);
  }
  EXPECT_EQ(Name(), "new.fts");
}

TEST_F(FileChooserTest, SaysThatAFolderIsGoneAndStaysOpen) {
  Open(choosers::loadData, "frame");
  fs::remove_all(folder.File("empty"));
  DoubleClick("Dir1", "empty");
  EXPECT_EQ(platform.TakeMessages(), Texts{pathNotFound});
  EXPECT_EQ(FolderShown(), session->dataFolder);
  EXPECT_EQ(Name(), "star.fts");

  DoubleClick("Dir1", "night");
  fs::remove_all(folder.File("night"));
  Press("Command1");
  EXPECT_EQ(platform.TakeMessages(), Texts{pathNotFound});
  EXPECT_TRUE(chooser->isVisible());
  EXPECT_TRUE(session->journal.empty());

  Key("Text1", Qt::Key_F5);
  EXPECT_EQ(platform.TakeMessages(), Texts{pathNotFound});
  EXPECT_EQ(Rows("File1"), Texts{});
  EXPECT_EQ(Name(), "B.FTS");

  // A data folder that is gone opens all the same, with a way out.
  chooser->close();
  session->dataFolder = Here("night");
  Open(choosers::loadData, "frame");
  EXPECT_EQ(platform.TakeMessages(), Texts{pathNotFound});
  EXPECT_EQ(Name(), "");
  Key("Dir1", Qt::Key_Backspace);
  EXPECT_EQ(Name(), "star.fts");
}

TEST_F(FileChooserTest, SetsThePixelTypeOfItsSlotAtOnce) {
  session->slot[slots::object].savePixelType = 16;
  Open(choosers::saveData, "object", "x.fts");
  session->currentSlot = slots::frame;
  EXPECT_EQ(session->slot[slots::object].savePixelType, -32);
  EXPECT_TRUE(In<QRadioButton>("Option1(3)")->isChecked());
  const int types[] = {16, 17, 32, -32, -64};
  for (int i = 0; i < 5; ++i) {
    Press(("Option1(" + std::to_string(i) + ")").c_str());
    EXPECT_EQ(session->slot[slots::object].savePixelType, types[i]);
  }
  Open(choosers::saveData, "object", "x.fts");
  EXPECT_EQ(session->slot[slots::object].savePixelType, -32);
  EXPECT_EQ(session->slot[slots::frame].savePixelType, 0);
}

TEST_F(FileChooserTest, ExportsTheSlotOfItsButton) {
  const struct {
    int slot;
    const char* button;
  } cases[] = {{3, "Option1"}, {1, "Option2"}, {2, "Option3"}, {4, "Option4"}};
  for (const auto& c : cases) {
    session->currentSlot = c.slot;
    Open(choosers::saveSpectrumText, "");
    EXPECT_TRUE(In<QRadioButton>(c.button)->isChecked()) << c.button;
    EXPECT_EQ(session->currentSlot, c.slot);
  }
  session->baseName = "star";
  for (const auto& c : cases)
    session->slot[c.slot].fileName = "slot" + std::to_string(c.slot) + ".fts";
  session->currentSlot = 1;
  Open(choosers::saveSpectrumText, "", SpectrumTextName(*session, 1));
  for (const auto& c : cases) {
    Press(c.button);
    EXPECT_EQ(session->currentSlot, c.slot);
    EXPECT_EQ(Name(), c.slot == 3 ? "star_1D.txt" : "slot" + std::to_string(c.slot) + ".txt");
  }
  Type("mine.txt");
  Press("Option2");
  EXPECT_EQ(Name(), "mine.txt") << "a name that was typed stays";
  // The frame is none of them.
  session->currentSlot = slots::frame;
  Open(choosers::saveSpectrumText, "", "new.txt");
  Press("Command1");
  EXPECT_EQ(platform.TakeMessages(), Texts{"Please select a spectrum for save."});
  EXPECT_TRUE(chooser->isVisible());
  EXPECT_FALSE(fs::exists(folder.File("new.txt")));
}

TEST_F(FileChooserTest, AsksForTheNameOfASaveAndKeepsTheFolder) {
  Open(choosers::saveData, "frame");
  DoubleClick("Dir1", "empty");
  const std::string empty = Here("empty");
  chooser->move(PixelsOf(1200), PixelsOf(1500));
  Press("Command1");
  EXPECT_EQ(platform.TakeMessages(), Texts{"Please select a filename for save."});
  EXPECT_TRUE(chooser->isVisible());
  EXPECT_EQ(session->saveDatafiles.left, 1200);
  EXPECT_EQ(session->dataFolder, empty);
  EXPECT_EQ(session->journal, Texts{"folder " + empty});
}

TEST_F(FileChooserTest, SaysThatAFileWillBeReplaced) {
  constexpr const char* replaced = "This file exists and will be replaced.";
  Open(choosers::saveData, "frame", "new.fts");
  const QRect listBefore = In<QWidget>("File1")->geometry();
  const struct {
    const char *name, *note;
  } cases[] = {{"new.fts", ""},
               {"star.fts", replaced},
               {"night", ""},
               {"night/c.fts", replaced},
               {"night/none.fts", ""}};
  for (const auto& c : cases) {
    Type(c.name);
    EXPECT_EQ(In<QLabel>("labelExists")->text(), c.note) << c.name;
    EXPECT_EQ(In<QWidget>("File1")->geometry(), listBefore);
  }
  Type("c.fts");
  DoubleClick("Dir1", "night");
  Type("c.fts");
  EXPECT_EQ(In<QLabel>("labelExists")->text(), replaced);
  Type("star.fts");
  EXPECT_EQ(In<QLabel>("labelExists")->text(), "");
}

TEST_F(FileChooserTest, ReadsTheFolderAgainWithoutTouchingTheName) {
  Open(choosers::loadData, "frame");
  Type("typed");
  WriteFile(folder.File("first.fts"), "");
  fs::create_directory(folder.File("another"));
  Key("Text1", Qt::Key_F5);
  EXPECT_EQ(Rows("File1"), (Texts{"first.fts", "star.fts"}));
  EXPECT_EQ(Rows("Dir1").end()[-3], "another");
  EXPECT_EQ(Name(), "typed");

  fs::remove(folder.File("first.fts"));
  QWidget other;
  other.show();
  other.activateWindow();
  ASSERT_TRUE(QTest::qWaitForWindowActive(&other));
  chooser->activateWindow();
  ASSERT_TRUE(QTest::qWaitForWindowActive(chooser.get()));
  EXPECT_EQ(Rows("File1"), Texts{"star.fts"});
  EXPECT_EQ(Name(), "typed");
}

TEST_F(FileChooserTest, HoldsAllItsControlsAtItsLeastSize) {
  const QFont usual = QApplication::font();
  QFont large = usual;
  large.setPointSizeF(usual.pointSizeF() * 1.5);
  for (const QFont& font : {usual, large}) {
    QApplication::setFont(font);
    for (const ChooserKind* kind : kinds) {
      Open(*kind, "");
      chooser->resize(PixelsOf(2000), PixelsOf(3000));
      const QSize least(PixelsOf(3540), PixelsOf(6525)), snapped = chooser->frameGeometry().size();
      // The tests' screen has no room for all that large text asks for; the window is wider then.
      EXPECT_EQ(font == usual ? snapped : snapped.boundedTo(least), least) << kind->name;
      const QSize needed = chooser->minimumSizeHint();
      EXPECT_LE(needed.width(), chooser->width()) << kind->name;
      EXPECT_LE(needed.height(), chooser->height()) << kind->name;
    }
  }
  QApplication::setFont(usual);
}

TEST_F(FileChooserTest, FollowsTheFolderWithTheDrive) {
  Open(choosers::loadData, "frame");
  auto* const drives = In<QComboBox>("Drive1");
  const int root = drives->findText("/");
  ASSERT_GE(root, 0);
  Q_EMIT drives->activated(root);
  EXPECT_EQ(FolderShown(), "/");
  EXPECT_EQ(drives->currentText(), "/");
  EXPECT_EQ(Rows("Dir1").front(), "/");
  Key("Dir1", Qt::Key_Backspace);
  EXPECT_EQ(FolderShown(), "/");
}

TEST(Drives, AreTheHomeFolderAndWhatHoldsFiles) {
  const std::vector<Mount> mounts = {
      {"/proc", "proc"}, {"/run/media/me/disk", "vfat"}, {"/", "overlay"},         {"/dev/shm", "tmpfs"},
      {"/data", "nfs4"}, {"/snap/x", "squashfs"},        {"/run/user/1", "tmpfs"}, {"/tmp", "tmpfs"},
      {"/data", "nfs4"}, {"/var/lib/box", "overlay"},    {"/home/me", "ext4"},
  };
  const std::vector<Drive> drives = DrivesOf("/home/me", mounts);
  Texts names;
  for (const Drive& drive : drives)
    names.push_back(drive.name);
  EXPECT_EQ(names, (Texts{"Home (/home/me)", "/", "/data", "/run/media/me/disk", "/tmp"}));

  const struct {
    const char *folder, *drive;
  } cases[] = {{"/", "/"},
               {"/home/me/night", "/home/me"},
               {"/home/me", "/home/me"},
               {"/home/meteor", "/"},
               {"/data/1/2", "/data"}};
  for (const auto& c : cases)
    EXPECT_EQ(drives[DriveHolding(drives, c.folder)].folder, c.drive) << c.folder;
}

}  // namespace
}  // namespace halmek::test
