// Random numbers of a sample night.
#include "night/noise.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace halmek::night {
namespace {

std::mt19937_64 Engine(uint64_t seed, Stream stream, int number) {
  std::seed_seq sequence{static_cast<uint32_t>(seed), static_cast<uint32_t>(seed >> 32),
                         static_cast<uint32_t>(stream), static_cast<uint32_t>(number)};
  return std::mt19937_64(sequence);
}

}  // namespace

Noise::Noise(uint64_t seed, Stream stream, int number) : engine_(Engine(seed, stream, number)) {}

double Noise::Uniform() { return std::ldexp(static_cast<double>(engine_() >> 11), -53); }

double Noise::Normal() {
  if (hasSpare_) {
    hasSpare_ = false;
    return spare_;
  }
  const double radius = std::sqrt(-2 * std::log(1 - Uniform()));
  const double angle = 2 * std::numbers::pi * Uniform();
  spare_ = radius * std::sin(angle);
  hasSpare_ = true;
  return radius * std::cos(angle);
}

double Noise::Poisson(double mean) {
  constexpr double many = 30;
  if (mean > many) {
    // The normal distribution with the Poisson distribution's skewness; from here on the two cannot be told
    // apart in a frame.
    const double z = Normal();
    return std::max(0.0, std::nearbyint(mean + std::sqrt(mean) * z + (z * z - 1) / 6));
  }
  const double limit = std::exp(-mean);
  int events = 0;
  for (double product = Uniform(); product > limit; product *= Uniform())
    ++events;
  return events;
}

}  // namespace halmek::night
