// The plan of a night: flexure, cosmic rays, mask, and recipes that name them.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <string>
#include <tuple>

#include "fits/fits_reader.h"
#include "night/light.h"
#include "night/night.h"
#include "night/recipes.h"
#include "night/truth.h"
#include "night/write_night.h"
#include "support/test_session.h"

namespace halmek::night {
namespace {

TEST(NightPlan, BendsTheSpectrographEvenlyFromOneArcToTheOther) {
  for (const Star& star : PlanNight({.stars = 20}).stars) {
    const double change = star.after.drift - star.before.drift;
    EXPECT_GE(std::fabs(change), 0.2);
    EXPECT_LE(std::fabs(change), 0.4);
    EXPECT_NEAR(star.exposure.drift, (star.before.drift + star.after.drift) / 2, 1e-12);
    const auto middle = [](const Exposure& e) { return e.start + e.seconds / 2; };
    EXPECT_NEAR(middle(star.exposure), (middle(star.before) + middle(star.after)) / 2, 1e-9);
  }
}

TEST(NightPlan, HasCosmicRaysByExposureTimeAndAllOfThemOnTheLitPart) {
  const Night night = PlanNight({.stars = 30});
  size_t stars = 0, arcs = 0, longTracks = 0;
  for (const Star& star : night.stars) {
    stars += star.exposure.cosmicRays.size();
    arcs += star.before.cosmicRays.size() + star.after.cosmicRays.size();
    for (const CosmicRay& hit : star.exposure.cosmicRays) {
      longTracks += hit.last - hit.first >= 2;
      EXPECT_GE(hit.row, 1);
      EXPECT_LE(hit.row, night.options.rows);
      EXPECT_GE(hit.first, night.instrument.layout.trimCol1 + 5);
      EXPECT_LE(hit.last, night.instrument.layout.trimCol2 - 5);
      EXPECT_LE(hit.first, hit.last);
    }
  }
  // 900 seconds against twice 20.
  EXPECT_GT(stars, 10 * arcs);
  EXPECT_GT(arcs, 0U);
  EXPECT_GT(longTracks, stars / 50);
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

// A mask's line must be found from a column that is off, also where flexure adds to that.
TEST(NightPlan, HasAMaskOfLinesThatAreAlone) {
  for (const auto& [columns, fewest, most] : {std::tuple{400, 4u, 10u}, {1748, 15u, 40u}, {3000, 30u, 40u}}) {
    const Night night = PlanNight({.columns = columns, .stars = 1});
    const auto& [optics, layout] = night.instrument;
    EXPECT_GE(night.mask.size(), fewest) << columns;
    EXPECT_LE(night.mask.size(), most) << columns;
    EXPECT_GE(night.mask.size(), DeviationPower(night) + 2U) << columns;
    Light light = LampLight(night, night.stars[0].before);
    const auto pixels = light.Row(layout.aperture.first + 9);
    double last = 0;
    for (const MaskEntry& entry : night.mask) {
      EXPECT_GT(entry.column, last);
      last = entry.column;
      const int column = static_cast<int>(std::lround(entry.column)) + layout.trimCol1 - 1;
      const auto window = pixels.subspan(static_cast<size_t>(column - 12), 23);
      const auto peak = std::max_element(window.begin(), window.end()) - window.begin() + column - 11;
      EXPECT_NEAR(static_cast<double>(peak), ColumnOf(optics, entry.wavelength), 1.2) << entry.wavelength;
    }
  }
}

TEST(Truth, ReadsBackWhatItSaysAndRefusesWhatSaysTooLittle) {
  const Night night = PlanNight({.stars = 2});
  const Truth truth = ParseTruth(TruthText(night));
  ASSERT_EQ(truth.stars.size(), 2U);
  EXPECT_EQ(truth.stars[1].name, "star2");
  EXPECT_EQ(truth.stars[1].type, "F5 V");
  EXPECT_EQ(truth.stars[1].velocity, night.stars[1].velocity);
  EXPECT_NEAR(truth.stars[1].drift, night.stars[1].exposure.drift, 1e-12);
  EXPECT_EQ(truth.stars[1].lines.size(), night.stars[1].lines.size());
  EXPECT_NEAR(WavelengthAt(truth.optics, 123, 45, 0.6), WavelengthAt(night.instrument.optics, 123, 45, 0.6),
              1e-8);
  for (const char* text : {"", "[instrument]\ndispersion = 6250 0.5\n", "[star star1]\ndrift = 0\n"})
    EXPECT_FALSE(test::RefusalOf([&] { ParseTruth(text); }).empty()) << text;
}

}  // namespace
}  // namespace halmek::night
