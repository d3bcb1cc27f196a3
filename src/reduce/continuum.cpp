// Continuum normalisation.
#include "reduce/continuum.h"

#include <algorithm>
#include <cstdlib>
#include <optional>
#include <set>
#include <vector>

#include "numeric/rounding.h"

namespace halmek {
namespace {

std::span<const double> Values(const Session& s) {
  const Slot& spectrum = s.slot[slots::spectrum];
  return spectrum.spectrum.Range(1, Pixels(spectrum));
}

const Polynomial& CurrentFit(const Continuum& c) { return c.ContinuumCoefficients[c.fittedPower]; }

[[noreturn]] void RefuseTooFewPoints(int power, size_t different) {
  throw Refusal("Hey, for a fit of power " + std::to_string(power) + " you need " +
                    std::to_string(power + 1) + " points (and preferably more).  Please try again.",
                "there are " + std::to_string(different) + " at different columns");
}

struct ContinuumPoint {
  int column = 0;
  double value = 0;
};

// The largest positive pixel of first..last, of equals the leftmost; nothing where none is positive.
std::optional<ContinuumPoint> Brightest(const Session& s, int first, int last) {
  ContinuumPoint best;
  for (int i = first; i <= last; ++i)
    if (const double value = s.slot[slots::spectrum].spectrum(i); value > best.value)
      best = {i, value};
  return best.column == 0 ? std::nullopt : std::optional(best);
}

[[noreturn]] void RefuseTooManyPoints() {
  throw Refusal("There can be " + std::to_string(Continuum::lastPoint) +
                " continuum points at most.  Please delete some or choose a larger interval.");
}

void AddPoint(Continuum& c, const ContinuumPoint& point) {
  if (c.continuumPointCount == Continuum::lastPoint)
    RefuseTooManyPoints();
  ++c.continuumPointCount;
  c.ContinuumPointColumn(c.continuumPointCount) = point.column;
  c.ContinuumPointValue(c.continuumPointCount) = point.value;
  c.clickedColumn(c.continuumPointCount) = -point.column;
}

// Replaces the points by one a bin, where there are enough of them.
void SetAutomaticPoints(Session& s) {
  Continuum& c = s.continuum;
  if (c.continuumInterval < 1)
    throw Refusal("Hey, the sample interval must be 1 or more.  Please try again.");
  const int n = Pixels(s.slot[slots::spectrum]);
  std::vector<ContinuumPoint> points;
  for (int first = 1; first <= n; first += c.continuumInterval)
    if (const auto point = Brightest(s, first, std::min(n, first + c.continuumInterval - 1)))
      points.push_back(*point);
  if (points.size() < static_cast<size_t>(c.continuumPower) + 1)
    RefuseTooFewPoints(c.continuumPower, points.size());
  if (points.size() > Continuum::lastPoint)
    RefuseTooManyPoints();
  c.continuumPointCount = 0;
  for (const ContinuumPoint& point : points)
    AddPoint(c, point);
}

void DrawFit(Drawing& drawing, const Session& s) {
  const PlotFrame& f = s.continuum.contFrame;
  const int n = Pixels(s.slot[slots::spectrum]);
  const Polynomial& fit = CurrentFit(s.continuum);
  Polyline curve{.points = {}, .colour = colours::blue};
  // Pixel 1 to N over the plot's width, a touch wider than the steps.
  for (int i = 1; i <= n; ++i)
    curve.points.push_back(
        {Twips(f.plotLeft + f.plotWidth * (i - f.xMin) / std::max(1, n - 1)), Twips(ScreenY(f, fit(i)))});
  drawing.Add(std::move(curve));
}

void DrawMarkers(Drawing& drawing, const Session& s) {
  const Continuum& c = s.continuum;
  const PlotFrame& f = c.contFrame;
  const double n = s.slot[slots::spectrum].naxis1;
  for (int k = 1; k <= c.continuumPointCount; ++k)
    drawing.Add(Circle{{Twips(f.plotLeft + f.plotWidth * (c.ContinuumPointColumn(k) - 1) / n),
                        Twips(ScreenY(f, c.ContinuumPointValue(k)))},
                       Twips(RoundHalfEven(c.markerSize / 2.0)),
                       static_cast<float>(c.markerSize),
                       colours::blue});
}

}  // namespace

void OpenContinuum(Session& s) {
  ResetContinuum(s);
  s.continuum.continuumPower = 4;
}

Drawing PlotContinuum(Session& s, WindowSize window) {
  const std::span<const double> values = Values(s);
  PlotFrame& f = s.continuum.contFrame;
  LayoutPlot(f, window);
  SetXRange(f, 0, static_cast<double>(values.size()));
  SetYRange(f, 0, NiceUpperBound(RangeOf(values).largest));

  Drawing drawing(window, PlotCaption("File:  ", s.crunchFile, s.crunchHeader.objectName));
  DrawAxes(drawing, f);
  DrawStepCurve(drawing, f, values);
  DrawMarkers(drawing, s);
  // Over a spectrum that was divided by it, the fit would mean nothing.
  if (s.continuum.continuumFitDone && !s.continuum.fitUsed)
    DrawFit(drawing, s);
  return drawing;
}

int ContinuumColumnAt(const Session& s, double mouseX) {
  const PlotFrame& f = s.continuum.contFrame;
  const auto across = static_cast<float>((mouseX - f.plotLeft) / f.plotWidth);
  return RoundToInt(static_cast<double>(across) * s.slot[slots::spectrum].naxis1);
}

bool AddContinuumPoint(Session& s, int column) {
  Continuum& c = s.continuum;
  const auto point =
      Brightest(s, std::max(1, column - 5), std::min(Pixels(s.slot[slots::spectrum]), column + 5));
  if (!point)
    return false;
  AddPoint(c, *point);
  c.clickedColumn(c.continuumPointCount) = column;
  return true;
}

bool AddContinuumPixel(Session& s, int column) {
  Continuum& c = s.continuum;
  const double value = s.slot[slots::spectrum].spectrum(column);
  if (!(value > 0))
    return false;
  AddPoint(c, {column, value});
  return true;
}

bool DeleteContinuumPoint(Session& s, int column) {
  Continuum& c = s.continuum;
  const auto columns = c.ContinuumPointColumn.Range(1, c.continuumPointCount);
  const auto values = c.ContinuumPointValue.Range(1, c.continuumPointCount);
  const auto clicked = c.clickedColumn.Range(1, c.continuumPointCount);
  const auto found = std::find_if(columns.begin(), columns.end(),
                                  [=](double point) { return std::abs(point - column) < 10; });
  if (found == columns.end())
    return false;
  const auto at = found - columns.begin();
  std::copy(columns.begin() + at + 1, columns.end(), columns.begin() + at);
  std::copy(values.begin() + at + 1, values.end(), values.begin() + at);
  std::copy(clicked.begin() + at + 1, clicked.end(), clicked.begin() + at);
  --c.continuumPointCount;
  return true;
}

void FitContinuum(Session& s) {
  Continuum& c = s.continuum;
  if (s.manualFit == 0)
    SetAutomaticPoints(s);
  // Too few different columns give no fit, either.
  const auto columns = c.ContinuumPointColumn.Range(1, c.continuumPointCount);
  const auto fit =
      FitPolynomial(c.continuumPower, columns, c.ContinuumPointValue.Range(1, c.continuumPointCount));
  if (!fit)
    RefuseTooFewPoints(c.continuumPower, std::set<double>(columns.begin(), columns.end()).size());

  c.fittedPower = c.continuumPower;
  c.fittedByHand = s.manualFit != 0;
  c.fittedInterval = c.continuumInterval;
  const auto clicks = c.clickedColumn.Range(1, c.continuumPointCount);
  c.fittedClicks.assign(clicks.begin(), clicks.end());
  c.fitUsed = false;
  c.ContinuumCoefficients[c.fittedPower] = *fit;
  c.continuumFitMax = (*fit)(1);
  for (int i = 1; i <= Pixels(s.slot[slots::spectrum]); ++i)
    c.continuumFitMax = std::max(c.continuumFitMax, (*fit)(i));
  c.continuumFitDone = true;
}

Warnings NormalizeContinuum(Session& s) {
  Continuum& c = s.continuum;
  if (!c.continuumFitDone)
    throw Refusal("Hey, you need to fit the continuum first!");
  Slot& slot = s.slot[slots::spectrum];
  const Polynomial& fit = CurrentFit(c);
  int doubtful = 0;
  for (int i = 1; i <= Pixels(slot); ++i) {
    slot.spectrumWork(i) = slot.spectrum(i);
    const double level = fit(i);
    doubtful += level <= 0;
    if (level != 0)
      slot.spectrum(i) = slot.spectrumWork(i) * c.continuumFitMax / level;
  }
  c.normalized = c.fitUsed = true;
  c.continuumPointCount = 0;
  if (doubtful == 0)
    return {};
  return {"The fitted continuum is zero or negative at " + std::to_string(doubtful) +
          (doubtful == 1 ? " pixel." : " pixels.")};
}

bool RevertContinuum(Session& s) {
  Continuum& c = s.continuum;
  if (!c.normalized)
    return false;
  Slot& slot = s.slot[slots::spectrum];
  const auto before = slot.spectrumWork.Range(1, Pixels(slot));
  std::copy(before.begin(), before.end(), slot.spectrum.Range(1, Pixels(slot)).begin());
  c.normalized = false;
  ResetContinuum(s);
  return true;
}

void ResetContinuum(Session& s) {
  s.continuum.continuumPointCount = 0;
  s.continuum.continuumFitDone = false;
}

void AcceptContinuum(Session& s) {
  s.continuum.continuumPointCount = 0;
  s.workflow.saveSpectrumEnabled = true;
  if (s.continuum.continuumFitDone)
    s.workflow.continuumStatus = doneText;
}

}  // namespace halmek
