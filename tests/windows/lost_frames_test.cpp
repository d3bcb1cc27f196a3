// What must not happen at 3 a.m.: a file replaced that nobody meant, an extraction that nobody marked.
#include <gtest/gtest.h>

#include <QListWidget>
#include <cerrno>
#include <filesystem>
#include <functional>

#include "windows/part1_test.h"

namespace halmek::test {
namespace {

class LostFramesTest : public Part1Test {
 protected:
  LostFramesTest() {
    LoadFrame(60, 60);
    WriteFrame("other.fts", 60, 60, [](int column, int row) { return 500 + column + row; });
  }
  std::string Name() { return BoxText(Window("frmSave_datafiles"), "Text1"); }
  void Ok() { Press(Window("frmSave_datafiles"), "Command1"); }
};

TEST_F(LostFramesTest, AFailedLoadLendsItsNameToNothing) {
  WriteFile(folder.File("text.fts"), "no FITS file");
  const std::string other = ReadFile(folder.File("other.fts"));
  fs::remove(folder.File("star.fts"));
  for (const char* wrong : {"text.fts", "other.log"}) {
    Load(wrong);
    QWidget* const slice = OpenSlice();
    EXPECT_EQ(slice->windowTitle(), "Plot Column   File: star.fts   Object: Test star") << wrong;
    slice->close();
    Trigger(main.get(), "mSave");
    EXPECT_TRUE(fs::remove(folder.File("star.fts"))) << wrong;
  }
  EXPECT_EQ(ReadFile(folder.File("other.fts")), other);
  EXPECT_EQ(ReadFile(folder.File("text.fts")), "no FITS file");
  platform.TakeMessages();
}

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
  constexpr size_t replace = 0, cancel = 1;
  for (const size_t answer : {cancel, replace}) {
    platform.answer = answer;
    Ok();
    EXPECT_EQ(platform.TakeAsked(), Texts{"Replace precious.fts?"});
    EXPECT_EQ(platform.lastAsked.usual, cancel);
    EXPECT_EQ(IsOpen("frmSave_datafiles"), answer == cancel);
    EXPECT_EQ(ReadFile(folder.File("raw/precious.fts")) == "precious", answer == cancel);
  }
}

TEST_F(LostFramesTest, WhatWouldBeReplacedIsNamedAndSparedByCancel) {
  constexpr size_t replace = 0, cancel = 1;
  WriteFile(folder.File("raw.png"), "precious");
  QWidget* const row = OpenRowPlot("30");
  const std::string loaded = "it is a frame of Halmek, 60 x 60, that is loaded as the frame.",
                    foreign = "it is a file of 8 bytes, that Halmek did not write.",
                    lost = " What it holds would be lost.";
  const struct {
    QWidget* window;
    const char *action, *file;
    std::string detail;
    size_t usual;
  } saves[] = {{main.get(), "mSave", "star.fts", loaded + lost, cancel},
               {row, "mSavePicture", "raw.png", foreign + lost, cancel},
               {row, "mSavePicture", "raw.png", "it is a picture.", replace},
               {main.get(), "mSaveRecipe", "raw.png",
                "it is a picture, which is another kind of file." + lost, cancel},
               {main.get(), "mSaveRecipe", "raw.png", "it is a recipe of Halmek.", replace}};
  for (const auto& save : saves) {
    SCOPED_TRACE(save.detail);
    const std::string before = ReadFile(folder.File(save.file));
    const size_t steps = session->journal.size();
    for (const size_t answer : {cancel, replace}) {
      platform.fileToSave = folder.File(save.file);
      platform.answer = answer;
      Trigger(save.window, save.action);
      EXPECT_EQ(platform.TakeAsked(), Texts{"Replace " + std::string(save.file) + "?"});
      EXPECT_EQ(platform.lastAsked.detail, save.detail);
      EXPECT_EQ(platform.lastAsked.usual, save.usual);
      if (answer == cancel) {
        EXPECT_TRUE(ReadFile(folder.File(save.file)) == before && session->journal.size() == steps);
      }
    }
  }
  EXPECT_EQ(session->journal.back(), "save frame star.fts -32 replace");
  EXPECT_TRUE(ReadFile(folder.File("raw.png")).starts_with("# Steps performed by Halmek\n"));
}

TEST_F(LostFramesTest, TypingInTheListOfASaveWindowGoesToTheName) {
  const std::string star = ReadFile(folder.File("star.fts"));
  Trigger(main.get(), "mSaveAs");
  QWidget* const chooser = Window("frmSave_datafiles");
  Activate(chooser);
  auto* const list = Find<QListWidget>(chooser, "File1");
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
  const auto asked = [&](size_t answer, const std::function<void()>& act) {
    platform.answer = answer;
    act();
    EXPECT_EQ(platform.lastAsked.usual, 1u);
    return platform.TakeAsked().size() == 1 ? platform.lastAsked.detail : "";
  };
  const std::string work = "the changes of the frame star.fts";
  EXPECT_EQ(asked(1, [&] { main->close(); }), work);
  EXPECT_TRUE(main->isVisible());
  EXPECT_EQ(asked(1, [&] { Load("other.fts"); }), work);
  EXPECT_EQ(DataName(session->slot[slots::frame]), "star.fts");
  WriteFile(folder.File("r.recipe"), "load frame other.fts\n");
  platform.fileToOpen = folder.File("r.recipe");
  EXPECT_EQ(asked(1, [&] { Trigger(main.get(), "mRunRecipe"); }), work);
  EXPECT_EQ(asked(0, [&] { Load("other.fts"); }), work);
  EXPECT_EQ(DataName(session->slot[slots::frame]), "other.fts");
  main->close();
  EXPECT_FALSE(main->isVisible());
}

TEST_F(LostFramesTest, AnEveningThatWasCutOffIsOfferedAgain) {
  constexpr size_t replay = 0, discard = 1, notNow = 2;
  const std::string path = folder.File("session-1.recipe"),
                    steps = "folder " + folder.path() + "\nload frame other.fts\n";
  const struct {
    size_t answer;
    std::string steps, left;
    Texts told;
  } cases[] = {{notNow, steps, "session-1.recipe", {}},
               {discard, steps, "", {}},
               {replay, steps, "", {"session-1.recipe: 2 steps done."}},
               {replay,
                steps + "crunch\n",
                "session-1.stopped",
                {"session-1.recipe:3: Hey, you need to set the aperture and fit the background first!"}}};
  for (const auto& c : cases) {
    WriteFile(path, c.steps);
    platform.answer = c.answer;
    main->actions().OfferReplay({path, 1, "load frame other.fts"});
    EXPECT_EQ(platform.TakeAsked().size(), 1u);
    EXPECT_NE(platform.lastAsked.detail.find(path + "; the last is: load frame other.fts"),
              std::string::npos);
    EXPECT_EQ(platform.TakeMessages(), c.told);
    std::string left;
    for (const std::string& name : FilesIn(folder.path()))
      left += name.starts_with("session-") ? name : "";
    EXPECT_EQ(left, c.left);
    EXPECT_EQ(DataName(session->slot[slots::frame]) == "other.fts", c.answer == replay);
    if (c.answer != replay)
      continue;
    Load("star.fts");
  }

  // Where it cannot be kept, that is said once.
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
  platform.PrintInto(folder.File("page.pdf"));
  Trigger(row, "mPrintSetup");
  const struct {
    QWidget* window;
    const char *action, *file;
  } saves[] = {{main.get(), "mSave", "star.fts"}, {main.get(), "mSaveRecipe", "old.recipe"},
               {row, "mSavePicture", "old.png"},  {row, "mSavePicture", "old.svg"},
               {row, "mSavePicture", "old.pdf"},  {row, "mPrint", "page.pdf"}};
  for (const auto& save : saves)
    if (!fs::exists(folder.File(save.file)))
      WriteFile(folder.File(save.file), "old");
  const auto names = FilesIn(folder.path());
  session->fileOperations.write = [](int, const void*, size_t) {
    errno = ENOSPC;
    return ssize_t{-1};
  };
  for (const auto& save : saves) {
    const std::string before = ReadFile(folder.File(save.file));
    platform.fileToSave = folder.File(save.file);
    Trigger(save.window, save.action);
    const auto messages = platform.TakeMessages();
    platform.TakeAsked();
    ASSERT_EQ(messages.size(), 1u) << save.file;
    EXPECT_NE(messages[0].find("Error: Disk full."), std::string::npos) << messages[0];
    EXPECT_NE(platform.detail.find(save.file), std::string::npos) << platform.detail;
    EXPECT_EQ(ReadFile(folder.File(save.file)), before);
  }
  main->close();
  EXPECT_EQ(platform.TakeMessages(), Texts{"Error: 61  Error: Disk full."});
  EXPECT_NE(platform.detail.find("Halmek8.ini"), std::string::npos) << platform.detail;
  EXPECT_EQ(FilesIn(folder.path()), names);
}

}  // namespace
}  // namespace halmek::test
