// One run of a recipe.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "batch/record.h"
#include "steps/recipe.h"

namespace halmek::batch {

// A recipe that was read and understood, under the name it goes by in messages.
struct Job {
  std::string recipeName;
  std::vector<RecipeLine> lines;
  bool drawsFigures = false;  // for a report
};

// What a run has to say when it is over.
struct JobResult {
  bool succeeded = false;
  std::string failure;                // "RECIPE:LINE: text"; empty where it succeeded
  std::vector<std::string> warnings;  // "RECIPE:LINE: text" each
  std::vector<std::string> found;     // what each step says: its line of output
  std::vector<std::string> writtenFiles;
  std::string wrote;  // their names without folders, or "nothing", fit to be printed
  std::string journal;
  Record record;
};

// Understands the recipe `text` with those values. Throws RecipeStopped where a line cannot be understood.
Job JobOf(const std::string& recipeName, const std::string& text, const Variables& variables);

// Who listens to a run while it goes on: to each step's line of output and, as they come, the warnings. Both
// are fit to be printed.
struct JobOutput {
  std::function<void(const std::string&)> line, warning;
};

// The result of a run that has not ended. It says that memory ran out, since where that happens there may be
// none to say it.
JobResult UnfinishedRun(const Job& job);

// Runs the job in a session of its own, in the current folder. Whatever fails is in the result, which must be
// that of an unfinished run before.
void Run(const Job& job, const JobOutput& output, JobResult& result) noexcept;

// The same with a result of its own. Throws std::bad_alloc where there is no memory to begin.
JobResult Run(const Job& job, const JobOutput& output);

// "RECIPE:LINE: text", or "RECIPE: text" for line 0, fit to be printed.
std::string Located(const std::string& recipeName, int line, const std::string& text);

// Text with control characters replaced, but for its line ends: names and header cards come from files.
std::string Printable(const std::string& text);

}  // namespace halmek::batch
