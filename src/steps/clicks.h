// What a button of a window amounts to after the clicks before it: the steps it performs.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "app/session.h"
#include "steps/steps.h"

namespace halmek {

// "Fix !" and the other buttons that need no clicks make their steps themselves. These take what was marked:

// "ZAP!": the selected columns of the row shown.
Step ZapStep(const Session& session, int neighbours);

// "Fit Background" and "Crunch !": the aperture, where it was marked since the last `aperture` step, then the
// step itself. BackgroundSteps throws Refusal where the marks are not complete.
std::vector<Step> BackgroundSteps(const Session& session);
std::vector<Step> CrunchSteps(const Session& session);

// "Normalize": the step that makes the last fit again and divides by it, or that divides by it once more.
// Nothing where there is no fit.
std::optional<Step> NormalizeStep(const Session& session);

// A load or save in `folder`, an absolute path: the `folder` step where another folder is current, then the
// step itself.
std::vector<Step> StepsIn(const Session& session, const std::string& folder, Step step);

}  // namespace halmek
