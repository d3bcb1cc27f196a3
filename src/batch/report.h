// What is said of all runs when they are over: the summary, as a table of text, and the report, as a page.
#pragma once

#include <string>
#include <vector>

#include "batch/job.h"

namespace halmek::batch {

// One run: what it is called, as in "star1.fts", and how it ended.
struct Ran {
  std::string name;
  JobResult result;
};

// A table with a line for each run, which ends with what a run's numbers are: lines identified, RMS, scale,
// signal to noise, warnings. Fit to be printed.
std::string SummaryTable(const std::vector<Ran>& runs);

// An HTML page with the same table, and for each run its plots, warnings and steps; with the recipe at its
// end. It loads nothing: it is whole as it stands.
std::string ReportPage(const std::string& recipeName, const std::string& recipe,
                       const std::vector<Ran>& runs);

}  // namespace halmek::batch
