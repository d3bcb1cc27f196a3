// Deviation fits.
#include "calib/deviations.h"

#include <algorithm>
#include <cmath>

#include "calib/line_list.h"
#include "plot/number_text.h"
#include "plot/wording.h"

namespace halmek {
namespace {

constexpr int highestPower = 4;

std::string TooFewTerms(int power) {
  return "For a fit of power " + std::to_string(power) + ", you need at least " + std::to_string(power + 1) +
         " terms.  Please try again.";
}

double RmsOf(double sumSq, int degreesOfFreedom) {
  return degreesOfFreedom > 0 ? std::sqrt(sumSq / degreesOfFreedom) : 0;
}

// Whether the fit of the arc's power has been made, perhaps through other lines than it has now.
bool WasFitted(const Arc& arc) { return arc.fitDone && arc.DeviationCoef[arc.fitPower].power != 0; }

// What dots and curve are stands in the band below the plot.
void DrawLegend(Drawing& drawing, const PlotFrame& f) {
  const auto top = static_cast<float>(drawing.size.height - 1750);
  const auto left = Twips(f.plotLeft);
  const float middle = top + 100;
  drawing.Add(Circle{{left + 150, middle}, 0, 20, colours::red});
  drawing.Add(Text{{left + 300, top}, "Diff = WL(LinFit) - WL(tables)", "Label9"});
  drawing.Add(Line{{left + 3900, middle}, {left + 4200, middle}, colours::blue});
  drawing.Add(Text{{left + 4300, top}, "Dispers.Corr'n Func.", "Label11"});
  drawing.Add(Text{{100, Twips(f.plotTop + f.plotHeight / 2)}, "Ang.", "Label12"});
}

void DrawDots(Drawing& drawing, const Arc& arc) {
  for (int k = 1; k <= arc.LineCount; ++k)
    drawing.Add(Circle{{Twips(ScreenX(arc.deviationFrame, arc.ArcLineColumn(k))),
                        Twips(ScreenY(arc.deviationFrame, arc.Deviation(k)))},
                       0,
                       20,
                       colours::red});
}

void DrawDeviationCurve(Drawing& drawing, const Arc& arc, int pixels) {
  Polyline curve{.points = {}, .colour = colours::blue};
  for (int p = 1; p <= pixels; ++p)
    curve.points.push_back(
        {Twips(ScreenX(arc.deviationFrame, p)), Twips(ScreenY(arc.deviationFrame, CorrectionAt(arc, p)))});
  drawing.Add(std::move(curve));
}

}  // namespace

void ComputeDeviations(Session& s, int a) {
  Arc& arc = s.arc[a];
  for (int k = 1; k <= arc.LineCount; ++k) {
    s.estimatedWavelength = arc.linIntercept + arc.linSlope * arc.ArcLineColumn(k);
    arc.Deviation(k) = s.estimatedWavelength - arc.ArcLineWavelength(k);
  }
}

void OpenDeviations(Session& s, int a) {
  s.currentSlot = a;
  if (s.arc[a].LineCount < 3)
    throw Refusal("Hey, you need to identify three or more peaks first!");
  ComputeDeviations(s, a);
  s.workflow.arc[a].deviationStatus = doneText;
}

void FitDeviations(Session& s, int a) {
  Arc& arc = s.arc[a];
  const int n = arc.LineCount, power = arc.fitPower;
  if (n < 3 && !arc.maskApplied)
    throw Refusal("You haven't identified enough lines.  At least three are required.");
  if (n < power + 1)
    throw Refusal(TooFewTerms(power));
  if (power > highestPower)
    throw Refusal("Sorry; this has not been implemented yet.");
  const auto fit = FitPolynomial(power, arc.ArcLineColumn.Range(1, n), arc.Deviation.Range(1, n));
  if (!fit)
    throw Refusal(TooFewTerms(power));

  for (int k = 1; k <= n; ++k) {
    s.FitColumn(k) = arc.ArcLineColumn(k);
    s.FitWavelength(k) = arc.Deviation(k);
  }
  arc.DeviationCoef[power] = *fit;
  arc.fitDone = true;
  arc.fitIsStale[power] = false;
  Workflow::ArcStatus& status = s.workflow.arc[a];
  status.deviationStatus = status.fitWindowStatus = status.fitStatus = doneText;
}

double LinearRms(const Arc& arc) {
  double sumSq = 0;
  for (int k = 1; k <= arc.LineCount; ++k) {
    const double residual = arc.linIntercept + arc.linSlope * arc.ArcLineColumn(k) - arc.ArcLineWavelength(k);
    sumSq += residual * residual;
  }
  return RmsOf(sumSq, arc.LineCount - 1);
}

double DeviationRms(const Arc& arc) {
  double sumSq = 0;
  for (int k = 1; k <= arc.LineCount; ++k) {
    const double residual = arc.Deviation(k) - CorrectionAt(arc, arc.ArcLineColumn(k));
    sumSq += residual * residual;
  }
  return RmsOf(sumSq, arc.LineCount - arc.fitPower - 1);
}

bool IsFitted(const Arc& arc) { return WasFitted(arc) && !arc.fitIsStale[arc.fitPower]; }

FitInWords DescribeFit(const Arc& arc) {
  const int n = arc.LineCount, power = arc.fitPower;
  const auto residual = [&](int k, bool isFitted) {
    return arc.Deviation(k) - (isFitted ? CorrectionAt(arc, arc.ArcLineColumn(k)) : 0);
  };
  const auto describe = [&](std::string fit, double rms, bool isFitted) -> FitInWords {
    int worst = 1;
    for (int k = 2; k <= n; ++k)
      if (std::fabs(residual(k, isFitted)) > std::fabs(residual(worst, isFitted)))
        worst = k;
    const std::string pixels =
        arc.linSlope == 0 ? "" : " (" + FixedText(std::fabs(rms / arc.linSlope), 3) + " pixels)";
    return {std::move(fit), "RMS " + FixedText(rms, 4) + " Angstroms" + pixels,
            "largest " + FixedText(residual(worst, isFitted), 4) + " at " +
                GeneralText(arc.ArcLineWavelength(worst)) + " Angstroms"};
  };

  const std::string lines = Count(n, "line");
  const std::string fit = "power " + std::to_string(power) + " through " + lines;
  if (n < 3)
    return {lines + " identified: at least three are needed", {}, {}};
  if (!WasFitted(arc))
    return describe("power " + std::to_string(power) + " not fitted yet; straight line through " + lines,
                    LinearRms(arc), false);
  if (!IsFitted(arc))
    return {"power " + std::to_string(power) + " was fitted before the lines changed: fit it again", {}, {}};
  if (n == power + 1)
    return {fit + ", as many as it needs: nothing tells how good it is", {}, {}};
  return describe(fit, DeviationRms(arc), true);
}

double CorrectionAt(const Arc& arc, double column) { return arc.DeviationCoef[arc.fitPower](column); }

Drawing PlotDeviations(Session& s, int a, WindowSize window) {
  RequireArc(s, a);
  Arc& arc = s.arc[a];
  const int pixels = Pixels(s.slot[a]);
  double smallest = 0, largest = 0;
  for (double deviation : arc.Deviation.Range(1, arc.LineCount)) {
    smallest = std::min(smallest, deviation);
    largest = std::max(largest, deviation);
  }
  PlotFrame& f = arc.deviationFrame;
  LayoutPlot(f, window);
  SetXRange(f, 1, pixels);
  SetYRange(f, NiceLowerBound(smallest), NiceUpperBound(largest));

  Drawing drawing(window, "Plot Wavelength Differences - Arc " + std::to_string(a));
  DrawAxes(drawing, f);
  if (arc.fitDone && arc.DeviationCoef[arc.fitPower].power != 0)
    DrawDeviationCurve(drawing, arc, pixels);
  DrawDots(drawing, arc);
  DrawLegend(drawing, f);
  return drawing;
}

void ResetDeviations(Session& s, int a) {
  s.arc[a].fitDone = false;
  s.workflow.arc[a].fitWindowStatus.clear();
  s.workflow.arc[a].fitStatus.clear();
}

void RequireCalibrated(const Session& s, int a) {
  if (!s.arc[a].fitDone)
    throw Refusal("Hey, you have not completed the line identification and fitting process!");
}

void AcceptDeviations(Session& s, int a) {
  if (!s.arc[a].fitDone)
    throw Refusal("Hey, you need to do the fit!");
  s.workflow.saveSpectrumEnabled = true;
  if (IsFitted(s.arc[a]))
    s.workflow.arc[a].fitStatus = doneText;
}

}  // namespace halmek
