// One run of a recipe.
#include "batch/job.h"

#include <filesystem>
#include <memory>
#include <new>

#include "plot/text_encoding.h"

namespace halmek::batch {
namespace {

// Says whether `part` of a run came to its end; else the result says why.
template <class Part>
bool Ends(const Part& part, const Job& job, JobResult& result) {
  try {
    try {
      part();
      return true;
    } catch (const RecipeStopped& stopped) {
      result.failure = Located(job.recipeName, stopped.line(), stopped.what());
    } catch (const std::bad_alloc&) {
      throw;
    } catch (const std::exception& error) {
      // The current folder is gone, for example.
      result.failure = Located(job.recipeName, 0, error.what());
    }
  } catch (const std::bad_alloc&) {
    // The result says so from its beginning.
  }
  return false;
}

void Perform(const Job& job, Session& session, Recorder& recorder, const JobOutput& output,
             JobResult& result) {
  session.dataFolder = std::filesystem::current_path().string();
  session.recipeFile = FullName(session, job.recipeName);
  RunRecipe(session, job.lines, [&](const RecipeLine& step, const Outcome& outcome) {
    recorder.After(session, step.step);
    result.found.push_back(
        Printable(std::to_string(step.number) + " " + TextOf(step.step) + ": " + outcome.found));
    output.line(result.found.back());
    for (const std::string& warning : outcome.warnings) {
      result.warnings.push_back(Located(job.recipeName, step.number, warning));
      output.warning(result.warnings.back());
    }
  });
}

std::string Names(const std::vector<std::string>& files) {
  std::string names;
  for (const std::string& file : files)
    names += (names.empty() ? "" : ", ") + Printable(LeafName(file));
  return names.empty() ? "nothing" : names;
}

}  // namespace

std::string Printable(const std::string& text) {
  std::string printable;
  size_t start = 0;
  for (size_t end = text.find('\n'); end != std::string::npos; end = text.find('\n', start)) {
    printable += Utf8Of(std::string_view(text).substr(start, end - start)) + "\n";
    start = end + 1;
  }
  return printable + Utf8Of(std::string_view(text).substr(start));
}

std::string Located(const std::string& recipeName, int line, const std::string& text) {
  return Printable(recipeName + (line > 0 ? ":" + std::to_string(line) : std::string()) + ": " + text);
}

Job JobOf(const std::string& recipeName, const std::string& text, const Variables& variables) {
  return {recipeName, ParseRecipe(text, variables)};
}

JobResult UnfinishedRun(const Job& job) {
  JobResult result;
  result.failure = Located(job.recipeName, 0, RunTimeError(run_time_error::outOfMemory).text());
  return result;
}

void Run(const Job& job, const JobOutput& output, JobResult& result) noexcept {
  std::unique_ptr<Session> session;
  Recorder recorder(result.record, job.drawsFigures);
  const auto perform = [&] {
    session = std::make_unique<Session>();
    Perform(job, *session, recorder, output, result);
  };
  const auto record = [&] {
    result.wrote = Names(result.writtenFiles);
    result.journal = JournalText(*session);
    recorder.AtEnd(*session);
  };
  const bool isPerformed = Ends(perform, job, result);
  if (session)
    result.writtenFiles = std::move(session->writtenFiles);
  result.succeeded = session && Ends(record, job, result) && isPerformed;
  if (result.succeeded)
    result.failure.clear();
}

JobResult Run(const Job& job, const JobOutput& output) {
  JobResult result = UnfinishedRun(job);
  Run(job, output, result);
  return result;
}

}  // namespace halmek::batch
