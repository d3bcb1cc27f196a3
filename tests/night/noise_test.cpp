// Random numbers of a sample night: the distributions that they claim.
#include "night/noise.h"

#include <gtest/gtest.h>

#include <cmath>
#include <functional>

namespace halmek::night {
namespace {

struct Moments {
  double mean = 0, variance = 0, skewness = 0;
};

constexpr int draws = 200000;

Moments MomentsOf(const std::function<double()>& draw) {
  double sum = 0, squares = 0, cubes = 0;
  for (int i = 0; i < draws; ++i) {
    const double x = draw();
    sum += x;
    squares += x * x;
    cubes += x * x * x;
  }
  const double mean = sum / draws, variance = squares / draws - mean * mean;
  const double third = cubes / draws - 3 * mean * squares / draws + 2 * mean * mean * mean;
  return {mean, variance, third / std::pow(variance, 1.5)};
}

TEST(Noise, CountsEventsAsPoissonDidBelowAndAboveTheChangeOfMethod) {
  for (const double mean : {0.02, 1.0, 29.0, 31.0, 400.0, 50000.0}) {
    Noise noise(3, Stream::readOut, 0);
    const Moments m = MomentsOf([&] { return noise.Poisson(mean); });
    const double sigma = std::sqrt(mean / draws);
    EXPECT_NEAR(m.mean, mean, 5 * sigma) << mean;
    EXPECT_NEAR(m.variance / mean, 1, 5 * std::sqrt((2 + 1 / mean) / draws) + 0.004) << mean;
    EXPECT_NEAR(m.skewness, 1 / std::sqrt(mean), mean < 0.1 ? 0.5 : 0.04) << mean;
  }
}

TEST(Noise, IsNormal) {
  Noise noise(4, Stream::star, 1);
  const Moments normal = MomentsOf([&] { return noise.Normal(); });
  EXPECT_NEAR(normal.mean, 0, 0.012);
  EXPECT_NEAR(normal.variance, 1, 0.02);
  EXPECT_NEAR(normal.skewness, 0, 0.03);
}

}  // namespace
}  // namespace halmek::night
