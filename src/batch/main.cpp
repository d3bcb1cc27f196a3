// halmek-batch: reductions by recipe, without a window.
#include <unistd.h>

#include <CLI/CLI.hpp>
#include <cerrno>
#include <cstdio>
#include <filesystem>
#include <memory>
#include <new>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "app/output.h"
#include "app/session.h"
#include "app/version.h"
#include "batch/job.h"
#include "batch/many.h"
#include "batch/report.h"
#include "files/input_file.h"
#include "files/process.h"

namespace {

using halmek::Variables;

constexpr int statusRefused = 1;        // a step was refused or a file failed
constexpr int statusNotUnderstood = 2;  // nothing was run

struct Options {
  std::string recipe;
  std::vector<std::string> assignments;
  std::vector<std::string> forValues;  // the variable, then its values
  std::string journal, report;
  bool replace = false;
  int jobs = 1;
};

std::string LanguageNotes() {
  return "A recipe is a text file of steps, one a line:\n\n" + halmek::LanguageHelp() +
         "\n"
         "# begins a comment. Names with blanks stand in double quotes; a quote in them is doubled.\n"
         "$name and ${name} are replaced by the VALUE of NAME=VALUE; $$ is a dollar sign. A relative\n"
         "FILE is taken in the current folder. FIRST and LAST may stand in either order; columns and\n"
         "rows count from 1. A file that the program did not write, or that is loaded, is replaced only\n"
         "where `replace` is the last word of the step.\n\n"
         "Exit status: 0 done, 1 a step was refused (standard error says which), 2 nothing was run.\n";
}

void Describe(CLI::App& app, Options& options) {
  app.add_option("recipe", options.recipe, "the recipe")->required()->type_name("RECIPE");
  app.add_option("values", options.assignments, "values of the recipe's variables")->type_name("NAME=VALUE");
  app.add_option("--for", options.forValues,
                 "run once for each VALUE, a file for example, with $NAME set to it; stands last")
      ->type_name("NAME VALUE...")
      ->expected(2, 1 << 20);
  app.add_option("--jobs", options.jobs, "how many runs at once, with --for")
      ->type_name("N")
      ->check(CLI::Range(1, 256))
      ->needs("--for");
  app.add_option("--report", options.report,
                 "write an HTML page with the plots of each run, its numbers and warnings")
      ->type_name("FILE");
  app.add_option("--journal", options.journal, "write the steps performed as a recipe; not with --for")
      ->type_name("FILE");
  app.add_flag("--replace", options.replace,
               "let report and journal replace files that halmek-batch did not write");
  app.set_version_flag("--version", std::string("halmek-batch ") + halmek::programVersion);
  app.footer(LanguageNotes);
}

int Complain(const std::string& text) {
  std::fprintf(stderr, "%s\n", halmek::batch::Printable("halmek-batch: " + text).c_str());
  return statusNotUnderstood;
}

Variables VariablesOf(const std::vector<std::string>& assignments) {
  Variables variables;
  for (const std::string& assignment : assignments) {
    const size_t equals = assignment.find('=');
    if (equals == std::string::npos || !halmek::IsVariableName(assignment.substr(0, equals)))
      throw halmek::NotUnderstood("'" + assignment + "' is not NAME=VALUE");
    variables[assignment.substr(0, equals)] = assignment.substr(equals + 1);
  }
  return variables;
}

// A report or a journal, as the recipe's own files are: of the recipe that runs, in the current folder.
halmek::Output OutputOf(const Options& options, const std::string& file, halmek::FileKind kind) {
  return {file, kind, options.replace, "add --replace"};
}
std::unique_ptr<halmek::Session> SessionOf(const Options& options) {
  auto session = std::make_unique<halmek::Session>();
  session->dataFolder = std::filesystem::current_path().string();
  session->recipeFile = halmek::FullName(*session, options.recipe);
  return session;
}

// A file that cannot be written is better known before the run than after it.
void RequireWritable(const Options& options, const std::string& file, halmek::FileKind kind) {
  if (file.empty())
    return;
  const std::filesystem::path path = std::filesystem::absolute(file);
  std::error_code ignored;
  if (std::filesystem::is_character_file(path, ignored))
    return;
  const auto refuse = [&](const halmek::Failure& failure) {
    throw halmek::NotUnderstood(halmek::FailureLine(file, failure));
  };
  if (std::filesystem::is_directory(path, ignored))
    refuse(halmek::RunTimeError(halmek::run_time_error::pathAccess, "it is a folder"));
  if (access(path.parent_path().c_str(), W_OK | X_OK) != 0)
    refuse(halmek::ErrorFromSystem(errno, path.string()));
  try {
    halmek::RequireFree(*SessionOf(options), OutputOf(options, file, kind));
  } catch (const halmek::Refusal& refusal) {
    refuse(refusal);
  }
}

// A slip of the hand must not put a page in the place of a frame.
void RequireReportName(const Options& options) {
  const std::string& file = options.report;
  std::error_code ignored;
  const std::string ending = std::filesystem::path(file).extension().string();
  if (!file.empty() && ending != ".html" && ending != ".htm" &&
      !std::filesystem::is_character_file(file, ignored))
    throw halmek::NotUnderstood("a report's name must end in .html, not '" + file + "'");
  RequireWritable(options, file, halmek::FileKind::report);
}

void WriteText(const Options& options, const std::string& file, halmek::FileKind kind,
               const std::string& text) {
  try {
    for (const std::string& warning :
         halmek::WriteOutput(*SessionOf(options), OutputOf(options, file, kind), text))
      std::fprintf(stderr, "warning: %s\n", halmek::batch::Printable(warning).c_str());
  } catch (const halmek::Failure& failure) {
    throw std::runtime_error(halmek::FailureLine(file, failure));
  }
}

void WriteReport(const Options& options, const std::string& recipe, const halmek::batch::AllRan& all) {
  if (!options.report.empty())
    WriteText(options, options.report, halmek::FileKind::report,
              halmek::batch::ReportPage(options.recipe, recipe, all));
}

// One run, whose steps are printed as they come.
int RunOnce(const Options& options, const std::string& recipe, const Variables& variables) {
  halmek::batch::Job job = halmek::batch::JobOf(options.recipe, recipe, variables);
  job.drawsFigures = !options.report.empty();
  RequireWritable(options, options.journal, halmek::FileKind::recipe);
  RequireReportName(options);
  auto result = halmek::batch::Run(
      job, {[](const std::string& line) {
              std::puts(line.c_str());
              std::fflush(stdout);
            },
            [](const std::string& warning) { std::fprintf(stderr, "warning: %s\n", warning.c_str()); }});
  if (!result.succeeded)
    std::fprintf(stderr, "%s\n", result.failure.c_str());
  const int status = result.succeeded ? 0 : statusRefused;
  const std::string journal = std::move(result.journal);
  std::string name = halmek::LeafName(options.recipe);
  for (const std::string& assignment : options.assignments)
    name += " " + assignment;
  // The one is written although the other cannot be.
  std::string failure;
  try {
    WriteReport(options, recipe, {{{name, std::move(result)}}, {}});
  } catch (const std::runtime_error& error) {
    failure = error.what();
  }
  if (!options.journal.empty())
    WriteText(options, options.journal, halmek::FileKind::recipe, journal);
  if (!failure.empty())
    throw std::runtime_error(failure);
  return status;
}

bool UsesVariable(const std::string& recipe, Variables variables, const std::string& name) {
  variables.erase(name);
  try {
    halmek::ParseRecipe(recipe, variables);
    return false;
  } catch (const halmek::RecipeStopped&) {
    return true;
  }
}

// One run a value. All are understood before the first runs.
int RunForEach(const Options& options, const std::string& recipe, Variables variables) {
  const std::string& name = options.forValues.front();
  if (!options.journal.empty())
    return Complain("--journal goes with a single run, not with --for");
  if (!halmek::IsVariableName(name) || variables.contains(name))
    return Complain("--for needs the NAME of a variable that has no value yet, not '" + name + "'");
  const std::vector<std::string> values(options.forValues.begin() + 1, options.forValues.end());
  std::vector<halmek::batch::Job> jobs;
  for (const std::string& value : values) {
    variables[name] = value;
    jobs.push_back(halmek::batch::JobOf(options.recipe, recipe, variables));
    jobs.back().drawsFigures = !options.report.empty();
  }
  if (!UsesVariable(recipe, variables, name))
    return Complain("the recipe does not use $" + name);
  RequireReportName(options);
  const halmek::batch::AllRan all = halmek::batch::RunMany(values, jobs, options.jobs);
  std::printf("\n%s", halmek::batch::SummaryTable(all).c_str());
  WriteReport(options, recipe, all);
  return halmek::batch::HaveFailed(all) ? statusRefused : 0;
}

// Output that could not be written is a failure, too.
int StatusWithOutput(int status) {
  if (std::fflush(stdout) == 0 && std::ferror(stdout) == 0)
    return status;
  std::fprintf(stderr, "halmek-batch: standard output could not be written\n");
  return status == 0 ? statusRefused : status;
}

int RunRecipes(const Options& options) {
  try {
    const Variables variables = VariablesOf(options.assignments);
    const std::string recipe = halmek::ReadWholeFile(options.recipe);
    return options.forValues.empty() ? RunOnce(options, recipe, variables)
                                     : RunForEach(options, recipe, variables);
  } catch (const halmek::NotUnderstood& problem) {
    return Complain(problem.what());
  } catch (const halmek::RecipeStopped& stopped) {
    std::fprintf(stderr, "%s\n",
                 halmek::batch::Located(options.recipe, stopped.line(), stopped.what()).c_str());
    return statusNotUnderstood;
  } catch (const halmek::Failure& failure) {
    std::fprintf(stderr, "%s\n",
                 halmek::batch::Printable(halmek::FailureLine(options.recipe, failure)).c_str());
    return statusNotUnderstood;
  }
}

}  // namespace

int main(int argc, char** argv) {
  halmek::PrepareProcess();
  CLI::App app("Reduces long-slit frames to calibrated spectra by recipe.", "halmek-batch");
  Options options;
  Describe(app, options);
  try {
    app.parse(argc, argv);
    return StatusWithOutput(RunRecipes(options));
  } catch (const CLI::Success& asked) {
    return StatusWithOutput(app.exit(asked));
  } catch (const CLI::ParseError& error) {
    return Complain(std::string(error.what()) + "; see halmek-batch --help");
  } catch (const std::bad_alloc&) {
    std::fputs("halmek-batch: Error: 7  Out of memory.\n", stderr);
    return statusRefused;
  } catch (const std::exception& error) {
    Complain(error.what());
    return statusRefused;
  }
}
