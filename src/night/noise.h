// Random numbers of a sample night. The engine is the standard's own, whose sequence is fixed; the
// distributions are ours, because those of the standard library differ between its makers.
#pragma once

#include <cstdint>
#include <random>

namespace halmek::night {

// What a stream of random numbers decides. Every purpose has a stream of its own for every number, so that
// one star more leaves the others as they were.
enum class Stream : uint32_t { star = 1, cosmicRays = 2, readOut = 3 };

class Noise {
 public:
  Noise(uint64_t seed, Stream stream, int number);

  // In [0, 1).
  double Uniform();
  double Uniform(double low, double high) { return low + (high - low) * Uniform(); }

  // With mean 0 and deviation 1.
  double Normal();

  // The number of events where `mean` are expected.
  double Poisson(double mean);

 private:
  std::mt19937_64 engine_;
  double spare_ = 0;
  bool hasSpare_ = false;
};

}  // namespace halmek::night
