// The row plot.
#include "reduce/row_plot.h"

#include <algorithm>
#include <cmath>

#include "numeric/rounding.h"
#include "plot/number_text.h"
#include "reduce/zap.h"

namespace halmek {
namespace {

constexpr double leastShown = 100;

void SetColumns(PlotFrame& frame, int first, int last) {
  frame.firstColumn = first;
  frame.lastColumn = last;
}

int ColumnsShown(const PlotFrame& frame) { return frame.lastColumn - frame.firstColumn + 1; }

// The scroll bar of a zoomed row; its value is the centre column.
void SetColumnScroll(RowPlot& plot, int columns, double centre) {
  const int shown = ColumnsShown(plot.rowFrame);
  plot.columnScroll = {.min = RoundToInt(shown / 2.0),
                       .max = RoundToInt(columns - shown / 2.0),
                       .value = RoundToInt(centre),
                       .smallChange = RoundToInt(shown / 10.0),
                       .largeChange = shown};
}

// The scale and the edges. This plot's area counts its last twip, too.
void PrepareFrame(PlotFrame& frame, WindowSize window, ValueRange range) {
  LayoutPlot(frame, window);
  ++frame.plotWidth;
  ++frame.plotHeight;
  SetXRange(frame, frame.firstColumn - 1, frame.lastColumn);
  SetYRange(frame, NiceLowerBound(range.smallest), NiceUpperBound(range.largest));
}

void DrawUprightLine(Drawing& drawing, const PlotFrame& f, double x, Colour colour) {
  const auto at = Twips(RoundHalfEven(x));
  drawing.Add(Line{{at, Twips(f.plotTop)}, {at, Twips(f.plotBottom)}, colour});
}

bool IsShown(const PlotFrame& f, int column) { return column >= f.firstColumn - 1 && column <= f.lastColumn; }

// A step's left edge lies at column - 1, its right edge at column.
void DrawSelections(Drawing& drawing, const RowPlot& plot) {
  const PlotFrame& f = plot.rowFrame;
  if (!plot.zoomAwaitingFirst && IsShown(f, plot.zoomFirstColumn))
    DrawUprightLine(drawing, f, ScreenX(f, plot.zoomFirstColumn), colours::red);
  if (!plot.zapSelected)
    return;
  if (IsShown(f, plot.zapFirst - 1))
    DrawUprightLine(drawing, f, ScreenX(f, plot.zapFirst - 1), colours::blue);
  if (IsShown(f, plot.zapLast))
    DrawUprightLine(drawing, f, ScreenX(f, plot.zapLast), colours::blue);
}

double AcrossPlot(const PlotFrame& f, double mouseX) {
  return f.xMin + (mouseX - f.plotLeft) / (f.plotRight - f.plotLeft + 1) * f.xSpan;
}

}  // namespace

std::string RowNotShownMessage(int row) {
  return "Row " + std::to_string(row) + " cannot be shown, because it has values under 100.";
}

void OpenRowPlot(Session& s, int row) {
  const int columns = Columns(s), rows = Rows(s);
  if (row > rows)
    throw Refusal("Row to plot is greater than the number of rows.  Press any key to continue.");
  RowPlot& plot = s.rowPlot;
  plot.plotRow = std::max(1, row);
  plot.rowScroll = {.min = 1, .max = rows, .value = plot.plotRow, .smallChange = 1, .largeChange = 5};
  ShowFullRow(plot, columns);
  plot.columnScroll.smallChange = RoundToInt((columns - 1) / 10.0);
  plot.columnScroll.largeChange = columns - 1;
  plot.zoomAwaitingFirst = true;
  plot.hint = rowPlotHint;
  ClearZapSelection(plot);
}

std::optional<Drawing> DrawRowPlot(Session& s, WindowSize window) {
  RowPlot& plot = s.rowPlot;
  const int columns = Columns(s);
  plot.plotRow = std::clamp(plot.plotRow, 1, std::max(1, Rows(s)));
  if (columns <= 1)
    return std::nullopt;

  // Another frame may have come, or been trimmed, while the plot was zoomed.
  if (plot.rowFrame.firstColumn < 1 || plot.rowFrame.lastColumn > columns)
    ShowFullRow(plot, columns);

  // The scale fits the whole row, so that it stays while one zooms.
  const ValueRange range = RangeOf(s.image.Row(plot.plotRow, 1, columns));
  if (range.smallest < leastShown) {
    plot.hint = " " + RowNotShownMessage(plot.plotRow);
    plot.plotRow = plot.lastDrawnRow;
    plot.rowScroll.value = std::max(1, plot.lastDrawnRow);
    return std::nullopt;
  }
  plot.hint = rowPlotHint;
  PrepareFrame(plot.rowFrame, window, range);
  plot.lastDrawnRow = plot.rowScroll.value = plot.plotRow;
  return RepaintRowPlot(s, window);
}

Drawing RepaintRowPlot(const Session& s, WindowSize window) {
  const RowPlot& plot = s.rowPlot;
  const PlotFrame& f = plot.rowFrame;
  const Slot& frame = s.slot[slots::frame];
  Drawing drawing(window, "Plot Row   File: " + DataName(frame) + "   Object: " + frame.objectName);
  DrawAxes(drawing, f);
  DrawStepCurve(drawing, f, s.image.Row(plot.plotRow, f.firstColumn, f.lastColumn));
  DrawSelections(drawing, plot);
  return drawing;
}

int ColumnAt(const PlotFrame& f, double mouseX) {
  return static_cast<int>(std::trunc(AcrossPlot(f, mouseX))) + 1;
}

double ValueAt(const PlotFrame& f, double mouseY) {
  return f.yMin + f.ySpan * (f.plotBottom - mouseY) / (f.plotBottom - f.plotTop + 1);
}

ReadOut ReadOutRow(const PlotFrame& f, double mouseX, double mouseY) {
  if (!IsInside(f, mouseX, mouseY))
    return {};
  ReadOut r{.inside = true, .columnText = {}, .valueText = {}};
  r.column = ColumnAt(f, mouseX);
  r.value = ValueAt(f, mouseY);
  r.columnText = FormatFixed(r.column, 6, 0);
  r.valueText = FormatFixed(r.value, 8, 2);
  return r;
}

bool ClickForZoom(Session& s, double mouseX) {
  RowPlot& plot = s.rowPlot;
  PlotFrame& f = plot.rowFrame;
  const int clicked = std::clamp(RoundToInt(AcrossPlot(f, mouseX)), 1, std::max(1, Columns(s)));
  if (plot.zoomAwaitingFirst) {
    plot.zoomFirstColumn = clicked;
    plot.zoomAwaitingFirst = false;
    return false;
  }
  if (clicked == plot.zoomFirstColumn)
    return false;
  SetColumns(f, std::min(clicked, plot.zoomFirstColumn), std::max(clicked, plot.zoomFirstColumn));
  SetColumnScroll(plot, Columns(s), (f.firstColumn + f.lastColumn + 1) / 2.0);
  plot.columnScroll.smallChange = RoundToInt((f.lastColumn - f.firstColumn) / 10.0);
  plot.columnScroll.largeChange = f.lastColumn - f.firstColumn;
  plot.zoomAwaitingFirst = true;
  return true;
}

void ClickForZap(Session& s, double mouseX) {
  SelectForZap(s.rowPlot, std::clamp(ColumnAt(s.rowPlot.rowFrame, mouseX), 1, std::max(1, Columns(s))));
}

void Deselect(RowPlot& plot) {
  plot.zoomAwaitingFirst = true;
  ClearZapSelection(plot);
}

void ZoomIn(RowPlot& plot, int columns) {
  PlotFrame& f = plot.rowFrame;
  const int shown = ColumnsShown(f);
  if (shown < 20)
    return;
  SetColumns(f, RoundToInt(f.firstColumn + shown / 4.0), RoundToInt(f.lastColumn - shown / 4.0));
  SetColumnScroll(plot, columns, (f.firstColumn + f.lastColumn + 1) / 2.0);
}

void ZoomOut(RowPlot& plot, int columns) {
  PlotFrame& f = plot.rowFrame;
  const int shown = ColumnsShown(f);
  int first = RoundToInt(f.firstColumn - shown / 2.0);
  int last = RoundToInt(f.lastColumn + shown / 2.0);
  if (first < 1) {
    first = 1;
    last = 2 * shown;
  }
  if (last > columns) {
    last = columns;
    first = std::max(1, columns - 2 * shown + 1);
  }
  SetColumns(f, first, last);
  SetColumnScroll(plot, columns, (first + last - 1) / 2.0);
}

void ShowFullRow(RowPlot& plot, int columns) {
  SetColumns(plot.rowFrame, 1, columns);
  plot.columnScroll.min = plot.columnScroll.value = RoundToInt(columns / 2.0);
  plot.columnScroll.max = RoundToInt(columns - columns / 2.0);
}

void ScrollColumns(RowPlot& plot, int value, int columns) {
  PlotFrame& f = plot.rowFrame;
  if (f.plotBusy)
    return;
  const int shown = ColumnsShown(f);
  int first = RoundToInt(value - shown / 2.0);
  int last = RoundToInt(shown / 2.0 + value);
  if (first < 1) {
    first = 1;
    last = shown;
  }
  if (last > columns) {
    last = columns;
    first = std::max(1, columns - shown + 1);
  }
  SetColumns(f, first, last);
  plot.columnScroll.value = value;
}

void ScrollRows(RowPlot& plot, int value, int rows) {
  if (plot.rowFrame.plotBusy)
    return;
  plot.plotRow = plot.rowScroll.value = std::clamp(value, 1, std::max(1, rows));
}

}  // namespace halmek
