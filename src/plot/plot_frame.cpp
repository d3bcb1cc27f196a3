// Axis limits, ticks, layout, the step curve and the mouse read-out.
#include "plot/plot_frame.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "plot/number_text.h"

namespace halmek {
namespace {

// The divisor that turns a natural into a decimal logarithm; slightly short of ln 10, so that an exact power
// of ten may land one decade lower.
constexpr double lnTen = 2.302585;

constexpr float tickLength = 100;

bool HasSpan(double span) { return span > 0 && std::isfinite(span); }

double DecadeOf(double magnitude) { return std::pow(10.0, std::floor(std::log(magnitude) / lnTen)); }

// The share of a decade, in tenths, by which limits and ticks step at mantissa `m`.
double TenthsFor(double m) { return m < 2 ? 2 : m < 5 ? 5 : 10; }

// At most `count` characters of a number, but never less than its whole part, which would be another number.
std::string FirstCharacters(const std::string& text, int count) {
  return text.substr(0, std::max(static_cast<size_t>(count), std::min(text.find('.'), text.size())));
}

// How many decimals tell one tick from the next: the step is 1, 2 or 5 of some decade.
int DecimalsOf(float step) {
  return std::max(0, -static_cast<int>(std::floor(std::log10(static_cast<double>(step)) + 1e-6)));
}

// A number of the left axis, with an exponent where it would be too long beside the plot.
std::string ValueLabel(float tick, int decimals) {
  constexpr size_t width = 6, mostCharacters = 7;
  std::string text = FixedText(tick == 0 ? 0 : tick, decimals);
  if (text.size() > mostCharacters)
    text = GeneralText(tick);
  return std::string(width - std::min(width, text.size()), ' ') + text;
}

void DrawVerticalGrid(Drawing& drawing, const PlotFrame& f, const Ticks& ticks) {
  const float top = Twips(f.plotTop), bottom = Twips(f.plotBottom);
  for (float tick : ticks.values) {
    const double exact = ScreenX(f, tick);
    if (exact < f.plotLeft || exact > f.plotRight)
      continue;
    const float x = Twips(exact);
    drawing.Add(Line{{x, top}, {x, bottom}, colours::grey});
    drawing.Add(Line{{x, top}, {x, top + tickLength}, colours::black});
    drawing.Add(Line{{x, bottom}, {x, bottom - tickLength}, colours::black});
  }
}

void DrawHorizontalGrid(Drawing& drawing, const PlotFrame& f, const Ticks& ticks) {
  const float left = Twips(f.plotLeft), right = Twips(f.plotRight);
  for (float tick : ticks.values) {
    const double exact = ScreenY(f, tick);
    if (exact < f.plotTop || exact > f.plotBottom)
      continue;
    const float y = Twips(exact);
    drawing.Add(Line{{left, y}, {right, y}, colours::grey});
    drawing.Add(Line{{left, y}, {left + tickLength, y}, colours::black});
    drawing.Add(Line{{right - tickLength, y}, {right, y}, colours::black});
  }
}

void DrawXLabels(Drawing& drawing, const PlotFrame& f, const Ticks& ticks, std::string_view title) {
  const float numbersTop = Twips(drawing.size.height - 2000);
  const auto label = [&](float tick, std::string_view control) {
    drawing.Add(
        Text{{Twips(ScreenX(f, tick) - 200), numbersTop}, FirstCharacters(GeneralText(tick), 6), control});
  };
  if (!ticks.values.empty()) {
    label(ticks.values.front(), "Label1");
    label(ticks.values.back(), "Label2");
  }
  drawing.Add(Text{
      {Twips(0.9 * drawing.size.width), Twips(drawing.size.height - 1800)}, std::string(title), "Label6"});
}

void DrawYLabels(Drawing& drawing, const PlotFrame& f, const Ticks& ticks) {
  if (ticks.values.empty())
    return;
  const auto label = [&](float tick, std::string_view control) {
    drawing.Add(Text{{0, Twips(ScreenY(f, tick) - 100)}, ValueLabel(tick, DecimalsOf(ticks.step)), control});
  };
  label(ticks.values.back(), "Label3");
  label(ticks.values.front(), "Label4");
  drawing.Add(Text{{0, Twips(f.plotTop + 0.6 * f.plotHeight)}, GeneralText(ticks.step), "Label8"});
}

void DrawBorder(Drawing& drawing, const PlotFrame& f) {
  const float left = Twips(f.plotLeft), right = Twips(f.plotRight);
  const float top = Twips(f.plotTop), bottom = Twips(f.plotBottom);
  drawing.Add(Line{{left, top}, {right, top}, colours::black});
  drawing.Add(Line{{right, top}, {right, bottom}, colours::black});
  drawing.Add(Line{{right, bottom}, {left, bottom}, colours::black});
  drawing.Add(Line{{left, bottom}, {left, top}, colours::black});
  drawing.plotTopLeft = {left, top};
  drawing.plotBottomRight = {right, bottom};
}

// Truncation of mantissa x 10 -+ step to a limit, in tenths of the decade.
double NiceBound(double x, int direction) {
  if (std::fabs(x) < 0.00001)
    return 0;
  const double decade = DecadeOf(std::fabs(x));
  const double m = x / decade;
  const double bound = std::trunc(m * 10 + direction * TenthsFor(m)) * decade / 10;
  // At the end of the range of a double there is nothing rounder beyond.
  return std::isfinite(bound) ? bound : x;
}

}  // namespace

double NiceLowerBound(double x) { return NiceBound(x, -1); }

double NiceUpperBound(double x) { return NiceBound(x, +1); }

float TickStep(double span) {
  const auto decade = static_cast<float>(DecadeOf(span));
  return static_cast<float>(decade * TenthsFor(span / decade) / 10);
}

Ticks TicksBetween(double low, double high) {
  const double span = high - low;
  if (!(span > 0) || !std::isfinite(span))
    return {};
  const float step = TickStep(span);
  constexpr double mostTicks = 1 << 24;
  if (!(step > 0) || !std::isfinite(step) || std::fabs(low) / step > mostTicks ||
      std::fabs(high) / step > mostTicks)
    return {};

  const auto valueAt = [step](int64_t i) { return static_cast<float>(i) * step; };
  auto first = static_cast<int64_t>(std::floor(low / step));
  while (valueAt(first) < low)
    ++first;
  auto last = static_cast<int64_t>(std::floor(high / step));
  while (valueAt(last) > high)
    --last;

  Ticks ticks{.step = step, .values = {}};
  for (int64_t i = first; i <= last; ++i)
    ticks.values.push_back(valueAt(i));
  return ticks;
}

void LayoutPlot(PlotFrame& f, WindowSize window) {
  f.plotLeft = 800;
  f.plotRight = window.width - 415;
  f.plotWidth = f.plotRight - f.plotLeft;
  f.plotTop = 300;
  f.plotBottom = window.height - 2050;
  f.plotHeight = f.plotBottom - f.plotTop;
}

ValueRange RangeOf(std::span<const double> values) {
  ValueRange range;
  for (double value : values) {
    range.smallest = std::min(range.smallest, value);
    range.largest = std::max(range.largest, value);
  }
  return range;
}

void SetXRange(PlotFrame& f, double low, double high) {
  f.xMin = low;
  f.xMax = high;
  f.xSpan = high - low;
}

void SetYRange(PlotFrame& f, double low, double high) {
  f.yMin = low;
  f.yMax = high;
  f.ySpan = high - low;
}

float Twips(double value) {
  constexpr double farOutside = 1e7;
  return static_cast<float>(std::clamp(value, -farOutside, farOutside));
}

double ScreenX(const PlotFrame& f, double x) {
  return HasSpan(f.xSpan) ? f.plotLeft + f.plotWidth * (x - f.xMin) / f.xSpan : f.plotLeft;
}

double ScreenY(const PlotFrame& f, double y) {
  // Without a span every value lies on the bottom edge.
  return HasSpan(f.ySpan) ? f.plotBottom - f.plotHeight * (y - f.yMin) / f.ySpan : f.plotBottom;
}

void DrawAxes(Drawing& drawing, const PlotFrame& frame, std::string_view xTitle) {
  const Ticks xTicks = TicksBetween(frame.xMin, frame.xMax);
  DrawVerticalGrid(drawing, frame, xTicks);
  DrawXLabels(drawing, frame, xTicks, xTitle);
  const Ticks yTicks = TicksBetween(frame.yMin, frame.yMax);
  DrawHorizontalGrid(drawing, frame, yTicks);
  DrawYLabels(drawing, frame, yTicks);
  DrawBorder(drawing, frame);
}

void DrawStepCurve(Drawing& drawing, const PlotFrame& f, std::span<const double> values) {
  Polyline curve{.points = {}, .colour = colours::red};
  curve.points.reserve(2 * values.size());
  const double n = static_cast<double>(values.size());
  double x = f.plotLeft;
  for (size_t i = 0; i < values.size(); ++i) {
    const float y = Twips(ScreenY(f, values[i]));
    curve.points.push_back({Twips(x), y});
    x = f.plotLeft + f.plotWidth * static_cast<double>(i + 1) / n;
    curve.points.push_back({Twips(x), y});
  }
  drawing.Add(std::move(curve));
}

std::string PlotCaption(std::string_view lead, std::string_view fileName, std::string_view objectName) {
  std::string caption(lead);
  caption += fileName;
  caption += "     Object:  ";
  caption += objectName;
  return caption;
}

bool IsInside(const PlotFrame& f, double mouseX, double mouseY) {
  return mouseX > f.plotLeft && mouseX < f.plotRight && mouseY > f.plotTop && mouseY < f.plotBottom;
}

ReadOut ReadOutPosition(const PlotFrame& f, double mouseX, double mouseY, int n) {
  if (!IsInside(f, mouseX, mouseY))
    return {};
  const auto across = static_cast<float>((mouseX - f.plotLeft) / (f.plotRight - f.plotLeft));
  const auto up = static_cast<float>((f.plotBottom - mouseY) / (f.plotBottom - f.plotTop));
  ReadOut r{.inside = true, .columnText = {}, .valueText = {}};
  r.column = 1 + static_cast<double>(across) * (n - 1);
  r.value = f.yMin + static_cast<double>(up) * (f.yMax - f.yMin);
  r.columnText = FormatFixed(r.column, 6, 0);
  r.valueText = FormatFixed(r.value, 8, 2);
  return r;
}

}  // namespace halmek
