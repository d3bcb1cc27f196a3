// Tests of the settings file.
#include "app/settings.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "files/text_records.h"
#include "support/test_session.h"

namespace halmek::test {
namespace {

const char* const defaultsText =
    R"ini("This is the init file for Halmekxx.exe containing various default parameters plus positional and sizing info for forms."
1397,"bad column #"
1,1,1748,140
50,"start row to plot"
0,"Restore to full row after Zap"
0,"Manual fit: 0=No, -1=Yes"
500,500,"About"
500,500,"Clickmax"
500,500,6000,9000,"Display_Header"
500,500,"Help"
500,500,"Load_1D"
500,500,"Load_2D"
500,500,"Load_Mask"
500,500,"Load_WLtable"
500,500,"Main"
500,500,14000,6000,"Plot_1D"
500,500,14000,6000,"Plot_1D"
500,500,14000,6000,"Plot_1D"
500,500,14000,6000,"Plot_1D"
500,500,14000,6000,"Plot_Row"
500,500,14000,6000,"Plot_Column"
500,500,14000,6000,"Plot_Continuum"
500,500,14000,6000,"Plot_WL_Diff%(1)"
500,500,14000,6000,"Plot_WL_Diff%(2)"
500,500,"Save_1DFile"
500,500,"Save_1DText"
500,500,"Save_2DFile"
500,500,"Save_2Dtext"
500,500,"Save_Mask"
1,1,1748,140
)ini";

// The default text with line `number` replaced.
std::string WithLine(int number, const std::string& line) {
  std::string text;
  int count = 0;
  for (const std::string_view old : Lines(defaultsText))
    text += (++count == number ? line : std::string(old)) + "\r\n";
  return text;
}

// The default text with field f of line k, where it is a number, replaced by -(100 k + f), so that no number
// stands twice.
std::string Numbered() {
  std::string text;
  int number = 0;
  for (std::string_view line : Lines(defaultsText)) {
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

TEST(Settings, ReadEachFieldFromItsLineAndTheLaterOfTwo) {
  std::string expected = Numbered();
  for (const auto& [first, second] : {std::pair{"-301,-302,-303,-304", "-3001,-3002,-3003,-3004"},
                                      {"-1101,-1102", "-1201,-1202"},
                                      {"-2501,-2502", "-2701,-2702"}})
    expected.replace(expected.find(first), std::string_view(first).size(), second);
  const Settings s = ParseSettings(Numbered());
  EXPECT_EQ(SettingsText(s), expected);
  EXPECT_EQ((std::vector<int>{s.badColumn, s.trimRow1, s.startRow, s.manualFit, s.displayHeader.height,
                              s.mainWindow.top, s.plot1D[2].left, s.plotColumn.width, s.saveMask.top}),
            (std::vector{-201, -3002, -401, -601, -904, -1502, -1701, -2103, -2902}));
}

TEST(Settings, ReadFilesEditedByHand) {
  for (const std::string& text :
       {WithLine(4, "12,\"another label\""), WithLine(4, " 11.5 , rounded") + "more\r\n"})
    EXPECT_EQ(ParseSettings(text).startRow, 12) << text;
}

TEST(Settings, AreAllDefaultsWhereTheFileIsMissingOrMalformed) {
  const std::string defaults = WithLine(0, ""), numbered = Numbered();
  const std::string texts[] = {numbered.substr(0, numbered.find("\"Help\"")),
                               WithLine(16, "32768,500,14000,6000,\"Plot_1D\""), std::string(100000, '\0')};
  const TemporaryFolder folder;
  const std::string path = folder.File("settings.ini");
  EXPECT_FALSE(ReadSettings(path).found);
  for (const std::string& text : texts) {
    WriteFile(path, text);
    const SettingsRead read = ReadSettings(path);
    EXPECT_TRUE(!read.found && SettingsText(read.settings) == defaults) << text;
  }
  WriteSettings(path, ParseSettings(defaults));
  EXPECT_TRUE(ReadSettings(path).found);
  EXPECT_EQ(ReadFile(path), defaults);
}

}  // namespace
}  // namespace halmek::test
