// Line masks.
#include "calib/line_mask.h"

#include <array>

#include "calib/line_list.h"
#include "calib/peaks.h"
#include "files/atomic_write.h"
#include "files/input_file.h"
#include "files/text_records.h"
#include "numeric/rounding.h"
#include "plot/number_text.h"

namespace halmek {
namespace {

constexpr const char* maskHeader =
    "Mask data for line identification.  Peak column; tabular wavelength (Angstroms).";

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

struct FoundLine {
  int pixel = 0;
  Centroid centroid;
};

FoundLine FindMaskLine(Session& s, int a, int k) {
  try {
    const Peak peak = FindPeak(s.slot[a], RoundToInt(s.mask.MaskColumn(k)));
    if (peak.pixel == 0)
      throw Refusal(noMaximumMessage);
    return {peak.pixel, CentroidLine(s.slot[a], peak.pixel, s.BisectorMidpoint)};
  } catch (const Refusal& refusal) {
    throw Refusal("Mask entry " + std::to_string(k) + " (column " + GeneralText(s.mask.MaskColumn(k)) + ", " +
                  GeneralText(s.mask.MaskWavelength(k)) + " Angstroms):  " + refusal.text());
  }
}

}  // namespace

void LoadMask(Session& s, const std::string& file) {
  s.mask.maskFileName = LeafName(file);
  const std::string text = ReadWholeFile(FullName(s, file));
  if (text.empty())
    throw RunTimeError(run_time_error::pastEndOfFile, "the file is empty");
  const std::vector<std::string_view> lines = Lines(text);
  if (!RecordLine(lines[0]).Text().value_or("").starts_with("Mask"))
    throw Refusal("This is not a mask file for this program.  Please try again.");

  int k = 0;
  for (size_t i = 1; i < lines.size(); ++i)
    if (!RecordLine(lines[i]).AtEnd())
      ReadEntry(s.mask, ++k, lines[i], i + 1);
  if (k == 0)
    throw RunTimeError(run_time_error::pastEndOfFile, "there are no lines of data");
  s.mask.maskCount = k;
  ShowMaskName(s);
}

void SaveMask(Session& s, int a, const std::string& file) {
  s.currentSlot = a;
  const Arc& arc = s.arc[a];
  if (arc.LineCount == 0)
    throw Refusal("There are no centroided peaks and tabular wavelengths to save.");
  std::string text = std::string(maskHeader) + "\r\n";
  for (int k = 1; k <= arc.LineCount; ++k) {
    AppendNumber(text, arc.ArcLineColumn(k));
    AppendNumber(text, arc.ArcLineWavelength(k));
    text += "\r\n";
  }
  const std::string path = FullName(s, file);
  AtomicWrite(path, text);
  s.writtenFiles.push_back(path);

  LineMask& mask = s.mask;
  mask.maskFileName = LeafName(file);
  mask.maskCount = arc.LineCount;
  for (int k = 1; k <= arc.LineCount; ++k) {
    mask.MaskColumn(k) = arc.ArcLineColumn(k);
    mask.MaskWavelength(k) = arc.ArcLineWavelength(k);
  }
  ShowMaskName(s);
}

Warnings ApplyMask(Session& s, int a) {
  s.currentSlot = a;
  if (s.mask.maskFileName.empty() || s.mask.maskCount == 0)
    throw Refusal("Hey, you need to load the mask file first!");
  RequireArc(s, a);

  // All lines are looked for, and the fit is tried, before anything of the arc changes.
  const int count = s.mask.maskCount;
  std::array<FoundLine, lastLine + 1> found;
  std::array<double, lastLine + 1> columns{};
  Warnings warnings;
  for (int k = 1; k <= count; ++k) {
    found[k] = FindMaskLine(s, a, k);
    columns[k] = found[k].centroid.column;
    for (int other = 1; other < k; ++other)
      if (found[other].pixel == found[k].pixel)
        warnings.push_back("Mask entries " + std::to_string(other) + " and " + std::to_string(k) +
                           " found the same line, at column " + std::to_string(found[k].pixel) + ".");
  }
  if (!FitLinear(std::span(columns).subspan(1, count), s.mask.MaskWavelength.Range(1, count)))
    throw Refusal("Hey, a mask needs two or more different lines!");

  Arc& arc = s.arc[a];
  arc.PixelWavelength.Clear();
  for (int k = 1; k <= count; ++k) {
    const auto& [pixel, centroid] = found[k];
    s.FitColumn(k) = arc.ArcLineColumn(k) = arc.PixelCentroid(pixel) = centroid.column;
    arc.PixelCentroidError(pixel) = centroid.error;
    s.FitWavelength(k) = arc.ArcLineWavelength(k) = arc.PixelWavelength(pixel) = s.mask.MaskWavelength(k);
  }
  s.peakPixel = found[count].pixel;
  s.centroidValue = columns[count];
  arc.LineCount = count;
  arc.linesChangedSinceFit = true;
  FitDispersionLine(s, a);
  arc.maskApplied = true;
  s.workflow.arc[a].maskStatus = doneText;
  return warnings;
}

}  // namespace halmek
