// The door, and the journal beside it.
#include "steps/perform.h"

#include "steps/execute.h"
#include "steps/step_text.h"
#include "steps/unsaved_work.h"

namespace halmek {
namespace {

void Enter(Session& session, const std::string& line) {
  session.journal.push_back(line);
  session.keepJournal(line);
}

}  // namespace

Outcome Perform(Session& session, const Step& step) {
  const std::string line = TextOf(step);
  try {
    Outcome outcome = std::visit([&](const auto& s) { return steps::Execute(session, s); }, step);
    Enter(session, line);
    NoteWork(session, step);
    return outcome;
  } catch (const Failure& failure) {
    Enter(session, "# refused: " + line + "  # " + failure.text());
    throw;
  }
}

}  // namespace halmek
