// Light on the detector: lines fall where the truth says, by flexure, slit and velocity.
#include "night/light.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <numeric>
#include <utility>
#include <vector>

#include "night/line_profile.h"

namespace halmek::night {
namespace {

// Where the light of `pixels` between two columns lies on the average.
double Centroid(std::span<const double> pixels, int first, int last) {
  double sum = 0, moment = 0;
  for (int column = first; column <= last; ++column) {
    sum += pixels[static_cast<size_t>(column) - 1];
    moment += column * pixels[static_cast<size_t>(column) - 1];
  }
  return moment / sum;
}

TEST(AddLine, PutsAllOfALineAboutItsCentreAndCutsItAtTheEdges) {
  const std::pair<double, double> centresAndLight[] = {{50, 7},      {50.25, 7}, {50.5, 7}, {0.5, 3.5},
                                                       {100.5, 3.5}, {-500, 0},  {1e5, 0}};
  for (const auto& [centre, light] : centresAndLight) {
    std::vector<double> pixels(100);
    AddLine(pixels, {centre, 1.36, 7});
    const double sum = std::accumulate(pixels.begin(), pixels.end(), 0.0);
    EXPECT_NEAR(sum, light, light == 0 ? 0 : 1e-6) << centre;
    EXPECT_NEAR(light == 7 ? Centroid(pixels, 1, 100) : centre, centre, 1e-7);
  }
}

TEST(Optics, LeadFromColumnsToWavelengthsAndBack) {
  for (const int columns : {fewestColumns, 1748, mostColumns}) {
    const auto [optics, layout] = MakeInstrument({.columns = columns});
    for (const double column : {1.0, 0.3 * columns, 0.5 * columns, 1.0 * columns})
      EXPECT_NEAR(ColumnOf(optics, WavelengthAt(optics, column, optics.referenceRow, 0)), column, 1e-6);
    EXPECT_NEAR(ScaleAt(optics, 30),
                WavelengthAt(optics, 30.5, optics.referenceRow, 0) -
                    WavelengthAt(optics, 29.5, optics.referenceRow, 0),
                1e-6);
  }
  // The middle lies columns away from the straight line between the ends.
  const auto [o, l] = MakeInstrument({});
  const double ends = WavelengthAt(o, 1, 70.5, 0) + WavelengthAt(o, l.litColumns, 70.5, 0);
  EXPECT_GT(std::fabs(ends / 2 - WavelengthAt(o, o.referenceColumn, 70.5, 0)) / ScaleAt(o, o.referenceColumn),
            3);
}

TEST(Optics, MoveALineByLessThanAPixelOverTheSlit) {
  for (const int rows : {fewestRows, 140, mostRows}) {
    const auto [optics, layout] = MakeInstrument({.rows = rows});
    double least = 0, most = 0;
    for (int row = layout.slit.first; row <= layout.slit.last; ++row) {
      least = std::min(least, SlitShift(optics, row));
      most = std::max(most, SlitShift(optics, row));
    }
    EXPECT_LT(most - least, 1) << rows;
    EXPECT_GT(most - least, 0.1) << rows;
  }
}

TEST(LampLight, FallsWhereFlexureAndSlitMoveIt) {
  constexpr double wavelength = 6532.882;
  const Night night = PlanNight({.stars = 1});
  const auto& [optics, layout] = night.instrument;
  for (const Exposure& arc : {night.stars[0].before, night.stars[0].after}) {
    Light light = LampLight(night, arc);
    for (const int row : {layout.slit.first + 4, 70, layout.slit.last - 4}) {
      const auto pixels = light.Row(row);
      const auto peak = static_cast<int>(std::lround(ColumnOf(optics, wavelength)));
      const double column = Centroid(pixels, peak - 6, peak + 6);
      EXPECT_NEAR(WavelengthAt(optics, column, row, arc.drift), wavelength, 0.002) << row;
    }
    // Nothing but the slit is lit.
    for (const RowRange& dark : {layout.dark1, layout.dark2})
      for (int row = dark.first; row <= dark.last; ++row)
        EXPECT_LT(*std::max_element(light.Row(row).begin(), light.Row(row).end()), 40) << row;
  }
}

TEST(StarLight, FollowsTheTraceAndMovesItsLinesByTheVelocity) {
  Night night = PlanNight({.stars = 1});
  const auto& [optics, layout] = night.instrument;
  Star& star = night.stars[0];
  star.velocity = 100;
  star.lines = {{6430, 0.6, 0.2}};
  Light light = StarLight(night, star);

  for (const int column : {100, 850, 1600}) {
    std::vector<double> cut(static_cast<size_t>(layout.rows));
    for (int row = layout.aperture.first - 9; row <= layout.aperture.last + 9; ++row)
      cut[static_cast<size_t>(row) - 1] = light.Row(row)[static_cast<size_t>(column) - 1];
    EXPECT_NEAR(Centroid(cut, 1, layout.rows), TraceRow(optics, column), 0.15) << column;
  }

  const auto peak = light.Row(static_cast<int>(std::lround(optics.traceRow)));
  const auto deepest = std::min_element(peak.begin() + 1000, peak.begin() + 1400) - peak.begin() + 1;
  const double claimed =
      WavelengthAt(optics, static_cast<double>(deepest), optics.traceRow, star.exposure.drift);
  EXPECT_NEAR(claimed, 6430 * (1 + 100 / speedOfLight), 0.3);
}

}  // namespace
}  // namespace halmek::night
