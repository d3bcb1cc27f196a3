// The lines of the settings file as one table, from which it is read and written.
#include "app/settings.h"

#include <cstddef>
#include <string_view>
#include <vector>

#include "files/atomic_write.h"
#include "files/failure.h"
#include "files/input_file.h"
#include "files/text_records.h"
#include "files/whole_number.h"

namespace halmek {
namespace {

constexpr std::string_view title =
    "\"This is the init file for Halmekxx.exe containing various default parameters plus positional and "
    "sizing "
    "info for forms.\"";

// One line after the title: its numbers, then a label, which some lines lack.
struct SettingsLine {
  std::vector<int16_t*> numbers;
  std::string_view label;
};

SettingsLine Placed(WindowPlacement& p, std::string_view label) { return {{&p.left, &p.top}, label}; }

SettingsLine Sized(SizedPlacement& p, std::string_view label) {
  return {{&p.left, &p.top, &p.width, &p.height}, label};
}

// Two choosers serve 1-D and 2-D files alike, so that their placements stand twice; so does the rectangle. On
// reading, the later line wins.
std::vector<SettingsLine> SettingsLines(Settings& s) {
  const SettingsLine rectangle{{&s.trimCol1, &s.trimRow1, &s.trimCol2, &s.trimRow2}, {}};
  return {
      {{&s.badColumn}, "bad column #"},
      rectangle,
      {{&s.startRow}, "start row to plot"},
      {{&s.restoreAfterZap}, "Restore to full row after Zap"},
      {{&s.manualFit}, "Manual fit: 0=No, -1=Yes"},
      Placed(s.about, "About"),
      Placed(s.clickMax, "Clickmax"),
      Sized(s.displayHeader, "Display_Header"),
      Placed(s.help, "Help"),
      Placed(s.loadDatafiles, "Load_1D"),
      Placed(s.loadDatafiles, "Load_2D"),
      Placed(s.loadMask, "Load_Mask"),
      Placed(s.loadWLtable, "Load_WLtable"),
      Placed(s.mainWindow, "Main"),
      Sized(s.plot1D[1], "Plot_1D"),
      Sized(s.plot1D[2], "Plot_1D"),
      Sized(s.plot1D[3], "Plot_1D"),
      Sized(s.plot1D[4], "Plot_1D"),
      Sized(s.plotRow, "Plot_Row"),
      Sized(s.plotColumn, "Plot_Column"),
      Sized(s.plotContinuum, "Plot_Continuum"),
      Sized(s.plotWLDiff[1], "Plot_WL_Diff%(1)"),
      Sized(s.plotWLDiff[2], "Plot_WL_Diff%(2)"),
      Placed(s.saveDatafiles, "Save_1DFile"),
      Placed(s.save1DText, "Save_1DText"),
      Placed(s.saveDatafiles, "Save_2DFile"),
      Placed(s.save2DText, "Save_2Dtext"),
      Placed(s.saveMask, "Save_Mask"),
      rectangle,
  };
}

void ReadLine(std::string_view text, const SettingsLine& line) {
  RecordLine record(text);
  for (int16_t* number : line.numbers) {
    if (record.AtEnd())
      throw RunTimeError(run_time_error::pastEndOfFile);
    const auto value = record.Number();
    if (!value)
      throw RunTimeError(run_time_error::invalidFormat);
    *number = WholeNumber(*value);
  }
  if (!line.label.empty() && !record.Text())
    throw RunTimeError(run_time_error::pastEndOfFile);
  if (!record.AtEnd())
    throw RunTimeError(run_time_error::invalidFormat);
}

}  // namespace

std::string SettingsText(const Settings& settings) {
  Settings copy = settings;
  std::string text = std::string(title) + "\r\n";
  for (const SettingsLine& line : SettingsLines(copy)) {
    std::string fields;
    for (const int16_t* number : line.numbers)
      fields += (fields.empty() ? "" : ",") + std::to_string(*number);
    if (!line.label.empty())
      fields += ",\"" + std::string(line.label) + '"';
    text += fields + "\r\n";
  }
  return text;
}

Settings ParseSettings(const std::string& text) {
  Settings settings;
  const std::vector<SettingsLine> table = SettingsLines(settings);
  const std::vector<std::string_view> lines = Lines(text);
  if (lines.size() < table.size() + 1)
    throw RunTimeError(run_time_error::pastEndOfFile);
  for (size_t i = 0; i < table.size(); ++i)
    ReadLine(lines[i + 1], table[i]);
  return settings;
}

SettingsRead ReadSettings(const std::string& path) {
  try {
    return {ParseSettings(ReadWholeFile(path)), true};
  } catch (const RunTimeError&) {
    return {};
  }
}

void WriteSettings(const std::string& path, const Settings& settings, const FileOperations& system) {
  AtomicWrite(path, SettingsText(settings), system);
}

}  // namespace halmek
