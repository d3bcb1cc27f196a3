// What must not happen at 3 a.m.: a file replaced that nobody meant, an extraction that nobody marked.
#include <gtest/gtest.h>

#include <QListWidget>
#include <cerrno>
#include <filesystem>

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
  platform.TakeMessages();
  Ok();
  EXPECT_EQ(platform.TakeMessages(),
            Texts{"This file exists.  Press OK again to replace it, or choose another name."});
  EXPECT_EQ(ReadFile(folder.File("raw/precious.fts")), "precious");
  Ok();
  EXPECT_NE(ReadFile(folder.File("raw/precious.fts")), "precious");
  platform.TakeMessages();
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
