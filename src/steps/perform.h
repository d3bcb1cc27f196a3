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

}  // namespace halmek
