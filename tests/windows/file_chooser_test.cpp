// File choosers, by their controls.
#include "dialogs/file_chooser.h"

#include <gtest/gtest.h>

#include <QComboBox>
#include <QListWidget>
#include <QRadioButton>
#include <filesystem>
#include <tuple>

#include "platform/text.h"
#include "platform/twips.h"
#include "windows/window_test.h"

namespace halmek::test {
namespace {

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
  const std::string night = Here("night");
  QWidget mainWindow;
  desk.SetMainWindow(&mainWindow);
  Open(choosers::loadData, "frame");
  DoubleClick("Dir1", "night");
  EXPECT_EQ(FolderShown() + Name(), night + "B.FTS");
  Click("File1", "c.fts");
  Press("Command1");
  EXPECT_EQ(session->slot[slots::frame].fileName, "c.fts");
  EXPECT_EQ(platform.busyCount, 1);
  // The next one begins there, and needs no step to it.
  Open(choosers::loadData, "frame", {}, 2);
  EXPECT_EQ(Name(), "a.fits");
  DoubleClick("File1", "a.fits");
  EXPECT_FALSE(chooser->isVisible());
  EXPECT_EQ(session->journal, (Texts{"folder " + night, "load frame c.fts", "load frame a.fits"}));
}

TEST_F(FileChooserTest, ATypedNameIsTakenAtTheFirstOk) {
  WriteFrame("other.fts", 5, 4, [](int, int) { return 7; });
  desk.Do(nullptr, steps::Load{"frame", "star.fts"});
  const std::function<void()> ways[] = {[&] { Press("Command1"); }, [&] { Key("Text1", Qt::Key_Return); }};
  for (const ChooserKind* kind : {&choosers::saveData, &choosers::loadData})
    for (const std::string name : {"other.fts", "new.fts"})
      for (const auto& accept : ways) {
        SCOPED_TRACE(kind->name + name);
        fs::remove(folder.File("new.fts"));
        Open(*kind, "frame", "star.fts");
        Click("File1", "star.fts");
        Type(QString::fromStdString(name));
        accept();
        EXPECT_FALSE(chooser->isVisible());
        const std::string step = (kind->saves ? "save frame " : "load frame ") + name;
        EXPECT_NE(session->journal.back().find(step), std::string::npos) << session->journal.back();
        EXPECT_EQ(platform.TakeMessages().size(), fs::exists(folder.File(name)) ? 0u : 1u);
      }
}

TEST_F(FileChooserTest, SavesWithTheTypeChosenWhateverOtherWindowsDo) {
  const std::pair<const char*, const char*> cases[] = {{"Option1(1)", "17"}, {nullptr, "-32"}};
  for (const auto& [option, type] : cases) {
    session->slot[slots::object].fileName.clear();
    Open(choosers::saveData, "object", "x.y");
    if (option != nullptr)
      Press(option);
    session->currentSlot = slots::frame;
    Press("Command1");
    // There is nothing to save: what counts is what was tried.
    EXPECT_TRUE(
        session->journal.back().starts_with(std::string("# refused: save object x.y ") + type + "  #"));
    EXPECT_EQ(platform.TakeMessages().size(), 1u) << type;
  }
}

TEST_F(FileChooserTest, StoresItsPlaceAndNothingElseWhenItIsClosed) {
  const std::function<void()> ways[] = {[&] { Key("Dir1", Qt::Key_Escape); }, [&] { chooser->close(); },
                                        [&] { Key("Command2", Qt::Key_Return); }};
  Settings expected = *session;
  expected.loadWLtable = {1500, 3000};
  for (const auto& close : ways) {
    Open(choosers::loadTable, "table");
    DoubleClick("Dir1", "night");
    Type("other.txt");
    expected.loadWLtable.left += 150;
    chooser->move(PixelsOf(expected.loadWLtable.left), PixelsOf(3000));
    close();
    EXPECT_EQ(SettingsText(*session), SettingsText(expected));
    EXPECT_TRUE(!chooser->isVisible() && session->journal.empty());
  }
  Open(choosers::loadTable, "table");
  EXPECT_EQ(chooser->pos(), QPoint(PixelsOf(1950), PixelsOf(3000)));
}

TEST_F(FileChooserTest, ListsTheFilesOfTheTypeAndKeepsTheName) {
  Open(choosers::loadData, "frame");
  DoubleClick("Dir1", "night");
  Choose(2);
  EXPECT_EQ(Rows("File1"), Texts{"a.fits"});
  EXPECT_EQ(Name(), "B.FTS");
  Key("Dir1", Qt::Key_Backspace);
  DoubleClick("Dir1", "empty");
  EXPECT_EQ(Name(), "");
}

TEST_F(FileChooserTest, KeepsTheBytesOfANameThatCannotBeShownTruly) {
  for (const auto& [name, shown] :
       {std::pair{"\xE9toile.fts", "étoile.fts"}, {"stf.\u202Eexe.fts", "stf.\\u202Eexe.fts"}}) {
    fs::copy(folder.File("star.fts"), folder.File(name));
    for (const bool isTyped : {false, true}) {
      Open(choosers::loadData, "frame");
      if (isTyped)
        In<QLineEdit>("Text1")->setText(shown);
      else
        Click("File1", shown);
      Choose(1);  // where it is not listed
      Press("Command1");
      EXPECT_EQ(session->slot[slots::frame].fileName, name);
    }
  }
}

TEST_F(FileChooserTest, GoesByTheKeyboard) {
  Open(choosers::loadData, "frame", "none.fts");
  EXPECT_EQ(In<QLineEdit>("Text1")->selectedText(), "none.fts");
  for (const char* next : {"Text1", "File1", "Combo1", "Dir1", "Drive1", "Command1", "Command2"}) {
    EXPECT_EQ(chooser->focusWidget()->objectName(), next);
    QTest::keyClick(chooser->focusWidget(), Qt::Key_Tab);
  }
  for (const auto key : {Qt::Key_Down, Qt::Key_Down})
    Key("Dir1", key);
  EXPECT_EQ(FolderShown(), session->dataFolder) << "only chosen";
  Key("Dir1", Qt::Key_Return);
  EXPECT_EQ(FolderShown(), Here("night"));
  Type("typed.fts");
  In<QWidget>("File1")->setFocus();
  EXPECT_EQ(Name(), "typed.fts");
  for (const char* next : {"B.FTS", "c.fts"}) {
    Key("File1", Qt::Key_Down);
    EXPECT_EQ(Name(), next);
  }
  Key("Dir1", Qt::Key_Backspace);
  EXPECT_EQ(FolderShown() + Name(), session->dataFolder + "star.fts");
  for (const char* control : {"File1", "Combo1", "Drive1", "Command1"}) {
    Open(choosers::loadData, "frame");
    Key(control, Qt::Key_Return);
    EXPECT_FALSE(chooser->isVisible()) << control;
    EXPECT_EQ(session->journal.back(), "load frame star.fts") << control;
  }
}

TEST_F(FileChooserTest, SaysThatAFolderIsGoneAndStaysOpen) {
  const auto expectGone = [&](const char* name) {
    EXPECT_EQ(platform.TakeMessages(), Texts{"Error: 76  Error: Path not found."});
    EXPECT_EQ(Name(), name);
  };
  Open(choosers::loadData, "frame");
  DoubleClick("Dir1", "night");
  fs::remove_all(folder.File("night"));
  Press("Command1");
  expectGone("B.FTS");
  EXPECT_TRUE(chooser->isVisible() && session->journal.empty());
  Key("Text1", Qt::Key_F5);
  expectGone("B.FTS");
  EXPECT_EQ(Rows("File1"), Texts{});

  // A data folder that is gone opens all the same, with a way out.
  session->dataFolder = Here("night");
  Open(choosers::loadData, "frame");
  expectGone("");
  Key("Dir1", Qt::Key_Backspace);
  EXPECT_EQ(Name(), "star.fts");
}

TEST_F(FileChooserTest, ExportsTheSlotOfItsButton) {
  session->baseName = "star";
  session->slot[slots::spectrum].fileName = "star.fts";
  session->slot[slots::arc2].fileName = "neon.fts";
  session->currentSlot = slots::spectrum;
  Open(choosers::saveSpectrumText, "", "star_1D.txt");
  EXPECT_TRUE(In<QRadioButton>("Option1")->isChecked());
  Press("Option3");
  EXPECT_EQ(session->currentSlot, slots::arc2);
  EXPECT_EQ(Name(), "neon.txt");
  Type("mine.txt");
  Press("Option2");
  EXPECT_EQ(Name(), "mine.txt") << "a name that was typed stays";
  Press("Command1");
  EXPECT_NE(session->journal.back().find("export arc1 mine.txt"), std::string::npos);
  // The frame is none of them.
  session->currentSlot = slots::frame;
  Open(choosers::saveSpectrumText, "", "new.txt");
  Press("Command1");
  EXPECT_EQ(platform.TakeMessages().back(), "Please select a spectrum for save.");
}

TEST_F(FileChooserTest, AsksForTheNameOfASaveAndKeepsTheFolder) {
  const std::string empty = Here("empty");
  Open(choosers::saveData, "frame");
  DoubleClick("Dir1", "empty");
  Press("Command1");
  EXPECT_EQ(platform.TakeMessages(), Texts{"Please select a filename for save."});
  EXPECT_TRUE(chooser->isVisible());
  EXPECT_EQ(session->dataFolder, empty);
  EXPECT_EQ(session->journal, Texts{"folder " + empty});
}

TEST_F(FileChooserTest, SaysThatAFileExists) {
  Open(choosers::saveData, "frame", "new.fts");
  const std::pair<const char*, bool> names[] = {
      {"star.fts", true}, {"new.fts", false}, {"night/c.fts", true}, {"night", false}};
  for (const auto& [name, exists] : names) {
    Type(name);
    EXPECT_EQ(In<QLabel>("labelExists")->text(), exists ? "This file exists; OK asks about it." : "") << name;
  }
}

TEST_F(FileChooserTest, ReadsTheFolderAgainWithoutTouchingTheName) {
  Open(choosers::loadData, "frame");
  Type("typed");
  WriteFile(folder.File("first.fts"), "");
  fs::create_directory(folder.File("another"));
  Key("Text1", Qt::Key_F5);
  EXPECT_EQ(Rows("File1"), (Texts{"first.fts", "star.fts"}));
  EXPECT_EQ(Rows("Dir1").end()[-3], "another");

  fs::remove(folder.File("first.fts"));
  QWidget other;
  other.show();
  Activate(&other);
  Activate(chooser.get());
  EXPECT_EQ(Rows("File1"), Texts{"star.fts"});
  EXPECT_EQ(Name(), "typed");
}

TEST_F(FileChooserTest, FollowsTheFolderWithTheDrive) {
  Open(choosers::loadData, "frame");
  auto* const drives = In<QComboBox>("Drive1");
  Q_EMIT drives->activated(drives->findText("/"));
  EXPECT_EQ(FolderShown() + Typed(drives->currentText()), "//");
  Key("Dir1", Qt::Key_Backspace);
  EXPECT_EQ(FolderShown(), "/");
}

TEST(Drives, AreTheHomeFolderAndWhatHoldsFiles) {
  const std::vector<Mount> mounts = {{"/run/media/me/disk", "vfat"}, {"/", "overlay"},  {"/proc", "proc"},
                                     {"/run/user/1", "tmpfs"},       {"/tmp", "tmpfs"}, {"/data", "nfs4"},
                                     {"/home/me", "ext4"},           {"/data", "nfs4"}};
  const std::vector<Drive> drives = DrivesOf("/home/me", mounts);
  std::string names;
  for (const Drive& drive : drives)
    names += drive.name + " ";
  EXPECT_EQ(names, "Home (/home/me) / /data /run/media/me/disk /tmp ");
  const std::pair<const char*, const char*> places[] = {
      {"/", "/"}, {"/home/me/night", "/home/me"}, {"/home/meteor", "/"}, {"/data/1/2", "/data"}};
  for (const auto& [place, drive] : places)
    EXPECT_EQ(drives[DriveHolding(drives, place)].folder, drive) << place;
}

}  // namespace
}  // namespace halmek::test
