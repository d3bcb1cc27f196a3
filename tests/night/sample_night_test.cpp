// The sample night from end to end: the same bytes again, every pixel type and size, and the truth recovered.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <sstream>
#include <string>
#include <tuple>
#include <vector>

#include "fits/fits_reader.h"
#include "night/check.h"
#include "night/command_line.h"
#include "night/night.h"
#include "night/truth.h"
#include "night/write_night.h"
#include "steps/recipe.h"
#include "support/test_session.h"

namespace halmek::night {
namespace {

using test::FilesIn;
using test::ReadFile;
using test::TemporaryFolder;

constexpr Options smallNight{.columns = 800, .rows = 60, .stars = 1};

// A night in a folder, and its truth.
struct WrittenNight {
  explicit WrittenNight(const Options& options) { WriteNight(PlanNight(options), folder.path()); }

  std::string Bytes(const std::string& file) const { return ReadFile(folder.File(file)); }
  std::vector<StarCheck> Check() const {
    std::vector<StarCheck> checks;
    for (const StarTruth& star : truth().stars)
      checks.push_back(CheckStar(folder.path(), truth(), star));
    return checks;
  }
  Truth truth() const { return ParseTruth(Bytes(truthFile)); }

  // A session in which one of the night's recipes has run.
  std::unique_ptr<Session> Run(const std::string& recipe, const Variables& variables) const {
    auto session = test::SessionIn(folder.path());
    RunRecipe(*session, ParseRecipe(Bytes(recipe), variables), [](const RecipeLine&, const Outcome&) {});
    return session;
  }

  TemporaryFolder folder;
};

TEST(SampleNight, IsTheSameForTheSameSeedWhateverTheNumberOfStars) {
  Options two = smallNight, another = smallNight;
  two.stars = 2;
  another.seed = 2;
  const WrittenNight first(smallNight), second(two), other(another);
  const auto files = FilesIn(first.folder.path());
  for (const std::string& file : files) {
    const std::string bytes = first.Bytes(file);
    EXPECT_TRUE(file == truthFile || bytes == second.Bytes(file)) << file;
    EXPECT_TRUE(!file.ends_with(".fts") || bytes != other.Bytes(file)) << file;
  }
  EXPECT_EQ(FilesIn(second.folder.path()).size(), files.size() + 4);
  EXPECT_NE(second.Bytes("arc1a.fts"), second.Bytes("arc1b.fts"));

  // One recipe serves all stars, and one all arcs.
  for (const std::string n : {"1", "2"}) {
    const auto session = second.Run("night.recipe", {{"n", n}});
    EXPECT_EQ(session->slot[slots::object].objectName, "Sample star " + n);
    EXPECT_TRUE(std::filesystem::exists(second.folder.File("star" + n + "_1Dcal.fts")));
  }
  first.Check();
  const std::string byStar = first.Bytes("arc1b_1D.fts");
  std::filesystem::remove(first.folder.File("arc1b_1D.fts"));
  first.Run("arc.recipe", {{"arc", "arc1b.fts"}});
  EXPECT_EQ(first.Bytes("arc1b_1D.fts"), byStar);
}

// The reduction's errors against the truth stay within what the night was made for.
TEST(SampleNight, GivesBackWavelengthsAndVelocities) {
  for (const uint64_t seed : {1, 2}) {
    for (const StarCheck& star : WrittenNight({.seed = seed}).Check()) {
      SCOPED_TRACE(star.name + ", seed " + std::to_string(seed));
      EXPECT_GE(std::min(star.lines[0], star.lines[1]), 15);
      EXPECT_EQ(star.power, 4);
      EXPECT_EQ(star.pixels, 1696);
      EXPECT_LT(star.wavelengthError.rms, 0.02);
      EXPECT_LT(std::fabs(star.wavelengthError.mean), 0.005);
      // A straight line alone would be off by pixels.
      EXPECT_GT(star.linearRms[0], 50 * star.deviationRms[0]);
      const double error = star.velocity.velocity - star.trueVelocity;
      EXPECT_GT(star.velocity.error, 0.05);
      EXPECT_LT(star.velocity.error, 0.3);
      EXPECT_LT(std::fabs(error), 3.5 * star.velocity.error) << error;
    }
  }
}

TEST(SampleNight, CanBeReducedInEverySizeAndPixelType) {
  for (const auto& [columns, rows, type] :
       {std::tuple{400, 60, 17}, {800, 61, 16}, {800, 60, 32}, {800, 60, -32}, {3000, 60, 17}}) {
    SCOPED_TRACE(std::to_string(columns) + " columns, type " + std::to_string(type));
    const std::vector<StarCheck> checks =
        WrittenNight({.columns = columns, .rows = rows, .pixelType = type, .stars = 1}).Check();
    EXPECT_LT(checks.at(0).wavelengthError.rms, 0.02);
    EXPECT_LT(std::fabs(checks[0].velocity.velocity - checks[0].trueVelocity), 5 * checks[0].velocity.error);
  }
}

// The velocity's error bar is of use only if the fit leaves out what is no star.
TEST(MeasureVelocity, LeavesOutPixelsThatStickOutAndRefusesWhatIsNoSpectrum) {
  const WrittenNight night(smallNight);
  const StarCheck check = night.Check()[0];
  const auto session = test::SessionIn(night.folder.path());
  LoadFits1D(*session, slots::object, "star1_1Dcal.fts");
  const auto pixels = session->slot[slots::object].spectrum.Range(1, check.pixels);
  for (const size_t at : {200, 201, 450})
    pixels[at] *= 3;
  const Truth truth = night.truth();
  const auto measure = [&] {
    return MeasureVelocity(pixels, check.start, check.step, truth, truth.stars[0]);
  };
  const VelocityFit fit = measure();
  EXPECT_NEAR(fit.velocity, check.velocity.velocity, check.velocity.error);
  EXPECT_LE(fit.pixels, check.velocity.pixels - 3);

  std::fill(pixels.begin(), pixels.end(), 0.0);
  EXPECT_FALSE(test::RefusalOf(measure).empty());
}

struct Ended {
  int status = 0;
  std::string out, err;
};

Ended RunProgram(std::vector<const char*> arguments) {
  arguments.insert(arguments.begin(), "halmek-night");
  std::ostringstream out, err;
  const int status = RunCommandLine(static_cast<int>(arguments.size()), arguments.data(), out, err);
  return {status, out.str(), err.str()};
}

TEST(NightCommandLine, RefusesWithOneLineAndAStatus) {
  const TemporaryFolder folder;
  const std::string path = folder.path(), none = folder.File("none"), empty = folder.File("file");
  const char *dir = path.c_str(), *missing = none.c_str(), *file = empty.c_str();
  test::WriteFile(file, "");
  test::WriteFile(folder.File(truthFile), "[star star1]\nvelocity = fast\n");
  const std::tuple<std::vector<const char*>, int, std::string> cases[] = {
      {{}, 2, "DIR"},
      {{dir, "--columns", "399"}, 2, "400 to 3000"},
      {{dir, "--stars", "0"}, 2, "1 to 999"},
      {{dir, "--type", "-64"}, 2, "-64"},
      {{dir, "--check", "--seed", "3"}, 2, "--check"},
      {{file, "--stars", "1"}, 1, file},
      {{"--check", missing}, 1, missing},
      {{"--check", dir}, 1, "velocity"},
  };
  for (const auto& [arguments, status, says] : cases) {
    const Ended ended = RunProgram(arguments);
    EXPECT_EQ(ended.status, status) << says;
    EXPECT_NE(ended.err.find(says), std::string::npos) << ended.err;
    EXPECT_EQ(std::ranges::count(ended.err, '\n'), 1) << ended.err;
    EXPECT_EQ(ended.out, "");
  }
}

TEST(NightCommandLine, ChecksEveryStarAndFailsWhereOneCannotBeReduced) {
  const TemporaryFolder folder;
  const std::string path = folder.path();
  const char* const dir = path.c_str();
  EXPECT_EQ(RunProgram({dir, "--columns=600", "--rows", "60", "--type", "-32"}).status, 0);
  std::filesystem::remove(folder.File("arc1b.fts"));
  const auto [status, out, err] = RunProgram({"--check", dir});
  EXPECT_EQ(status, 1);
  EXPECT_EQ(out.find("star1"), std::string::npos) << out;
  EXPECT_NE(out.find("star2"), std::string::npos) << out;
  EXPECT_NE(err.find("star1.recipe:"), std::string::npos) << err;
  EXPECT_NE(err.find("arc1b.fts"), std::string::npos) << err;
}

}  // namespace
}  // namespace halmek::night
