// Tests of the settings file.
#include "app/settings.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string_view>
#include <utility>

#include "files/text_records.h"
#include "support/test_session.h"

namespace halmek::test {
namespace {

const std::string defaults = SettingsText({});

// The default text with `old` replaced.
std::string With(std::string_view old, std::string_view text) {
  return std::string(defaults).replace(defaults.find(old), old.size(), text);
}

// The default text with field f of line k, where it is a number, replaced by -(100 k + f), so that no number
// stands twice.
std::string Numbered() {
  std::string text;
  int number = 0;
  for (std::string_view line : Lines(defaults)) {
    ++number;
    for (int field = 1; !line.empty() && line[0] != '"'; ++field) {
      const size_t end = std::min(line.find(','), line.size());
      text += std::to_string(-(100 * number + field)) + (end < line.size() ? "," : "");
      line.remove_prefix(std::min(end + 1, line.size()));
    }
    text += std::string(line) + "\r\n";
  }
  return text;
}

TEST(Settings, AreWrittenAsLinesOfNumbersWithALabel) {
  const std::vector<std::string_view> lines = Lines(defaults);
  ASSERT_EQ(lines.size(), 30u);
  EXPECT_EQ((std::vector{lines[1], lines[2], lines[8], lines[23], lines[29]}),
            (std::vector<std::string_view>{"1397,\"bad column #\"", "1,1,1748,140",
                                           "500,500,6000,9000,\"Display_Header\"",
                                           "500,500,14000,6000,\"Plot_WL_Diff%(2)\"", "1,1,1748,140"}));
  EXPECT_TRUE(defaults.ends_with("\r\n"));
}

TEST(Settings, ReadEachFieldFromItsLineAndTheLaterOfTwo) {
  std::string expected = Numbered();
  for (const auto& [first, second] : {std::pair{"-301,-302,-303,-304", "-3001,-3002,-3003,-3004"},
                                      {"-1101,-1102", "-1201,-1202"},
                                      {"-2501,-2502", "-2701,-2702"}})
    expected.replace(expected.find(first), std::string_view(first).size(), second);
  const Settings s = ParseSettings(Numbered());
  EXPECT_EQ(SettingsText(s), expected);
  EXPECT_EQ((std::vector<int>{s.badColumn, s.trimRow1, s.startRow, s.restoreAfterZap, s.manualFit,
                              s.about.left, s.clickMax.left, s.displayHeader.height, s.help.left,
                              s.loadMask.left, s.loadWLtable.left, s.mainWindow.top, s.plot1D[2].left,
                              s.plotRow.left, s.plotColumn.width, s.plotContinuum.left, s.save1DText.left,
                              s.save2DText.top, s.saveMask.top}),
            (std::vector{-201, -3002, -401, -501, -601, -701, -801, -904, -1001, -1301, -1401, -1502, -1701,
                         -2001, -2103, -2201, -2601, -2802, -2902}));
}

TEST(Settings, ReadFilesEditedByHand) {
  for (const std::string& text : {With("50,\"start row to plot\"", "12,\"another label\""),
                                  With("50,\"start row to plot\"", " 11.5 , rounded") + "more\r\n"})
    EXPECT_EQ(ParseSettings(text).startRow, 12) << text;
}

TEST(Settings, AreAllDefaultsWhereTheFileIsMissingOrMalformed) {
  const TemporaryFolder folder;
  const std::string path = folder.File("settings.ini"), numbered = Numbered();
  EXPECT_FALSE(ReadSettings(path).found);
  for (const std::string& text :
       {numbered.substr(0, numbered.find("\"Help\"")), With("14000", "32768"), std::string(100000, '\0')}) {
    WriteFile(path, text);
    const SettingsRead read = ReadSettings(path);
    EXPECT_TRUE(!read.found && SettingsText(read.settings) == defaults) << text;
  }
  WriteSettings(path, {});
  EXPECT_TRUE(ReadSettings(path).found);
  EXPECT_EQ(ReadFile(path), defaults);
}

}  // namespace
}  // namespace halmek::test
