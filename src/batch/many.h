// One recipe run for many files, several at a time.
#pragma once

#include <string>
#include <vector>

#include "batch/job.h"

namespace halmek::batch {

// Runs one job for each file, at most `atOnce` at a time. Prints one line for each, in the order of the
// files, and a progress bar where standard error is a terminal. A failing file does not stop the others.
// Returns the exit status: 0 where all succeeded and no two wrote the same file.
int RunMany(const std::vector<std::string>& files, const std::vector<Job>& jobs, int atOnce);

}  // namespace halmek::batch
