// What would be lost if the program ended, or a step were performed, because it has not been saved.
#pragma once

#include <string>
#include <vector>

#include "app/session.h"
#include "steps/steps.h"

namespace halmek {

// Takes note of what the step, which has just succeeded, changed or saved.
void NoteWork(Session& session, const Step& step);

// Each piece of work that is in no file, as in "the changes of the frame star1.fts". Changes of a frame are
// saved with the spectrum that was extracted from it.
std::vector<std::string> UnsavedWork(const Session& session);

// The pieces among them that the step would put something else in the place of.
std::vector<std::string> LostBy(const Session& session, const Step& step);

}  // namespace halmek
