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

struct AllRan {
  std::vector<Ran> runs;
  // A sentence for each file that several runs wrote, of which only one is left.
  std::vector<std::string> overwritten;
};

// True where a run failed, or a file of one was overwritten by another.
bool HaveFailed(const AllRan& all);

// A table with a line for each run: lines identified, RMS, scale, signal to noise, warnings. Fit to be
// printed; of a long name the end is shown.
std::string SummaryTable(const AllRan& all);

// An HTML page with the same table, and for each run its plots, warnings and steps; with the recipe at its
// end. It loads nothing: it is whole as it stands.
std::string ReportPage(const std::string& recipeName, const std::string& recipe, const AllRan& all);

}  // namespace halmek::batch
