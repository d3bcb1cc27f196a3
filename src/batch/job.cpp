// One run of a recipe.
#include "batch/job.h"

#include <filesystem>
#include <memory>

#include "files/input_file.h"
#include "plot/text_encoding.h"

namespace halmek::batch {
namespace {

// Header cards and names come from files: what goes to a terminal holds no control characters but our line
// ends.
std::string Printable(const std::string& text) {
  std::string printable;
  size_t start = 0;
  for (size_t end = text.find('\n'); end != std::string::npos; end = text.find('\n', start)) {
    printable += Utf8Of(std::string_view(text).substr(start, end - start)) + "\n";
    start = end + 1;
  }
  return printable + Utf8Of(std::string_view(text).substr(start));
}

}  // namespace

std::string Located(const std::string& recipeName, int line, const std::string& text) {
  return recipeName + (line > 0 ? ":" + std::to_string(line) : std::string()) + ": " + text;
}

Job ReadJob(const std::string& recipe, const Variables& variables) {
  try {
    return {recipe, ParseRecipe(ReadWholeFile(recipe), variables)};
  } catch (const Failure& failure) {
    throw RecipeStopped(0, FailureLine("", failure));
  }
}

JobResult Run(const Job& job, const std::function<void(const std::string&)>& print) {
  const auto session = std::make_unique<Session>();
  JobResult result;
  int line = 0;
  try {
    session->dataFolder = std::filesystem::current_path().string();
    RunRecipe(*session, job.lines, [&](const RecipeLine& step, const Outcome& outcome) {
      line = step.number;
      print(Printable(std::to_string(line) + " " + TextOf(step.step) + ": " + outcome.found));
      for (const std::string& warning : outcome.warnings)
        result.warnings.push_back(Printable(Located(job.recipeName, line, warning)));
    });
    result.succeeded = true;
  } catch (const RecipeStopped& stopped) {
    result.failure = Printable(Located(job.recipeName, stopped.line(), stopped.what()));
  } catch (const std::exception& error) {
    // Memory or the file system gave out; the other jobs go on.
    result.failure = Printable(Located(job.recipeName, line, error.what()));
  }
  result.writtenFiles = session->writtenFiles;
  result.journal = JournalText(*session);
  return result;
}

}  // namespace halmek::batch
