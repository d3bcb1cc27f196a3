// Tests of the signal to noise of a spectrum.
#include "reduce/signal_to_noise.h"

#include <gtest/gtest.h>

#include <cmath>
#include <random>
#include <vector>

namespace halmek {
namespace {

TEST(SignalToNoise, FindsTheNoiseUnderASlopeAndBesideLinesAndPadding) {
  std::mt19937 random(7);
  std::normal_distribution<double> noise(0, 1);
  for (const double truth : {5.0, 50.0, 500.0}) {
    std::vector<double> spectrum(3000);
    for (size_t i = 0; i < spectrum.size(); ++i)
      spectrum[i] = 1 + 0.0001 * (static_cast<double>(i) - 1500) + noise(random) / truth;
    for (size_t i = 100; i < spectrum.size(); i += 200)
      spectrum[i] = 0.1;
    std::fill(spectrum.begin() + 2000, spectrum.begin() + 2400, 0.0);
    EXPECT_NEAR(SignalToNoise(spectrum).value_or(0) / truth, 1, 0.06) << truth;
  }
}

TEST(SignalToNoise, SaysNothingWhereThereIsNothingToSay) {
  const std::vector<double> flat(100, 3.0), dark{-1, -2, -1, -2, -1, -3, -1, -2}, few{1, 2, 3, 0, 4, 0};
  for (const auto& pixels : {flat, dark, few, std::vector<double>{}})
    EXPECT_FALSE(SignalToNoise(pixels)) << testing::PrintToString(pixels);
}

}  // namespace
}  // namespace halmek
