// halmek-batch: reductions by recipe, without a window.
#include <CLI/CLI.hpp>
#include <cstdio>
#include <string>
#include <vector>

#include "batch/job.h"
#include "batch/many.h"
#include "files/atomic_write.h"

namespace {

using halmek::Variables;

constexpr int statusRefused = 1;        // a step was refused or a file failed
constexpr int statusNotUnderstood = 2;  // nothing was run

struct Options {
  std::string recipe;
  std::vector<std::string> assignments;
  std::vector<std::string> forFiles;  // the variable, then the files
  std::string journal;
  int jobs = 1;
};

std::string LanguageNotes() {
  return "A recipe is a text file of steps, one a line:\n\n" + halmek::LanguageHelp() +
         "\n"
         "# begins a comment. Names with blanks stand in double quotes, a quote in them is doubled. $name "
         "and\n"
         "${name} are replaced by the VALUE of NAME=VALUE, $$ is a dollar sign. A relative FILE is taken in "
         "the\n"
         "current folder. FIRST and LAST may stand in either order; columns and rows count from 1.\n\n"
         "Exit status: 0 done, 1 a step was refused (the line is on standard error), 2 nothing was run.\n";
}

void Describe(CLI::App& app, Options& options) {
  app.add_option("recipe", options.recipe, "the recipe")->required()->type_name("RECIPE");
  app.add_option("values", options.assignments, "values of the recipe's variables")->type_name("NAME=VALUE");
  app.add_option("--for", options.forFiles, "run once for each FILE, with $NAME set to it; stands last")
      ->type_name("NAME FILE...")
      ->expected(2, 1 << 20);
  app.add_option("--jobs", options.jobs, "how many runs at once, with --for")
      ->type_name("N")
      ->check(CLI::Range(1, 256));
  app.add_option("--journal", options.journal, "write the steps performed as a recipe; not with --for")
      ->type_name("FILE");
  app.set_version_flag("--version", "halmek-batch " HALMEK_VERSION);
  app.footer(LanguageNotes);
}

int Complain(const std::string& text) {
  std::fprintf(stderr, "halmek-batch: %s\n", text.c_str());
  return statusNotUnderstood;
}

Variables VariablesOf(const std::vector<std::string>& assignments) {
  Variables variables;
  for (const std::string& assignment : assignments) {
    const size_t equals = assignment.find('=');
    if (equals == std::string::npos || equals == 0)
      throw halmek::NotUnderstood("'" + assignment + "' is not NAME=VALUE");
    variables[assignment.substr(0, equals)] = assignment.substr(equals + 1);
  }
  return variables;
}

// One run, whose steps are printed as they come.
int RunOnce(const Options& options, const Variables& variables) {
  const halmek::batch::Job job = halmek::batch::ReadJob(options.recipe, variables);
  const auto result = halmek::batch::Run(job, [](const std::string& line) {
    std::puts(line.c_str());
    std::fflush(stdout);
  });
  for (const std::string& warning : result.warnings)
    std::fprintf(stderr, "warning: %s\n", warning.c_str());
  if (!result.succeeded)
    std::fprintf(stderr, "%s\n", result.failure.c_str());
  if (!options.journal.empty())
    halmek::AtomicWrite(options.journal, result.journal);
  return result.succeeded ? 0 : statusRefused;
}

// One run a file. All are read before the first runs.
int RunForFiles(const Options& options, Variables variables) {
  if (!options.journal.empty())
    return Complain("--journal goes with a single run, not with --for");
  const std::vector<std::string> files(options.forFiles.begin() + 1, options.forFiles.end());
  std::vector<halmek::batch::Job> jobs;
  for (const std::string& file : files) {
    variables[options.forFiles.front()] = file;
    jobs.push_back(halmek::batch::ReadJob(options.recipe, variables));
  }
  return halmek::batch::RunMany(files, jobs, options.jobs);
}

}  // namespace

int main(int argc, char** argv) {
  CLI::App app("Reduces long-slit frames to calibrated spectra by recipe.", "halmek-batch");
  Options options;
  Describe(app, options);
  try {
    app.parse(argc, argv);
  } catch (const CLI::Success& asked) {
    return app.exit(asked);
  } catch (const CLI::ParseError& error) {
    return Complain(std::string(error.what()) + "; see halmek-batch --help");
  }

  try {
    const Variables variables = VariablesOf(options.assignments);
    return options.forFiles.empty() ? RunOnce(options, variables) : RunForFiles(options, variables);
  } catch (const halmek::NotUnderstood& problem) {
    return Complain(problem.what());
  } catch (const halmek::RecipeStopped& stopped) {
    std::fprintf(stderr, "%s\n",
                 halmek::batch::Located(options.recipe, stopped.line(), stopped.what()).c_str());
    return statusNotUnderstood;
  } catch (const halmek::Failure& failure) {
    std::fprintf(stderr, "%s\n", halmek::FailureLine(options.journal, failure).c_str());
    return statusRefused;
  }
}
