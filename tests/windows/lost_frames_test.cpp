// What must not happen at 3 a.m.: a file replaced that nobody meant, an extraction that nobody marked.
#include <gtest/gtest.h>

#include <QListWidget>
#include <cerrno>
#include <filesystem>
#include <functional>
#include <tuple>

#include "windows/part1_test.h"

namespace halmek::test {
namespace {

constexpr size_t replace = 0, cancel = 1;

class LostFramesTest : public Part1Test {
 protected:
  LostFramesTest() {
    LoadFrame(60, 60);
    WriteFrame("other.fts", 60, 60, [](int column, int row) { return 500 + column + row; });
  }
  std::string Name() { return BoxText(Window("frmSave_datafiles"), "Text1"); }
};

TEST_F(LostFramesTest, ASaveWindowClosesWhenOtherDataAreLoaded) {
  Trigger(main.get(), "mSaveAs");
  EXPECT_EQ(Name(), "star.fts");
  Load("nothing.fts");
  EXPECT_TRUE(IsOpen("frmSave_datafiles")) << "the frame is still the same";
  Load("other.fts");
  EXPECT_FALSE(IsOpen("frmSave_datafiles"));
  platform.TakeMessages();
}

TEST_F(LostFramesTest, AFileThatStandsFirstInAFolderIsReplacedOnlyOnPurpose) {
  fs::create_directory(folder.File("raw"));
  WriteFile(folder.File("raw/precious.fts"), "precious");
  Trigger(main.get(), "mSaveAs");
  auto* const folders = Find<QListWidget>(Window("frmSave_datafiles"), "Dir1");
  folders->setCurrentRow(folders->count() - 1);
  QTest::keyClick(folders, Qt::Key_Return);
  ASSERT_EQ(Name(), "precious.fts");
  for (const size_t answer : {cancel, replace}) {
    platform.answer = answer;
    Press(Window("frmSave_datafiles"), "Command1");
    EXPECT_EQ(platform.TakeAsked(), Texts{"Replace precious.fts?"});
    EXPECT_EQ(platform.lastAsked.usual, cancel);
    EXPECT_EQ(IsOpen("frmSave_datafiles"), answer == cancel);
    EXPECT_EQ(ReadFile(folder.File("raw/precious.fts")) == "precious", answer == cancel);
  }
}

TEST_F(LostFramesTest, WhatWouldBeReplacedIsNamedAndSparedByCancel) {
  WriteFile(folder.File("raw.png"), "precious");
  QWidget* const row = OpenRowPlot("30");
  const std::string lost = " What it holds would be lost.";
  const std::tuple<QWidget*, const char*, std::string, std::string> saves[] = {
      {main.get(), "mSave", "star.fts",
       "it is a frame of Halmek, 60 x 60, that is loaded as the frame." + lost},
      {row, "mSavePicture", "raw.png", "it is a file of 8 bytes, that Halmek did not write." + lost},
      {row, "mSavePicture", "raw.png", "it is a picture."},
      {main.get(), "mSaveRecipe", "raw.png", "it is a picture, which is another kind of file." + lost}};
  for (const auto& [window, action, name, detail] : saves) {
    SCOPED_TRACE(detail);
    const std::string before = ReadFile(folder.File(name));
    const size_t steps = session->journal.size();
    for (const size_t answer : {cancel, replace}) {
      EXPECT_TRUE(ReadFile(folder.File(name)) == before && session->journal.size() == steps);
      platform.fileToSave = folder.File(name);
      platform.answer = answer;
      Trigger(window, action);
      EXPECT_EQ(platform.TakeAsked(), Texts{"Replace " + name + "?"});
      EXPECT_EQ(platform.lastAsked.detail, detail);
      EXPECT_EQ(platform.lastAsked.usual, detail.ends_with(lost) ? cancel : replace);
    }
  }
  EXPECT_EQ(session->journal.back(), "save frame star.fts -32 replace");
  EXPECT_TRUE(ReadFile(folder.File("raw.png")).starts_with("# Steps performed by Halmek\n"));
}

TEST_F(LostFramesTest, TypingInTheListOfASaveWindowGoesToTheName) {
  const std::string star = ReadFile(folder.File("star.fts"));
  Trigger(main.get(), "mSaveAs");
  Activate(Window("frmSave_datafiles"));
  auto* const list = Find<QListWidget>(Window("frmSave_datafiles"), "File1");
  list->setFocus();
  QTest::keyClick(list, Qt::Key_S);
  QTest::keyClicks(QApplication::focusWidget(), "t.fts");
  EXPECT_EQ(Name(), "st.fts");
  QTest::keyClick(QApplication::focusWidget(), Qt::Key_Return);
  EXPECT_TRUE(fs::exists(folder.File("st.fts")));
  EXPECT_EQ(ReadFile(folder.File("star.fts")), star);
}

TEST_F(LostFramesTest, WorkThatIsNotSavedIsAskedForBeforeItIsLost) {
  desk.Do(main.get(), steps::Zap{30, 10, 12});
  WriteFile(folder.File("r.recipe"), "load frame other.fts\n");
  platform.fileToOpen = folder.File("r.recipe");
  const std::function<void()> ways[] = {[&] { main->close(); }, [&] { Trigger(main.get(), "mRunRecipe"); },
                                        [&] { Load("other.fts"); }};
  const auto expectAsked = [&](const std::function<void()>& act) {
    act();
    EXPECT_EQ(platform.TakeAsked(), Texts{"This is not saved and would be lost:"});
    EXPECT_EQ(platform.lastAsked.detail, "the changes of the frame star.fts");
    EXPECT_EQ(platform.lastAsked.usual, cancel);
  };
  platform.answer = cancel;
  for (const auto& act : ways) {
    expectAsked(act);
    EXPECT_TRUE(main->isVisible());
    EXPECT_EQ(DataName(session->slot[slots::frame]), "star.fts");
  }
  platform.answer = 0;
  expectAsked(ways[2]);
  EXPECT_EQ(DataName(session->slot[slots::frame]), "other.fts");
  main->close();
  EXPECT_FALSE(main->isVisible());
}

TEST_F(LostFramesTest, AnEveningThatWasCutOffIsOfferedAgain) {
  constexpr size_t replay = 0, discard = 1, notNow = 2;
  const std::string path = folder.File("session-1.recipe"),
                    steps = "folder " + folder.path() + "\nload frame other.fts\n";
  const std::tuple<size_t, std::string, const char*, Texts> cases[] = {
      {notNow, steps, "session-1.recipe", {}},
      {discard, steps, "", {}},
      {replay, steps, "", {"session-1.recipe: 2 steps done."}},
      {replay,
       steps + "crunch\n",
       "session-1.stopped",
       {"session-1.recipe:3: Hey, you need to set the aperture and fit the background first!"}}};
  for (const auto& [answer, recipe, kept, told] : cases) {
    Load("star.fts");
    WriteFile(path, recipe);
    platform.answer = answer;
    main->actions().OfferReplay({path, 1, "load frame other.fts"});
    EXPECT_EQ(platform.TakeAsked().size(), 1u);
    EXPECT_NE(platform.lastAsked.detail.find(path + "; the last is: load frame other.fts"),
              std::string::npos);
    EXPECT_EQ(platform.TakeMessages(), told);
    std::string left;
    for (const std::string& name : FilesIn(folder.path()))
      left += name.starts_with("session-") ? name : "";
    EXPECT_EQ(left, kept);
    EXPECT_EQ(DataName(session->slot[slots::frame]), answer == replay ? "other.fts" : "star.fts");
  }
}

TEST_F(LostFramesTest, AJournalThatCannotBeKeptIsSaidOnce) {
  JournalFile nowhere("/proc/nowhere", folder.path());
  desk.KeepJournal(nowhere);
  Load("star.fts");
  Load("star.fts");
  EXPECT_EQ(platform.TakeMessages(), Texts{"Error: 76  Error: Path not found."});
}

TEST_F(LostFramesTest, TheWheelChangesNoListInPassing) {
  SendWheel(Find<QComboBox>(main.get(), "Combo1"), 1);
  EXPECT_EQ(session->arcCount, 2);
}

TEST_F(LostFramesTest, AFullDiskIsSaidOfTheFileAndLosesNothing) {
  QWidget* const row = OpenRowPlot("30");
  const std::tuple<QWidget*, const char*, const char*> saves[] = {{main.get(), "mSave", "star.fts"},
                                                                  {main.get(), "mSaveRecipe", "old.recipe"},
                                                                  {row, "mSavePicture", "old.png"}};
  session->fileOperations.write = [](int, const void*, size_t) {
    errno = ENOSPC;
    return ssize_t{-1};
  };
  for (const auto& [window, action, file] : saves) {
    if (file[0] == 'o')
      WriteFile(folder.File(file), "old");
    const auto names = FilesIn(folder.path());
    const std::string before = ReadFile(folder.File(file));
    platform.fileToSave = folder.File(file);
    Trigger(window, action);
    EXPECT_NE(platform.TakeMessages().at(0).find("Error: Disk full."), std::string::npos) << file;
    EXPECT_NE(platform.detail.find(file), std::string::npos) << platform.detail;
    EXPECT_EQ(ReadFile(folder.File(file)), before);
    EXPECT_EQ(FilesIn(folder.path()), names);
  }
  main->close();
  EXPECT_EQ(platform.TakeMessages(), Texts{"Error: 61  Error: Disk full."});
  EXPECT_NE(platform.detail.find("Halmek8.ini"), std::string::npos) << platform.detail;
}

}  // namespace
}  // namespace halmek::test
