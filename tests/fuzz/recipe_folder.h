// A folder of small files in which recipes of any text may run.
#pragma once

#include <string>

namespace halmek::test {

// Throws std::logic_error, which no reader throws.
void Require(bool holds, const char* what);

// Runs a recipe and puts the folder back as it was. Throws RecipeStopped for the first line that is refused,
// after the others. The journal must give the same files, and a session that saves and exports the same,
// unless a load or a save was refused, which leaves traces that it does not tell; that is tried for one
// recipe in four.
void RunInPreparedFolder(const std::string& folder, const std::string& recipe);

}  // namespace halmek::test
