// One run of a recipe.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "steps/recipe.h"

namespace halmek::batch {

// A recipe that was read and understood, under the name it goes by in messages.
struct Job {
  std::string recipeName;
  std::vector<RecipeLine> lines;
};

// What a run has to say when it is over.
struct JobResult {
  bool succeeded = false;
  std::string failure;                // "RECIPE:LINE: text"; empty where it succeeded
  std::vector<std::string> warnings;  // "RECIPE:LINE: text" each
  std::vector<std::string> writtenFiles;
  std::string journal;
};

// Reads the file `recipe` with those values. Throws RecipeStopped where a line cannot be understood, with
// line 0 where the file cannot be read.
Job ReadJob(const std::string& recipe, const Variables& variables);

// Runs the job in a session of its own, in the current folder, and hands each step's line of output to
// `print`.
JobResult Run(const Job& job, const std::function<void(const std::string&)>& print);

// "RECIPE:LINE: text", or "RECIPE: text" for line 0.
std::string Located(const std::string& recipeName, int line, const std::string& text);

}  // namespace halmek::batch
