// Extraction.
#include "reduce/crunch.h"

#include <algorithm>
#include <string>
#include <utility>

#include "fits/header.h"
#include "fits/world_coordinates.h"
#include "plot/wording.h"

namespace halmek {
namespace {

void CopyHeader(Session& s, int firstRow, int lastRow) {
  const Slot& frame = s.slot[slots::frame];
  FitsHeader header = frame;
  DropRows(header);
  AppendCard(header, "HISTORY  Halmek collapsed data from 2-D to 1-D, rows " + FromTo(firstRow, lastRow));
  s.crunchFile = DataName(frame);
  s.crunchLoad = frame.loadedFile;
  s.crunchHeader = header;
  Slot& spectrum = s.slot[slots::spectrum];
  static_cast<FitsHeader&>(spectrum) = std::move(header);
  spectrum.savedFile.clear();
}

// Adds the pixels of the row to the sums, less the background at that row; that of power 0, which is the same
// at every row, is left to the end.
void AddRow(std::span<double> sums, std::span<const double> pixels, const Background& b, double row) {
  const int columns = static_cast<int>(sums.size());
  const double t = row - b.backgroundCentre;
  const auto a0 = b.backgroundA0.Range(1, columns), a1 = b.backgroundA1.Range(1, columns);
  const auto a2 = b.backgroundA2.Range(1, columns);
  switch (b.fittedPower) {
    case 0:
      for (size_t c = 0; c < sums.size(); ++c)
        sums[c] += pixels[c];
      break;
    case 1:
      for (size_t c = 0; c < sums.size(); ++c)
        sums[c] += pixels[c] - (a0[c] + a1[c] * t);
      break;
    default:
      for (size_t c = 0; c < sums.size(); ++c)
        sums[c] += pixels[c] - (a0[c] + (a1[c] + a2[c] * t) * t);
  }
}

}  // namespace

void CrunchFrame(Session& s) {
  const int columns = Columns(s), rows = Rows(s);
  const int first = std::min(s.slice.apertureFirstRow, s.slice.apertureLastRow);
  const int last = std::max(s.slice.apertureFirstRow, s.slice.apertureLastRow);
  if (!s.background.backgroundFitted || columns == 0 || first < 1 || last > rows)
    throw Refusal("Hey, you need to set the aperture and fit the background first!");
  CopyHeader(s, first, last);

  Slot& spectrum = s.slot[slots::spectrum];
  const std::span<double> sums = spectrum.spectrum.Range(1, columns);
  std::fill(sums.begin(), sums.end(), 0.0);
  for (int row = first; row <= last; ++row)
    AddRow(sums, s.image.Row(row, 1, columns), s.background, row);
  if (s.background.fittedPower == 0)
    for (int c = 1; c <= columns; ++c)
      spectrum.spectrum(c) -= (last - first + 1) * s.background.backgroundMedian(c);

  spectrum.spectrumPeak = std::max(0.0, *std::max_element(sums.begin(), sums.end()));
  s.baseName = BaseName(DataName(s.slot[slots::frame]));
  spectrum.fileName = s.baseName + "_1D.fts";
  s.continuum.normalized = s.continuum.continuumFitDone = false;
  s.continuum.continuumPointCount = 0;
  s.workflow.normalizeEnabled = true;
  s.workflow.crunchStatus = doneText;
}

}  // namespace halmek
