// Buttons as steps.
#include "steps/clicks.h"

#include "calib/line_list.h"
#include "reduce/background.h"
#include "steps/slot_names.h"

namespace halmek {
namespace {

std::vector<Step> WithAperture(const Session& session, Step step) {
  const Slice& slice = session.slice;
  const bool isMarked = slice.apertureFirstRow != 0 && slice.apertureLastRow != 0;
  const bool isNew =
      slice.apertureFirstRow != slice.stepFirstRow || slice.apertureLastRow != slice.stepLastRow;
  if (!isMarked || !isNew)
    return {std::move(step)};
  return {steps::Aperture{slice.apertureFirstRow, slice.apertureLastRow}, std::move(step)};
}

}  // namespace

Step ZapStep(const Session& session, int neighbours) {
  const RowPlot& plot = session.rowPlot;
  return steps::Zap{plot.plotRow, plot.zapFirst, plot.zapLast, neighbours};
}

std::vector<Step> BackgroundSteps(const Session& session) {
  RequireCompleteSelection(session);
  const Slice& slice = session.slice;
  return WithAperture(session, steps::Background{slice.background1FirstRow, slice.background1LastRow,
                                                 slice.background2FirstRow, slice.background2LastRow,
                                                 session.background.backgroundPower});
}

std::vector<Step> CrunchSteps(const Session& session) { return WithAperture(session, steps::Crunch{}); }

std::optional<Step> NormalizeStep(const Session& session) {
  const Continuum& c = session.continuum;
  if (!c.continuumFitDone)
    return std::nullopt;
  if (c.fitUsed)
    return steps::NormalizeAgain{};
  if (c.fittedByHand)
    return steps::NormalizePoints{c.fittedPower, c.fittedClicks};
  return steps::NormalizeAuto{c.fittedInterval, c.fittedPower};
}

std::optional<Step> IdentifyStep(const Session& session, double wavelength) {
  const LinePanel& panel = session.linePanel;
  if (IsValidWavelength(wavelength) && IsIdentified(session, panel.arc))
    return std::nullopt;
  return steps::Identify{std::string(NameOfSlot(panel.arc)), static_cast<double>(panel.column), wavelength};
}

std::optional<Step> DeleteLineStep(const Session& session) {
  const LinePanel& panel = session.linePanel;
  if (LinesNearPeak(session, panel.arc) == 0)
    return std::nullopt;
  return steps::DeleteLine{std::string(NameOfSlot(panel.arc)), static_cast<double>(panel.column)};
}

std::vector<Step> CorrectSteps(const Session& session) {
  std::vector<Step> steps;
  for (int a = 1; a <= session.arcCount; ++a) {
    const Arc& arc = session.arc[a];
    if (arc.fitPower != arc.stepPower && arc.LineCount > 0)
      steps.push_back(steps::UsePower{std::string(NameOfSlot(a)), arc.fitPower});
  }
  steps.push_back(steps::Correct{});
  return steps;
}

std::vector<Step> StepsIn(const Session& session, const std::string& folder, Step step) {
  if (folder == session.dataFolder)
    return {std::move(step)};
  return {steps::Folder{folder}, std::move(step)};
}

}  // namespace halmek
