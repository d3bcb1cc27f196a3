// The door, and the journal beside it.
#include "steps/perform.h"

#include "steps/execute.h"
#include "steps/step_text.h"

namespace halmek {

Outcome Perform(Session& session, const Step& step) {
  const std::string line = TextOf(step);
  try {
    Outcome outcome = std::visit([&](const auto& s) { return steps::Execute(session, s); }, step);
    session.journal.push_back(line);
    return outcome;
  } catch (const Failure& failure) {
    session.journal.push_back("# refused: " + line + "  # " + failure.text());
    throw;
  }
}

}  // namespace halmek
