// Line masks.
#include "calib/line_mask.h"

#include <utility>
#include <vector>

#include "app/output.h"
#include "calib/line_list.h"
#include "calib/peaks.h"
#include "calib/wavelength_table.h"
#include "files/input_file.h"
#include "files/text_records.h"
#include "numeric/rounding.h"
#include "plot/number_text.h"

namespace halmek {
namespace {

void ShowMaskName(Session& s) {
  if (s.currentSlot == slots::arc1 || s.currentSlot == slots::arc2)
    s.workflow.arc[s.currentSlot].maskName = s.mask.maskFileName;
}

void AppendNumber(std::string& text, double value) {
  if (value >= 0)
    text += ' ';
  AppendGeneralText(text, value);
  text += ' ';
}

void ReadEntry(LineMask& mask, int k, std::string_view line, size_t lineNumber) {
  if (k > lastLine)
    throw RunTimeError(run_time_error::subscript,
                       "there are more than " + std::to_string(lastLine) + " lines of data");
  RecordLine record(line);
  const auto column = record.Number();
  const auto wavelength = record.Number();
  if (!column || !wavelength || !record.AtEnd())
    throw RunTimeError(run_time_error::invalidFormat,
                       "line " + std::to_string(lineNumber) + " is not two numbers");
  mask.MaskColumn(k) = *column;
  mask.MaskWavelength(k) = *wavelength;
}

bool IsTable(const std::string& text) {
  try {
    return IsValidWavelength(ParseWavelengthTable(text).WLValue(1));
  } catch (const Failure&) {
    return false;
  }
}

LineMask ParseMask(std::string text) {
  if (text.starts_with("\xEF\xBB\xBF"))
    text.erase(0, 3);
  if (text.empty())
    throw RunTimeError(run_time_error::pastEndOfFile, "the file is empty");
  const std::vector<std::string_view> lines = Lines(text);
  if (!RecordLine(lines[0]).Text().value_or("").starts_with("Mask"))
    throw Refusal(
        IsTable(text)
            ? "This is a wavelength table, not a mask of lines.  Please load it as a wavelength table."
            : "This is not a mask file for this program.  Please try again.");

  LineMask mask;
  for (size_t i = 1; i < lines.size(); ++i)
    if (!RecordLine(lines[i]).AtEnd())
      ReadEntry(mask, ++mask.maskCount, lines[i], i + 1);
  if (mask.maskCount == 0)
    throw RunTimeError(run_time_error::pastEndOfFile, "there are no lines of data");
  return mask;
}

struct FoundLine {
  int pixel = 0;
  Centroid centroid;
  bool isAtEdge = false;  // of the search, where the flank of a stronger line outside it would peak
};

FoundLine FindMaskLine(Session& s, int a, int k) {
  try {
    if (!IsValidWavelength(s.mask.MaskWavelength(k)))
      throw Refusal("The wavelength must be between 3000 and 9000 Angstroms.");
    const Peak peak = FindPeak(s.slot[a], RoundToInt(s.mask.MaskColumn(k)));
    if (peak.pixel == 0)
      throw Refusal(noMaximumMessage);
    return {peak.pixel, CentroidLine(s.slot[a], peak.pixel, s.BisectorMidpoint),
            peak.pixel == peak.low || peak.pixel == peak.high};
  } catch (const Refusal& refusal) {
    throw Refusal("Mask entry " + std::to_string(k) + " (column " + GeneralText(s.mask.MaskColumn(k)) + ", " +
                  GeneralText(s.mask.MaskWavelength(k)) + " Angstroms):  " + refusal.text());
  }
}

using FoundLines = std::vector<FoundLine>;  // place k - 1 for mask entry k

// What deserves doubt about the lines that were found.
Warnings DoubtsAbout(const FoundLines& found) {
  Warnings warnings;
  for (size_t k = 0; k < found.size(); ++k) {
    const std::string entry = std::to_string(k + 1), column = std::to_string(found[k].pixel);
    if (found[k].isAtEdge)
      warnings.push_back("Mask entry " + entry + " found its maximum at the edge of the search, at column " +
                         column + ": it may be the flank of another line.");
    for (size_t other = 0; other < k; ++other)
      if (found[other].pixel == found[k].pixel)
        warnings.push_back("Mask entries " + std::to_string(other + 1) + " and " + entry +
                           " found the same line, at column " + column + ".");
  }
  return warnings;
}

// Replaces the arc's lines, in the order of the mask.
void TakeLines(Session& s, Arc& arc, const FoundLines& found) {
  arc.PixelWavelength.Clear();
  arc.LineCount = static_cast<int>(found.size());
  for (int k = 1; k <= arc.LineCount; ++k) {
    const FoundLine& line = found[static_cast<size_t>(k) - 1];
    s.FitColumn(k) = arc.ArcLineColumn(k) = arc.PixelCentroid(line.pixel) = line.centroid.column;
    arc.PixelCentroidError(line.pixel) = line.centroid.error;
    s.FitWavelength(k) = arc.ArcLineWavelength(k) = arc.PixelWavelength(line.pixel) =
        s.mask.MaskWavelength(k);
  }
  s.peakPixel = found.back().pixel;
  s.centroidValue = found.back().centroid.column;
  s.linePanel = {};  // what was clicked is no more the peak
}

}  // namespace

void LoadMask(Session& s, const std::string& file) {
  LineMask mask = ParseMask(ReadWholeFile(FullName(s, file)));
  mask.maskFileName = LeafName(file);
  mask.loadedFile = FullName(s, file);
  s.mask = std::move(mask);
  ShowMaskName(s);
  // The lines on show are not those of this mask.
  if (s.currentSlot == slots::arc1 || s.currentSlot == slots::arc2) {
    s.arc[s.currentSlot].maskApplied = false;
    s.workflow.arc[s.currentSlot].maskStatus.clear();
  }
}

bool IsMask(const std::string& text) {
  try {
    ParseMask(text);
    return true;
  } catch (const Failure&) {
    return false;
  }
}

Warnings SaveMask(Session& s, int a, const std::string& file, bool mayReplace) {
  const Arc& arc = s.arc[a];
  if (arc.LineCount == 0)
    throw Refusal("There are no centroided peaks and tabular wavelengths to save.");
  std::string text = std::string(first_lines::mask) + "\r\n";
  for (int k = 1; k <= arc.LineCount; ++k) {
    AppendNumber(text, arc.ArcLineColumn(k));
    AppendNumber(text, arc.ArcLineWavelength(k));
    text += "\r\n";
  }
  Warnings warnings = WriteOutput(s, {file, FileKind::mask, mayReplace}, text);

  s.currentSlot = a;
  LineMask& mask = s.mask;
  mask.maskFileName = LeafName(file);
  mask.maskCount = arc.LineCount;
  for (int k = 1; k <= arc.LineCount; ++k) {
    mask.MaskColumn(k) = arc.ArcLineColumn(k);
    mask.MaskWavelength(k) = arc.ArcLineWavelength(k);
  }
  ShowMaskName(s);
  return warnings;
}

Warnings ApplyMask(Session& s, int a) {
  s.currentSlot = a;
  const int count = s.mask.maskCount;
  if (s.mask.maskFileName.empty() || count == 0)
    throw Refusal("Hey, you need to load the mask file first!");
  RequireArc(s, a);

  // All lines are looked for, and the fit is tried, before anything of the arc changes.
  FoundLines found;
  std::vector<double> columns;
  for (int k = 1; k <= count; ++k) {
    found.push_back(FindMaskLine(s, a, k));
    columns.push_back(found.back().centroid.column);
  }
  if (!FitLinear(columns, s.mask.MaskWavelength.Range(1, count)))
    throw Refusal("Hey, a mask needs two or more different lines!");

  TakeLines(s, s.arc[a], found);
  LinesHaveChanged(s, a);
  FitDispersionLine(s, a);
  s.arc[a].maskApplied = true;
  s.workflow.arc[a].maskStatus = doneText;
  return DoubtsAbout(found);
}

}  // namespace halmek
