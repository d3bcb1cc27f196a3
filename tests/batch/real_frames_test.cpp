// Real frames of the Kast blue arm, reduced and calibrated by recipe.
#include <gtest/gtest.h>

#include <cmath>
#include <filesystem>
#include <fstream>
#include <sstream>

#include "calib/deviations.h"
#include "calib/dispersion.h"
#include "steps/recipe.h"
#include "support/test_session.h"

namespace halmek::test {
namespace {

struct KnownLine {
  double column = 0, wavelength = 0;
};

// The lines marked clean in the rows around the star. Columns are flux-weighted centroids, from 1.
std::vector<KnownLine> CleanLines(const std::string& path) {
  std::vector<KnownLine> lines;
  std::ifstream file(path);
  for (std::string line; std::getline(file, line);) {
    std::vector<std::string> fields;
    std::istringstream record(line);
    for (std::string field; std::getline(record, field, ',');)
      fields.push_back(field);
    if (fields.size() > 10 && fields[0] == "b1.fits" && fields[1] == "165-175" && fields[10] == "clean")
      lines.push_back({std::stod(fields[4]) + 1, std::stod(fields[5])});
  }
  return lines;
}

void RunFile(Session& session, const std::string& recipe, const Variables& variables) {
  const std::string text = ReadFile(HALMEK_TEST_RECIPES "/" + recipe);
  RunRecipe(session, ParseRecipe(text, variables), [](const RecipeLine&, const Outcome&) {});
}

TEST(RealFrames, KastBlueArcAndStarComeOutCalibrated) {
  const std::string data = std::string(HALMEK_TEST_DATA) + "/kast_blue";
  if (!std::filesystem::exists(data))
    GTEST_SKIP() << "the real frames are not on this machine";
  const TemporaryFolder out;
  const Variables variables{{"data", data}, {"out", out.path()}};
  const auto arcSession = SessionIn(out.path()), session = SessionIn(out.path());
  RunFile(*arcSession, "kast_arc.recipe", variables);
  RunFile(*session, "kast_star.recipe", variables);

  const Arc& arc = session->arc[1];
  EXPECT_GE(arc.LineCount, 12);
  const std::vector<KnownLine> known = CleanLines(data + "/known_lines.csv");
  ASSERT_GE(known.size(), 12u);
  for (const KnownLine& line : known) {
    int found = 0;
    for (int k = 1; k <= arc.LineCount; ++k) {
      if (std::fabs(arc.ArcLineWavelength(k) - line.wavelength) > 0.01)
        continue;
      ++found;
      EXPECT_NEAR(arc.ArcLineColumn(k), line.column, 0.35) << line.wavelength;
    }
    EXPECT_EQ(found, 1) << line.wavelength;
    const double scale = arc.linIntercept + arc.linSlope * line.column - CorrectionAt(arc, line.column);
    EXPECT_NEAR(scale, line.wavelength, 0.3);
  }
  EXPECT_TRUE(std::filesystem::exists(out.File("b24cal.fts")));
}

}  // namespace
}  // namespace halmek::test
