// The steps on the frame and on the spectrum extracted from it.
#include <algorithm>
#include <cstdlib>
#include <tuple>

#include "files/whole_number.h"
#include "plot/number_text.h"
#include "plot/wording.h"
#include "reduce/background.h"
#include "reduce/bad_column.h"
#include "reduce/column_slice.h"
#include "reduce/continuum.h"
#include "reduce/crunch.h"
#include "reduce/trim.h"
#include "reduce/zap.h"
#include "steps/execute.h"
#include "steps/slot_names.h"

namespace halmek::steps {
namespace {

std::string ColumnsText(int first, int last) {
  return first == last ? "column " + std::to_string(first) : "columns " + FromTo(first, last);
}

void RequireSpectrum(const Session& s) { RequireLoaded(s, slots::spectrum); }

// What is chosen for the next fit, put back when a step has made one of its own.
class KeptChoices {
 public:
  explicit KeptChoices(Session& s) : session_(s) {}
  ~KeptChoices() {
    session_.manualFit = manualFit_;
    session_.continuum.continuumInterval = interval_;
    session_.continuum.continuumPower = power_;
  }
  KeptChoices(const KeptChoices&) = delete;
  KeptChoices& operator=(const KeptChoices&) = delete;

 private:
  Session& session_;
  int16_t manualFit_ = session_.manualFit;
  int interval_ = session_.continuum.continuumInterval, power_ = session_.continuum.continuumPower;
};

Outcome FitAndNormalize(Session& s) {
  FitContinuum(s);
  const int points = s.continuum.continuumPointCount;
  Warnings warnings = NormalizeContinuum(s);
  return {"power " + std::to_string(s.continuum.fittedPower) + " through " + std::to_string(points) +
              " points, continuum at " + ShortText(s.continuum.continuumFitMax),
          std::move(warnings)};
}

}  // namespace

Outcome Execute(Session& s, const FixColumn& step) {
  RequireFrame(s);
  if (!s.workflow.fixColumnEnabled)
    throw Refusal("A column of this frame has been fixed already.  Load the frame again to fix another.");
  halmek::FixColumn(s, step.column);
  return {"column " + std::to_string(s.badColumn) + " repaired; row " + std::to_string(s.traceRow) +
              " is the brightest near it",
          {}};
}

Outcome Execute(Session& s, const Trim& step) {
  RequireFrame(s);
  if (s.frameTrimmed)
    throw Refusal("This frame has been trimmed already.  Load the frame again to trim it.");
  TrimTo(s, step.col1, step.row1, step.col2, step.row2);
  return {std::to_string(Columns(s)) + " x " + std::to_string(Rows(s)) + " pixels kept", {}};
}

Outcome Execute(Session& s, const Zap& step) {
  RequireFrame(s);
  RequireWithin("Row", step.row, Rows(s));
  RequireWithin("Column", step.first, Columns(s));
  RequireWithin("Column", step.last, Columns(s));
  const int neighbours = NeighboursFor(WholeNumber(step.neighbours));
  RowPlot& plot = s.rowPlot;
  const auto before = std::tuple(plot.plotRow, plot.zapSelected, plot.zapFirst, plot.zapLast);
  plot.plotRow = step.row;
  plot.zapNeighbours = neighbours;
  plot.zapSelected = true;
  plot.zapFirst = std::min(step.first, step.last);
  plot.zapLast = std::max(step.first, step.last);
  try {
    const double mean = halmek::Zap(s).value();
    return {ColumnsText(step.first, step.last) + " of row " + std::to_string(step.row) + ", now " +
                ShortText(mean),
            {}};
  } catch (const Failure&) {
    std::tie(plot.plotRow, plot.zapSelected, plot.zapFirst, plot.zapLast) = before;
    throw;
  }
}

Outcome Execute(Session& s, const UndoZap&) {
  if (!halmek::UndoZap(s))
    throw Refusal("Hey, there is no zap to undo!");
  return {ColumnsText(s.rowPlot.undoFirst, s.rowPlot.undoLast) + " of row " +
              std::to_string(s.rowPlot.plotRow) + ", as before the zap",
          {}};
}

Outcome Execute(Session& s, const Aperture& step) {
  RequireFrame(s);
  SetAperture(s, step.first, step.last);
  return {"rows " + FromTo(step.first, step.last), {}};
}

Outcome Execute(Session& s, const Background& step) {
  RequireFrame(s);
  const halmek::Slice selection = s.slice;
  const int power = s.background.backgroundPower;
  try {
    SetBackgroundRanges(s, step.first1, step.last1, step.first2, step.last2);
    s.background.backgroundPower = step.power;
    FitBackground(s);
  } catch (const Failure&) {
    s.slice = selection;
    s.background.backgroundPower = power;
    throw;
  }
  const int column = std::max(1, Columns(s) / 2), row = std::max(1, Rows(s) / 2);
  return {"power " + std::to_string(step.power) + " through " + std::to_string(s.background.BackgroundCount) +
              " rows; " + ShortText(BackgroundAt(s.background, column, row)) + " at column " +
              std::to_string(column) + ", row " + std::to_string(row),
          {}};
}

Outcome Execute(Session& s, const Crunch&) {
  RequireFrame(s);
  CrunchFrame(s);
  const Slot& spectrum = s.slot[slots::spectrum];
  return {std::to_string(Pixels(spectrum)) + " pixels from rows " +
              FromTo(s.slice.apertureFirstRow, s.slice.apertureLastRow) + ", peak " +
              ShortText(spectrum.spectrumPeak),
          {}};
}

Outcome Execute(Session& s, const NormalizeAuto& step) {
  RequireSpectrum(s);
  const int interval = WholeNumber(step.interval);
  const KeptChoices kept(s);
  s.manualFit = 0;
  s.continuum.continuumInterval = interval;
  s.continuum.continuumPower = step.power;
  return FitAndNormalize(s);
}

Outcome Execute(Session& s, const NormalizePoints& step) {
  RequireSpectrum(s);
  for (int column : step.columns)
    RequireWithin("Column", std::abs(column), Pixels(s.slot[slots::spectrum]));
  const KeptChoices kept(s);
  s.manualFit = -1;
  s.continuum.continuumPower = step.power;
  s.continuum.continuumPointCount = 0;
  try {
    for (int column : step.columns)
      if (!(column < 0 ? AddContinuumPixel(s, -column) : AddContinuumPoint(s, column)))
        throw Refusal("There is no positive pixel near column " + std::to_string(std::abs(column)) +
                      ".  Please try again.");
    return FitAndNormalize(s);
  } catch (const Refusal&) {
    s.continuum.continuumPointCount = 0;
    throw;
  }
}

Outcome Execute(Session& s, const NormalizeAgain&) {
  RequireSpectrum(s);
  if (!s.continuum.continuumFitDone || !s.continuum.fitUsed)
    throw Refusal("Hey, there is no normalisation to repeat!");
  Warnings warnings = NormalizeContinuum(s);
  return {"divided again by the continuum of power " + std::to_string(s.continuum.fittedPower),
          std::move(warnings)};
}

Outcome Execute(Session& s, const Revert&) {
  RequireSpectrum(s);
  if (!RevertContinuum(s))
    throw Refusal("Hey, there is no normalisation to revert!");
  return {"the spectrum is as it was before the normalisation", {}};
}

}  // namespace halmek::steps
