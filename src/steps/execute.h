// What each step does, behind the door that keeps the journal: only Perform calls these.
#pragma once

#include "steps/perform.h"

namespace halmek::steps {

Outcome Execute(Session& session, const Folder& step);
Outcome Execute(Session& session, const Load& step);
Outcome Execute(Session& session, const FixColumn& step);
Outcome Execute(Session& session, const Trim& step);
Outcome Execute(Session& session, const Zap& step);
Outcome Execute(Session& session, const UndoZap& step);
Outcome Execute(Session& session, const Aperture& step);
Outcome Execute(Session& session, const Background& step);
Outcome Execute(Session& session, const Crunch& step);
Outcome Execute(Session& session, const NormalizeAuto& step);
Outcome Execute(Session& session, const NormalizePoints& step);
Outcome Execute(Session& session, const NormalizeAgain& step);
Outcome Execute(Session& session, const Revert& step);
Outcome Execute(Session& session, const Arcs& step);
Outcome Execute(Session& session, const Identify& step);
Outcome Execute(Session& session, const DeleteLine& step);
Outcome Execute(Session& session, const DeleteLines& step);
Outcome Execute(Session& session, const ApplyMask& step);
Outcome Execute(Session& session, const FitDeviations& step);
Outcome Execute(Session& session, const UsePower& step);
Outcome Execute(Session& session, const Correct& step);
Outcome Execute(Session& session, const SaveMask& step);
Outcome Execute(Session& session, const Save& step);
Outcome Execute(Session& session, const Export& step);
Outcome Execute(Session& session, const Header& step);
Outcome Execute(Session& session, const PlotRow& step);
Outcome Execute(Session& session, const PlotColumn& step);
Outcome Execute(Session& session, const Plot& step);

}  // namespace halmek::steps
