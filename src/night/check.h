// Reduction of a sample night, and its errors against the truth.
#pragma once

#include <array>
#include <string>
#include <vector>

#include "night/truth.h"
#include "night/velocity.h"

namespace halmek::night {

struct ErrorStatistics {
  double mean = 0, rms = 0;  // of the errors themselves, not about their mean
};

// How well a star was reduced. Pairs are of the arc before and the arc after it.
struct StarCheck {
  std::string name, type;
  std::array<int, 2> lines{};
  std::array<double, 2> linearRms{}, deviationRms{};  // Angstrom
  int power = 0;                                      // of the deviation fit
  double start = 0, step = 0;                         // of the calibrated scale, Angstrom
  int pixels = 0;
  ErrorStatistics wavelengthError;  // Angstrom, claimed less true, over all pixels
  ErrorStatistics velocityError;    // the same in km/s
  VelocityFit velocity;             // measured on the calibrated file
  double trueVelocity = 0;
};

// Performs the recipe of the star in `folder` and compares. Throws RecipeStopped where a step is refused, and
// Failure where a file cannot be read.
StarCheck CheckStar(const std::string& folder, const Truth& truth, const StarTruth& star);

// Some lines for a reader.
std::string ReportOf(const StarCheck& check);

}  // namespace halmek::night
