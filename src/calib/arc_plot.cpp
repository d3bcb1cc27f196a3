// The arc plot.
#include "calib/arc_plot.h"

#include <algorithm>
#include <cmath>

#include "calib/deviations.h"
#include "calib/line_list.h"
#include "numeric/rounding.h"
#include "plot/number_text.h"

namespace halmek {
namespace {

constexpr double markLength = 0.05;  // of the plot's height
constexpr double markReach = 75;     // twips from a mark within which the pointer means it

void MarkIdentifiedLines(Drawing& drawing, const Arc& arc, int a) {
  const Colour colour = a == 1 ? Colour{255, 0, 255} : Colour{0, 150, 150};
  const PlotFrame& f = arc.plotFrame;
  for (double column : arc.ArcLineColumn.Range(1, arc.LineCount)) {
    const auto x = Twips(ScreenX(f, column));
    const auto top = Twips(f.plotTop);
    drawing.Add(Line{{x, top}, {x, top + Twips(markLength * f.plotHeight)}, colour, 2});
  }
}

}  // namespace

void OpenArcPlot(Session& s, int a) {
  RequireArc(s, a);
  s.currentSlot = a;
  Arc& arc = s.arc[a];
  if (arc.LineCount >= 2)
    FitDispersionLine(s, a);
  arc.linRms = LinearRms(arc);

  Workflow::ArcStatus& status = s.workflow.arc[a];
  status.maskStatus = arc.maskApplied ? doneText : "";
  status.deviationStatus = IsFitted(arc) ? doneText : "";
}

Drawing PlotArc(Session& s, int a, WindowSize window) {
  RequireArc(s, a);
  const Slot& slot = s.slot[a];
  const std::span<const double> values = slot.spectrum.Range(1, Pixels(slot));
  const ValueRange range = RangeOf(values);
  PlotFrame& f = s.arc[a].plotFrame;
  LayoutPlot(f, window);
  SetXRange(f, 1, static_cast<double>(values.size()));
  SetYRange(f, NiceLowerBound(range.smallest), NiceUpperBound(range.largest));

  Drawing drawing(window,
                  PlotCaption("Arc " + std::to_string(a) + "   File:  ", DataName(slot), slot.objectName));
  DrawAxes(drawing, f);
  DrawStepCurve(drawing, f, values);
  MarkIdentifiedLines(drawing, s.arc[a], a);
  return drawing;
}

std::optional<int> ArcColumnAt(const Session& s, int a, double mouseX, double mouseY) {
  const PlotFrame& f = s.arc[a].plotFrame;
  const double x = RoundHalfEven(mouseX), y = RoundHalfEven(mouseY);
  if (!IsInside(f, x, y))
    return std::nullopt;
  return RoundToInt((Pixels(s.slot[a]) - 1) * ((x - f.plotLeft) / (f.plotRight - f.plotLeft)) + 1);
}

ArcReadOut ReadOutArc(const Session& s, int a, const PlotFrame& frame, double mouseX, double mouseY) {
  const Arc& arc = s.arc[a];
  ArcReadOut r{ReadOutPosition(frame, mouseX, mouseY, Pixels(s.slot[a])), {}};
  if (r.inside && arc.LineCount >= 2)
    r.wavelengthText = FormatFixed(arc.linIntercept + arc.linSlope * r.column, 8, 2);
  return r;
}

std::string MarkTextAt(const Session& s, int a, double mouseX, double mouseY) {
  const Arc& arc = s.arc[a];
  const PlotFrame& f = arc.plotFrame;
  if (mouseY < f.plotTop - markReach || mouseY > f.plotTop + markLength * f.plotHeight + markReach)
    return {};
  int nearest = 0;
  double distance = markReach;
  for (int k = 1; k <= arc.LineCount; ++k) {
    const double off = std::fabs(ScreenX(f, arc.ArcLineColumn(k)) - mouseX);
    if (off <= distance) {
      distance = off;
      nearest = k;
    }
  }
  if (nearest == 0)
    return {};
  return GeneralText(arc.ArcLineWavelength(nearest)) + " Angstroms at column " +
         FixedText(arc.ArcLineColumn(nearest), 3);
}

}  // namespace halmek
