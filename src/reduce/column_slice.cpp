// The column slice.
#include "reduce/column_slice.h"

#include <algorithm>
#include <cmath>
#include <vector>

#include "numeric/rounding.h"
#include "plot/number_text.h"
#include "reduce/background.h"

namespace halmek {
namespace {

std::vector<double> ColumnValues(const Session& s, int column) {
  std::vector<double> values;
  for (int row = 1; row <= Rows(s); ++row)
    values.push_back(s.image(row, column));
  return values;
}

void PrepareFrame(Session& s, WindowSize window, const std::vector<double>& values) {
  PlotFrame& f = s.slice.colFrame;
  LayoutPlot(f, window);
  ++f.plotWidth;  // counts its last twip, which the height does not
  SetXRange(f, 0, Rows(s));

  const ValueRange range = RangeOf(values);
  const double low = s.slice.fixedScale ? 0 : NiceLowerBound(range.smallest);
  const double high = NiceUpperBound(s.slice.fixedScale ? s.imageMax : range.largest);
  SetYRange(f, low, high < 0 ? 1 : high);
}

// A bracket over rows first..last at the height of a value. Row r stands at r - 1, the left edge of its step.
void DrawBracket(Drawing& drawing, const PlotFrame& f, int first, int last, double value) {
  constexpr float half = 100;
  const auto left = Twips(ScreenX(f, first - 1)), right = Twips(ScreenX(f, last - 1));
  const auto y = Twips(ScreenY(f, value));
  drawing.Add(Line{{left, y - half}, {left, y + half}, colours::black});
  drawing.Add(Line{{right, y - half}, {right, y + half}, colours::black});
  drawing.Add(Line{{left, y}, {right, y}, colours::black});
}

void DrawMarkers(Drawing& drawing, const Session& s) {
  const Slice& slice = s.slice;
  if (slice.apertureState == Slice::apertureSet)
    DrawBracket(drawing, slice.colFrame, slice.apertureFirstRow, slice.apertureLastRow,
                slice.apertureMarkValue);
  if (slice.backgroundClicks >= 2)
    DrawBracket(drawing, slice.colFrame, slice.background1FirstRow, slice.background1LastRow,
                slice.backgroundMarkValue);
  if (slice.backgroundClicks == 4)
    DrawBracket(drawing, slice.colFrame, slice.background2FirstRow, slice.background2LastRow,
                slice.backgroundMarkValue);
}

void DrawBackgroundModel(Drawing& drawing, const Session& s, Colour colour) {
  const PlotFrame& f = s.slice.colFrame;
  Polyline model{.points = {}, .colour = colour};
  for (int row = 1; row <= Rows(s); ++row)
    model.points.push_back({Twips(ScreenX(f, row - 1)),
                            Twips(ScreenY(f, BackgroundAt(s.background, s.slice.sliceColumn, row)))});
  drawing.Add(std::move(model));
}

int ClampedRow(const Session& s, int row) { return std::clamp(row, 1, std::max(1, Rows(s))); }

// The row named by a right click, which is rounded, where the read-out is truncated.
int ClickedRow(const Session& s, double mouseX) {
  const PlotFrame& f = s.slice.colFrame;
  return ClampedRow(s, RoundToInt(1 + Rows(s) * (RoundHalfEven(mouseX) - f.plotLeft) / f.plotWidth));
}

void RequireRows(const Session& s, std::initializer_list<int> chosen) {
  for (int row : chosen)
    RequireWithin("Row", row, Rows(s));
}

}  // namespace

void OpenColumnPlot(Session& s) {
  // Half of a single column rounds to 0.
  s.slice.sliceColumn = std::max(1, RoundToInt(s.slot[slots::frame].naxis1 / 2));
  s.slice.fixedScale = false;
  s.background.backgroundPower = 0;
}

Drawing DrawColumnPlot(Session& s, WindowSize window) {
  const Slot& frame = s.slot[slots::frame];
  const std::vector<double> values = ColumnValues(s, s.slice.sliceColumn);
  PrepareFrame(s, window, values);

  const PlotFrame& f = s.slice.colFrame;
  Drawing drawing(window, "Plot Column   File: " + DataName(frame) + "   Object: " + frame.objectName);
  DrawAxes(drawing, f, "Row");
  DrawMarkers(drawing, s);
  if (s.background.backgroundFitted)
    DrawBackgroundModel(drawing, s, colours::green);
  DrawStepCurve(drawing, f, values);
  return drawing;
}

ReadOut ReadOutSlice(const Session& s, double mouseX, double mouseY) {
  const PlotFrame& f = s.slice.colFrame;
  if (!IsInside(f, mouseX, mouseY))
    return {};
  ReadOut r{.inside = true, .columnText = {}, .valueText = {}};
  r.column = std::trunc(Rows(s) * (mouseX - f.plotLeft) / (f.plotRight - f.plotLeft)) + 1;
  r.value = f.yMin + f.ySpan * (f.plotBottom - mouseY) / (f.plotBottom - f.plotTop);
  r.columnText = FormatFixed(r.column, 6, 0);
  r.valueText = FormatFixed(r.value, 8, 2);
  return r;
}

void ClickForAperture(Session& s, double mouseX, double mouseY) {
  Slice& slice = s.slice;
  const ReadOut at = ReadOutSlice(s, mouseX, mouseY);
  if (!at.inside)
    return;
  const int row = ClampedRow(s, RoundToInt(at.column));
  if (slice.apertureState == Slice::nothing) {
    slice.apertureFirstRow = row;
    slice.apertureLastRow = 0;  // until the second click there is no aperture
    slice.apertureMarkValue = at.value;
    slice.apertureState = Slice::firstRowSet;
  } else if (slice.apertureState == Slice::firstRowSet) {
    slice.apertureLastRow = row;
    slice.apertureState = Slice::apertureSet;
  }
}

void ClickForBackground(Session& s, double mouseX, double mouseY) {
  Slice& slice = s.slice;
  const PlotFrame& f = slice.colFrame;
  if (!IsInside(f, mouseX, mouseY) || slice.backgroundClicks == 4)
    return;
  const int row = ClickedRow(s, mouseX);
  switch (++slice.backgroundClicks) {
    case 1:
      slice.background1FirstRow = row;
      slice.backgroundMarkValue = f.yMin + f.ySpan * (f.plotBottom - RoundHalfEven(mouseY)) / f.plotHeight;
      break;
    case 2:
      slice.background1LastRow = row;
      break;
    case 3:
      slice.background2FirstRow = row;
      break;
    default:
      slice.background2LastRow = row;
      slice.apertureState = Slice::complete;
  }
}

std::string MarksText(const Slice& slice) {
  const auto range = [](int first, int last, bool isWhole) {
    return std::to_string(first) + " to " + (isWhole ? std::to_string(last) : "..");
  };
  std::string text;
  const bool isWhole = slice.apertureState != Slice::firstRowSet && slice.apertureLastRow != 0;
  if (slice.apertureState != Slice::nothing && slice.apertureFirstRow != 0)
    text = "Aperture " + range(slice.apertureFirstRow, slice.apertureLastRow, isWhole);
  else if (slice.apertureState == Slice::complete)
    text = "No aperture";
  if (slice.backgroundClicks >= 1)
    text += (text.empty() ? "" : "   ") +
            ("Background " +
             range(slice.background1FirstRow, slice.background1LastRow, slice.backgroundClicks >= 2));
  if (slice.backgroundClicks >= 3)
    text += ", " + range(slice.background2FirstRow, slice.background2LastRow, slice.backgroundClicks == 4);
  return text;
}

void SetAperture(Session& s, int first, int last) {
  RequireRows(s, {first, last});
  Slice& slice = s.slice;
  // Marks that were clicked stay at their height.
  if (slice.apertureFirstRow != first || slice.apertureLastRow != last)
    slice.apertureMarkValue = s.image(first, RoundToInt(s.slot[slots::frame].naxis1 / 2));
  slice.apertureFirstRow = slice.stepFirstRow = first;
  slice.apertureLastRow = slice.stepLastRow = last;
  if (slice.apertureState != Slice::complete)
    slice.apertureState = Slice::apertureSet;
}

void SetBackgroundRanges(Session& s, int first1, int last1, int first2, int last2) {
  RequireRows(s, {first1, last1, first2, last2});
  Slice& slice = s.slice;
  if (slice.backgroundClicks != 4 || slice.background1FirstRow != first1)
    slice.backgroundMarkValue = s.image(first1, RoundToInt(s.slot[slots::frame].naxis1 / 2));
  slice.background1FirstRow = first1;
  slice.background1LastRow = last1;
  slice.background2FirstRow = first2;
  slice.background2LastRow = last2;
  slice.backgroundClicks = 4;
  slice.apertureState = Slice::complete;
}

void ClearSelection(Session& s) {
  s.slice.apertureState = Slice::nothing;
  s.slice.backgroundClicks = 0;
  s.workflow.sliceStatus.clear();
}

void ClearBackgroundFit(Session& s) {
  s.background.backgroundFitted = false;
  s.workflow.sliceStatus.clear();
}

void AcceptBackground(Session& s) {
  if (!s.background.backgroundFitted)
    throw Refusal("Background fit was not done.  Fit background or press 'Cancel'.");
  s.workflow.crunchEnabled = true;
  s.workflow.sliceStatus = doneText;
}

void CancelBackground(Session& s) {
  s.slice.apertureState = Slice::nothing;
  s.slice.backgroundClicks = 0;
  s.background.backgroundFitted = false;
  s.workflow.crunchEnabled = false;
  s.workflow.sliceStatus.clear();
}

}  // namespace halmek
