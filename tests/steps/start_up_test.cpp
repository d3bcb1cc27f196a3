// Start-up and shut-down of a session.
#include "steps/start_up.h"

#include <gtest/gtest.h>

#include "files/text_records.h"
#include "support/test_session.h"

namespace halmek::test {
namespace {

TEST(StartUp, InAnEmptyFolderSaysSoOnceAndWritesTheDefaultsAtTheEnd) {
  const TemporaryFolder folder;
  Session first;
  EXPECT_EQ(
      StartUp(first, folder.path()),
      (std::vector<std::string>{"Default values are being loaded.",
                                "Wavelength file 'WL_Table.txt' not found - load from menu bar or enter "
                                "tabular values manually."}));
  EXPECT_EQ(first.arcCount, 2);
  EXPECT_FALSE(first.workflow.fixTraceEnabled);
  ShutDown(first, "50", "1397", {.left = 500, .top = 500});
  const std::string text = ReadFile(folder.File("Halmek8.ini"));
  EXPECT_EQ(Lines(text).size(), 30u);
  EXPECT_EQ(text, SettingsText(Settings{}));

  WriteFile(folder.File("WL_Table.txt"), "header\r\n5852.488,Ne I\r\n");
  Session second;
  EXPECT_TRUE(StartUp(second, folder.path()).empty());
  EXPECT_EQ(second.wavelengthTable.WLName(1), "Ne I");
}

TEST(ShutDown, WritesToTheFolderOfTheStartWhatStandsInTheBoxes) {
  const TemporaryFolder folder, elsewhere;
  Session session;
  StartUp(session, folder.path());
  session.dataFolder = elsewhere.path();
  session.trimCol2 = 1234;
  ShutDown(session, " 71.5 rows", "99999", {.left = -20, .top = 40});
  const Settings settings = ParseSettings(ReadFile(folder.File("Halmek8.ini")));
  EXPECT_EQ(settings.startRow, 72);
  EXPECT_EQ(settings.badColumn, 1397) << "beyond 16 bits";
  EXPECT_EQ(settings.trimCol2, 1234);
  EXPECT_EQ(settings.mainWindow.left, -20);
  EXPECT_TRUE(FilesIn(elsewhere.path()).empty());
}

}  // namespace
}  // namespace halmek::test
