// The plan of a night: its lines of light, and its cosmic rays with the recipes that name them.
#include <gtest/gtest.h>

#include <cmath>
#include <string>
#include <utility>
#include <vector>

#include "fits/fits_reader.h"
#include "night/light.h"
#include "night/line_profile.h"
#include "night/night.h"
#include "night/recipes.h"
#include "night/truth.h"
#include "night/write_night.h"
#include "support/test_session.h"

namespace halmek::night {
namespace {

TEST(AddLine, PutsAllOfALineAboutItsCentreAndCutsItAtTheEdges) {
  const std::pair<double, double> centresAndLight[] = {{50, 7},      {50.25, 7}, {50.5, 7}, {0.5, 3.5},
                                                       {100.5, 3.5}, {-500, 0},  {1e5, 0}};
  for (const auto& [centre, light] : centresAndLight) {
    std::vector<double> pixels(100);
    AddLine(pixels, {centre, 1.36, 7});
    double sum = 0, moment = 0;
    for (int column = 1; column <= 100; ++column) {
      sum += pixels[static_cast<size_t>(column) - 1];
      moment += column * pixels[static_cast<size_t>(column) - 1];
    }
    EXPECT_NEAR(sum, light, light == 0 ? 0 : 1e-6) << centre;
    EXPECT_NEAR(light == 7 ? moment / sum : centre, centre, 1e-7);
  }
}

// Every hit of the truth is in the frame, and the recipe zaps those that would reach the spectrum.
TEST(NightPlan, ZapsTheCosmicRaysThatAreInTheFrame) {
  const test::TemporaryFolder folder;
  const Night night = PlanNight({.columns = 800, .stars = 1});
  const Star& star = night.stars[0];
  const Layout& layout = night.instrument.layout;
  WriteNight(night, folder.path());
  const auto session = test::SessionIn(folder.path());
  LoadFits2D(*session, star.exposure.File());
  const std::string recipe = test::ReadFile(folder.File("star1.recipe"));
  Light light = StarLight(night, star);
  int zapped = 0;
  for (const CosmicRay& hit : star.exposure.cosmicRays) {
    const double expected = light.Row(hit.row)[static_cast<size_t>(hit.first) - 1];
    const double excess = (session->image(hit.row, hit.first) - detector::bias) * detector::gain - expected;
    EXPECT_NEAR(excess, hit.electrons, 6 * std::sqrt(expected + 20)) << hit.row << " " << hit.first;
    const std::string zap = "\nzap " + std::to_string(hit.row - layout.trimRows.first + 1) + " " +
                            std::to_string(hit.first - layout.trimCol1 + 1) + " " +
                            std::to_string(hit.last - layout.trimCol1 + 1) + "\n";
    const bool isInAperture = hit.row >= layout.aperture.first && hit.row <= layout.aperture.last;
    zapped += recipe.find(zap) != std::string::npos;
    EXPECT_TRUE(!isInAperture || recipe.find(zap) != std::string::npos) << zap;
  }
  EXPECT_GT(zapped, 0);
}

TEST(Truth, ThatSaysTooLittleIsRefused) {
  for (const char* text : {"", "[instrument]\ndispersion = 6250 0.5\n", "[star star1]\ndrift = 0\n"})
    EXPECT_FALSE(test::RefusalOf([&] { ParseTruth(text); }).empty()) << text;
}

}  // namespace
}  // namespace halmek::night
