// The command line of halmek-night.
#include "night/command_line.h"

#include <CLI/CLI.hpp>
#include <ostream>
#include <string>

#include "files/input_file.h"
#include "night/check.h"
#include "night/night.h"
#include "night/truth.h"
#include "night/write_night.h"
#include "steps/recipe.h"

namespace halmek::night {
namespace {

constexpr const char* description =
    "Makes a sample night: two-dimensional frames of stars and of the arcs before and after each, with a\n"
    "wavelength table, a line mask, the recipes that reduce them, and the truth about it all in truth.txt.";

int Check(const std::string& folder, std::ostream& out, std::ostream& err) {
  const Truth truth = ParseTruth(ReadWholeFile(folder + "/" + truthFile));
  int status = 0;
  for (const StarTruth& star : truth.stars) {
    try {
      out << ReportOf(CheckStar(folder, truth, star));
    } catch (const RecipeStopped& stop) {
      err << "halmek-night: " << star.name << ".recipe:" << stop.line() << ": " << stop.what() << "\n";
      status = 1;
    } catch (const Failure& failure) {
      err << "halmek-night: " << FailureLine(star.name, failure) << "\n";
      status = 1;
    }
  }
  return status;
}

}  // namespace

int RunCommandLine(int argc, const char* const* argv, std::ostream& out, std::ostream& err) {
  Options options;
  std::string folder;
  bool check = false;
  CLI::App app(description, "halmek-night");
  app.add_option("DIR", folder, "Folder of the night; it is made where it is missing")->required();
  auto* checking =
      app.add_flag("--check", check, "Reduce the night in DIR and print the errors against the truth");
  const auto option = [&](const char* name, auto& value, const char* help) {
    return app.add_option(name, value, help)->capture_default_str()->excludes(checking);
  };
  option("--columns", options.columns, "Columns of each frame, with the overscan strip")
      ->check(CLI::Range(fewestColumns, mostColumns));
  option("--rows", options.rows, "Rows of each frame")->check(CLI::Range(fewestRows, mostRows));
  option("--type", options.pixelType, "Pixel type: BITPIX, or 17 for unsigned 16 bits")
      ->check(CLI::IsMember({16, 17, 32, -32}));
  option("--seed", options.seed, "The same seed gives the same night");
  option("--stars", options.stars, "Number of stars")->check(CLI::Range(1, mostStars));

  try {
    app.parse(argc, argv);
    if (check)
      return Check(folder, out, err);
    out << WriteNight(PlanNight(options), folder);
    return 0;
  } catch (const CLI::ParseError& error) {
    if (error.get_exit_code() == 0)
      return app.exit(error, out, err);
    err << "halmek-night: " << error.what() << "\n";
    return 2;
  } catch (const Failure& failure) {
    err << "halmek-night: " << FailureLine(folder, failure) << "\n";
    return 1;
  }
}

}  // namespace halmek::night
