// File choosers, by their controls.
#include "dialogs/file_chooser.h"

#include <gtest/gtest.h>

#include <QComboBox>
#include <QListWidget>
#include <QRadioButton>
#include <filesystem>

#include "platform/text.h"
#include "platform/twips.h"
#include "windows/window_test.h"

namespace halmek::test {
namespace {

constexpr const char* pathNotFound = "Error: 76  Error: Path not found.";

// A chooser in a folder with the frame star.fts and two folders: "empty" and "night", which holds B.FTS,
// c.fts and a.fits.
class FileChooserTest : public WindowTest {
 protected:
  std::unique_ptr<FileChooser> chooser;

  FileChooserTest() {
    session->dataFolder = fs::canonical(folder.path()).string();
    fs::create_directory(folder.File("empty"));
    fs::create_directory(folder.File("night"));
    WriteFrame("star.fts", 5, 4, [](int column, int row) { return column + row; });
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
  void Type(const QString& text) { WindowTest::Type(chooser.get(), "Text1", text); }
  void Press(const char* name) { WindowTest::Press(chooser.get(), name); }
  void Key(const char* control, Qt::Key key) { QTest::keyClick(In<QWidget>(control), key); }

  // OK is refused by this message.
  void ExpectRefused(const char* message) {
    Press("Command1");
    EXPECT_EQ(platform.TakeMessages(), Texts{message});
    EXPECT_TRUE(chooser->isVisible());
  }
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
    const char *what, *option;
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
  platform.TakeMessages();
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

TEST_F(FileChooserTest, KeepsTheBytesOfANameThatCannotBeShownTruly) {
  for (const auto& file :
       {std::pair{"\xE9toile.fts", "étoile.fts"}, {"stf.\u202Eexe.fts", "stf.\\u202Eexe.fts"}}) {
    fs::copy(folder.File("star.fts"), folder.File(file.first));
    const std::function<void()> ways[] = {[&] { Click("File1", file.second); },
                                          [&] { In<QLineEdit>("Text1")->setText(file.second); }};
    for (const auto& choose : ways) {
      Open(choosers::loadData, "frame");
      choose();
      Choose(1);  // where it is not listed
      Press("Command1");
      EXPECT_EQ(session->slot[slots::frame].fileName, file.first);
    }
  }
}

TEST_F(FileChooserTest, GoesByTheKeyboard) {
  Open(choosers::loadData, "frame", "none.fts");
  DoubleClick("Dir1", "night");
  Type("typed.fts");
  In<QWidget>("File1")->setFocus();
  EXPECT_EQ(Name(), "typed.fts");
  for (const char* next : {"B.FTS", "c.fts"}) {
    Key("File1", Qt::Key_Down);
    EXPECT_EQ(Name(), next);
  }

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
  ExpectRefused(pathNotFound);
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
  for (int i = 0; int type : {16, 17, 32, -32, -64}) {
    Press(("Option1(" + std::to_string(i++) + ")").c_str());
    EXPECT_EQ(session->slot[slots::object].savePixelType, type);
  }
  EXPECT_EQ(session->slot[slots::frame].savePixelType, 0);
}

TEST_F(FileChooserTest, ExportsTheSlotOfItsButton) {
  const std::pair<int, const char*> cases[] = {
      {3, "Option1"}, {1, "Option2"}, {2, "Option3"}, {4, "Option4"}};
  session->baseName = "star";
  for (const auto& [slot, button] : cases) {
    session->slot[slot].fileName = "slot" + std::to_string(slot) + ".fts";
    session->currentSlot = slot;
    Open(choosers::saveSpectrumText, "");
    EXPECT_TRUE(In<QRadioButton>(button)->isChecked()) << button;
  }
  session->currentSlot = 1;
  Open(choosers::saveSpectrumText, "", SpectrumTextName(*session, 1));
  for (const auto& [slot, button] : cases) {
    Press(button);
    EXPECT_EQ(session->currentSlot, slot);
    EXPECT_EQ(Name(), slot == 3 ? "star_1D.txt" : "slot" + std::to_string(slot) + ".txt");
  }
  Type("mine.txt");
  Press("Option2");
  EXPECT_EQ(Name(), "mine.txt") << "a name that was typed stays";
  // The frame is none of them.
  session->currentSlot = slots::frame;
  Open(choosers::saveSpectrumText, "", "new.txt");
  ExpectRefused("Please select a spectrum for save.");
  EXPECT_FALSE(fs::exists(folder.File("new.txt")));
}

TEST_F(FileChooserTest, AsksForTheNameOfASaveAndKeepsTheFolder) {
  Open(choosers::saveData, "frame");
  DoubleClick("Dir1", "empty");
  const std::string empty = Here("empty");
  chooser->move(PixelsOf(1200), PixelsOf(1500));
  ExpectRefused("Please select a filename for save.");
  EXPECT_EQ(session->saveDatafiles.left, 1200);
  EXPECT_EQ(session->dataFolder, empty);
  EXPECT_EQ(session->journal, Texts{"folder " + empty});
}

TEST_F(FileChooserTest, SaysThatAFileExists) {
  constexpr const char* replaced = "This file exists; OK asks about it.";
  Open(choosers::saveData, "frame", "new.fts");
  const QRect listBefore = In<QWidget>("File1")->geometry();
  const auto expectNote = [&](const QString& name, const char* note) {
    Type(name);
    EXPECT_EQ(In<QLabel>("labelExists")->text(), note) << name.toStdString();
    EXPECT_EQ(In<QWidget>("File1")->geometry(), listBefore);
  };
  expectNote("new.fts", "");
  expectNote("star.fts", replaced);
  expectNote("night", "");
  expectNote("night/c.fts", replaced);
  expectNote("c.fts", "");
  DoubleClick("Dir1", "night");
  expectNote("c.fts", replaced);
  expectNote("star.fts", "");
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
  Activate(&other);
  Activate(chooser.get());
  EXPECT_EQ(Rows("File1"), Texts{"star.fts"});
  EXPECT_EQ(Name(), "typed");
}

TEST_F(FileChooserTest, HoldsAllItsControlsAtItsLeastSize) {
  for (const double larger : {1.0, 1.5}) {
    const LargerText text(larger);
    for (const ChooserKind* kind :
         {&choosers::loadData, &choosers::saveData, &choosers::loadMask, &choosers::saveMask,
          &choosers::loadTable, &choosers::saveSpectrumText, &choosers::saveFrameText}) {
      Open(*kind, "");
      chooser->resize(PixelsOf(2000), PixelsOf(3000));
      const QSize least(PixelsOf(3540), PixelsOf(6525)), snapped = chooser->frameGeometry().size();
      // The tests' screen has no room for all that large text asks for; the window is wider then.
      EXPECT_EQ(larger == 1 ? snapped : snapped.boundedTo(least), least) << kind->name;
      const QSize needed = chooser->minimumSizeHint();
      EXPECT_EQ(needed.boundedTo(chooser->size()), needed) << kind->name;
    }
  }
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

  const std::pair<const char*, const char*> cases[] = {{"/", "/"},
                                                       {"/home/me/night", "/home/me"},
                                                       {"/home/me", "/home/me"},
                                                       {"/home/meteor", "/"},
                                                       {"/data/1/2", "/data"}};
  for (const auto& [place, drive] : cases)
    EXPECT_EQ(drives[DriveHolding(drives, place)].folder, drive) << place;
}

}  // namespace
}  // namespace halmek::test
