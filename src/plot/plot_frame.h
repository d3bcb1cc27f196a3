// The machinery that all plots share: axis limits, ticks, layout, the step curve and the mouse read-out.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "plot/drawing.h"

namespace halmek {

// The data range of both axes and the plot area in twips, by which positions and data are mapped on each
// other.
struct PlotFrame {
  int firstColumn = 0, lastColumn = 0;  // the columns shown, where a plot can zoom
  double xMin = 0, xMax = 0, xSpan = 0;
  double yMin = 0, yMax = 0, ySpan = 0;
  int plotLeft = 0, plotRight = 0, plotWidth = 0;
  int plotTop = 0, plotBottom = 0, plotHeight = 0;
  bool plotBusy = false;  // a drawing is under way; resizes and scrolls are ignored
};

// Axis limits below and above a data value, rounded to one or two digits: 347 gives 290 and 390. 0 for
// magnitudes below 0.00001.
double NiceLowerBound(double x);
double NiceUpperBound(double x);

// The distance of ticks on an axis of that span: 0.2, 0.5 or 1 times the power of ten below it, so that there
// are 2 to 10 of them: 347 gives 50. The span must be positive.
float TickStep(double span);

// The ticks of an axis from `low` to `high`. None where the span is not positive or the limits are so far
// from 0 that single precision cannot tell ticks apart.
struct Ticks {
  float step = 0;
  std::vector<float> values;
};
Ticks TicksBetween(double low, double high);

// Sets the six edges of the frame from the window's size: left 800, right width - 415, top 300, bottom
// height - 2050, and the distances between them.
void LayoutPlot(PlotFrame& frame, WindowSize window);

// The smallest and the largest of some values, as the plots look for them: from these bounds on.
struct ValueRange {
  double smallest = 99999, largest = -99999;
};
ValueRange RangeOf(std::span<const double> values);

void SetXRange(PlotFrame& frame, double low, double high);
void SetYRange(PlotFrame& frame, double low, double high);

// A coordinate as a drawing takes it; those far outside every window are brought nearer.
float Twips(double value);

// Where a data value lies, in twips; on the left or lower edge where the axis has no span.
double ScreenX(const PlotFrame& frame, double x);
double ScreenY(const PlotFrame& frame, double y);

// Draws grid, ticks and axis numbers of both axes, then the border. An axis without a positive span gets
// none. The numbers of the left axis have as many decimals as tell one tick from the next.
void DrawAxes(Drawing& drawing, const PlotFrame& frame, std::string_view xTitle = "Column");

// Draws the values as red steps joined by risers: step k of n from (k - 1) / n to k / n of the plot's width.
void DrawStepCurve(Drawing& drawing, const PlotFrame& frame, std::span<const double> values);

// "LEAD" "FILE" "     Object:  " "OBJECT"
std::string PlotCaption(std::string_view lead, std::string_view fileName, std::string_view objectName);

// True if the position, in twips, lies strictly inside the plot area.
bool IsInside(const PlotFrame& frame, double mouseX, double mouseY);

// What a window shows of the position under the pointer; the texts are empty, and the pointer an arrow,
// outside the plot area.
struct ReadOut {
  bool inside = false;
  double column = 0, value = 0;
  std::string columnText, valueText;
};

// Maps the plot's width onto the pixels 1..n, at single precision.
ReadOut ReadOutPosition(const PlotFrame& frame, double mouseX, double mouseY, int n);

}  // namespace halmek
