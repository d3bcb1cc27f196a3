// Buttons as steps.
#include "steps/clicks.h"

#include "reduce/background.h"

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

std::vector<Step> StepsIn(const Session& session, const std::string& folder, Step step) {
  if (folder == session.dataFolder)
    return {std::move(step)};
  return {steps::Folder{folder}, std::move(step)};
}

}  // namespace halmek
