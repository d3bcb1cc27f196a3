// One recipe run many times, several at a time.
#pragma once

#include <string>
#include <vector>

#include "batch/report.h"

namespace halmek::batch {

// Runs one job for each name, at most `atOnce` at a time. Prints one line for each, in their order, and a
// progress bar where standard error is a terminal. A failing run does not stop the others, be it for want of
// memory; the results come in the order of the names. Throws std::bad_alloc where memory runs out before all
// runs or after them.
AllRan RunMany(const std::vector<std::string>& names, const std::vector<Job>& jobs, int atOnce);

}  // namespace halmek::batch
