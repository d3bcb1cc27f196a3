// The steps on arcs and on the object.
#include <algorithm>
#include <cmath>

#include "calib/deviations.h"
#include "calib/dispersion.h"
#include "calib/line_list.h"
#include "calib/line_mask.h"
#include "fits/world_coordinates.h"
#include "numeric/number_prefix.h"
#include "numeric/rounding.h"
#include "plot/number_text.h"
#include "plot/wording.h"
#include "steps/execute.h"
#include "steps/slot_names.h"

namespace halmek::steps {
namespace {

// How many lines an arc has, and how well a straight line fits them.
std::string LineSummary(const Arc& arc) {
  std::string text = Count(arc.LineCount, "line");
  if (arc.LineCount >= 2)
    text += ", " + FixedText(arc.linSlope, 5) + " Angstroms per pixel, RMS " + FixedText(LinearRms(arc), 3);
  return text;
}

// A click near a column in recipe terms.
void Click(Session& s, int a, double column) {
  RequireArcInUse(s, a);
  const int clicked = RoundToInt(column);
  RequireWithin("Column", clicked, Pixels(s.slot[a]));
  ClickLine(s, a, clicked);
}

// The wavelength proposed for the clicked line, as its box shows it.
double ProposedWavelength(const Session& s, int a) {
  if (s.arc[a].LineCount < 2)
    throw Refusal("Hey, you need to identify two lines by their wavelengths first!");
  if (s.linePanel.wavelengthText.empty())
    throw Refusal("Hey, you need to load the wavelength table first!");
  return NumericPrefix(s.linePanel.wavelengthText);
}

}  // namespace

Outcome Execute(Session& s, const Arcs& step) {
  SetArcCount(s, step.count);
  return {Count(step.count, "arc") + " in use", {}};
}

Outcome Execute(Session& s, const Identify& step) {
  const int a = ArcNamed(step.arc);
  if (step.wavelength)
    RequireValidWavelength(*step.wavelength);
  Click(s, a, step.column);
  if (IsIdentified(s, a))
    throw Refusal("This line has been identified already.  Delete it first to change its wavelength.");
  const double wavelength = step.wavelength ? *step.wavelength : ProposedWavelength(s, a);
  const std::string name =
      step.wavelength || s.linePanel.nameText.empty() ? "" : " (" + s.linePanel.nameText + ")";
  UpdateFit(s, a, wavelength);
  return {"column " + FixedText(s.centroidValue, 3) + " +- " +
              FixedText(s.arc[a].PixelCentroidError(s.peakPixel), 3) + " is " + GeneralText(wavelength) +
              " Angstroms" + name + "; " + LineSummary(s.arc[a]),
          {}};
}

Outcome Execute(Session& s, const DeleteLine& step) {
  const int a = ArcNamed(step.arc);
  Click(s, a, step.column);
  const Arc& arc = s.arc[a];
  const int deleted = DeleteEntry(s, a);
  if (deleted == 0)
    throw Refusal("There is no identified line at column " + std::to_string(s.peakPixel) +
                  ".  Please try again.");
  return {Count(deleted, "line") + " dropped; " + LineSummary(arc), {}};
}

Outcome Execute(Session& s, const DeleteLines& step) {
  const int a = ArcNamed(step.arc);
  RequireArcInUse(s, a);
  const int count = s.arc[a].LineCount;
  DeleteAllLines(s, a);
  return {Count(count, "line") + " dropped", {}};
}

Outcome Execute(Session& s, const ApplyMask& step) {
  const int a = ArcNamed(step.arc);
  RequireArcInUse(s, a);
  Warnings warnings = halmek::ApplyMask(s, a);
  return {LineSummary(s.arc[a]), std::move(warnings)};
}

Outcome Execute(Session& s, const FitDeviations& step) {
  const int a = ArcNamed(step.arc);
  RequireArcInUse(s, a);
  Arc& arc = s.arc[a];
  const int power = arc.fitPower;
  ComputeDeviations(s, a);
  arc.fitPower = step.power;
  try {
    halmek::FitDeviations(s, a);
  } catch (const Refusal&) {
    arc.fitPower = power;
    throw;
  }
  arc.stepPower = step.power;
  const FitInWords words = DescribeFit(arc);
  return {words.fit + (words.rms.empty() ? "" : ", " + words.rms + ", " + words.largest), {}};
}

Outcome Execute(Session& s, const UsePower& step) {
  const int a = ArcNamed(step.arc);
  RequireArcInUse(s, a);
  Arc& arc = s.arc[a];
  arc.fitPower = arc.stepPower = step.power;
  return {arc.DeviationCoef[step.power].power == 0
              ? "power " + std::to_string(step.power) + " was never fitted: no correction comes from it"
              : DescribeFit(arc).fit,
          {}};
}

Outcome Execute(Session& s, const Correct&) {
  const Slot& object = s.slot[slots::object];
  if (!s.workflow.correctEnabled && !HasWavelengthScale(object))
    throw Refusal("Hey, no Object file has been loaded!");
  Warnings warnings = CorrectDispersion(s);
  const int n = Pixels(object);
  double least = CorrectionShift(s, 1), most = least;
  for (int i = 2; i <= n; ++i) {
    least = std::min(least, CorrectionShift(s, i));
    most = std::max(most, CorrectionShift(s, i));
  }
  return {std::to_string(n) + " pixels from " + FixedText(s.dispStart, 3) + " Angstroms in steps of " +
              FixedText(s.dispStep, 7) + "; shifts of " + FixedText(least, 2) + " to " + FixedText(most, 2) +
              " pixels",
          std::move(warnings)};
}

}  // namespace halmek::steps
