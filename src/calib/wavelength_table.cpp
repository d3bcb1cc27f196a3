// Reading of the wavelength table.
#include "calib/wavelength_table.h"

#include "calib/line_mask.h"
#include "files/input_file.h"
#include "files/text_records.h"

namespace halmek {
namespace {

std::string LineNumber(size_t index) { return "line " + std::to_string(index + 1); }

bool IsMissing(const RunTimeError& error) {
  return error.number() == run_time_error::fileNotFound || error.number() == run_time_error::pathNotFound;
}

}  // namespace

WavelengthTable ParseWavelengthTable(const std::string& text) {
  WavelengthTable table;
  const std::vector<std::string_view> lines = Lines(text);
  for (size_t i = 1; i < lines.size(); ++i) {
    RecordLine record(lines[i]);
    if (record.AtEnd())
      continue;
    const auto wavelength = record.Number();
    const auto name = record.Text();
    if (!wavelength || (!name && !lines[i].ends_with(',')) || !record.AtEnd())
      throw RunTimeError(run_time_error::invalidFormat,
                         LineNumber(i) + " is not a number followed by a label");
    if (table.wlCount == lastTableEntry)
      throw RunTimeError(run_time_error::subscript,
                         "there are more than " + std::to_string(lastTableEntry) + " entries");
    ++table.wlCount;
    table.WLValue(table.wlCount) = *wavelength;
    table.WLName(table.wlCount) = name.value_or("");
  }
  if (table.wlCount == 0)
    throw RunTimeError(run_time_error::pastEndOfFile, "there are no entries");
  return table;
}

Warnings LoadWavelengthTable(Session& s, const std::string& file) {
  try {
    const std::string text = ReadWholeFile(FullName(s, file));
    if (IsMask(text))
      throw Refusal("This is a mask of lines, not a wavelength table.  Please load it as a mask.");
    s.wavelengthTable = ParseWavelengthTable(text);
    s.wavelengthTable.loadedFile = FullName(s, file);
    const std::string_view heading = Lines(text)[0];
    if (RecordLine(heading).Number())
      return {"The first line is a heading and is not read: " + std::string(heading)};
    return {};
  } catch (const RunTimeError& error) {
    const std::string name = "Wavelength file '" + LeafName(file) + "' ";
    if (IsMissing(error))
      throw Refusal(name + "not found - load from menu bar or enter tabular values manually.");
    throw Refusal(name + "was not loaded: " + (error.detail().empty() ? error.text() : error.detail() + "."));
  }
}

}  // namespace halmek
