// The one door for everything that changes data.
#pragma once

#include <string>

#include "app/session.h"
#include "steps/steps.h"

namespace halmek {

// What a step that succeeded has to say: one line of what it found (the cards, for `header`), and warnings.
struct Outcome {
  std::string found;
  Warnings warnings;
};

// Performs the step on the session and enters it in the journal: as the recipe line that would do it again,
// or as a comment where it is refused. Throws what the step's procedure throws: Refusal or RunTimeError.
Outcome Perform(Session& session, const Step& step);

// The procedures of the steps, one for each.
namespace steps {
Outcome Perform(Session& session, const Folder& step);
Outcome Perform(Session& session, const Load& step);
Outcome Perform(Session& session, const FixColumn& step);
Outcome Perform(Session& session, const Trim& step);
Outcome Perform(Session& session, const Zap& step);
Outcome Perform(Session& session, const UndoZap& step);
Outcome Perform(Session& session, const Aperture& step);
Outcome Perform(Session& session, const Background& step);
Outcome Perform(Session& session, const Crunch& step);
Outcome Perform(Session& session, const NormalizeAuto& step);
Outcome Perform(Session& session, const NormalizePoints& step);
Outcome Perform(Session& session, const Revert& step);
Outcome Perform(Session& session, const Arcs& step);
Outcome Perform(Session& session, const Identify& step);
Outcome Perform(Session& session, const DeleteLine& step);
Outcome Perform(Session& session, const DeleteLines& step);
Outcome Perform(Session& session, const ApplyMask& step);
Outcome Perform(Session& session, const FitDeviations& step);
Outcome Perform(Session& session, const Correct& step);
Outcome Perform(Session& session, const SaveMask& step);
Outcome Perform(Session& session, const Save& step);
Outcome Perform(Session& session, const Export& step);
Outcome Perform(Session& session, const Header& step);
Outcome Perform(Session& session, const PlotRow& step);
Outcome Perform(Session& session, const PlotColumn& step);
Outcome Perform(Session& session, const Plot& step);
}  // namespace steps

}  // namespace halmek
