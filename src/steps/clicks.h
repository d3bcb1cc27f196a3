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

// "Update Fit": gives the clicked line a wavelength in Angstrom. Nothing where it has one; a wavelength that
// is out of range makes a step all the same, which will be refused.
std::optional<Step> IdentifyStep(const Session& session, double wavelength);

// "Delete Entry": drops what is identified at the clicked line. Nothing where nothing is.
std::optional<Step> DeleteLineStep(const Session& session);

// "Fix !" of the dispersion: the powers of the arcs in use that were chosen after their last fit, then the
// correction.
std::vector<Step> CorrectSteps(const Session& session);

// A load or save in `folder`, an absolute path: the `folder` step where another folder is current, then the
// step itself.
std::vector<Step> StepsIn(const Session& session, const std::string& folder, Step step);

}  // namespace halmek
