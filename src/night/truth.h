// The truth about a sample night as a text, and back.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "night/night.h"

namespace halmek::night {

inline constexpr const char* truthFile = "truth.txt";

// Sections in brackets, with lines of `key = value`.
std::string TruthText(const Night& night);

// Whether a text begins as ours do.
bool IsTruth(std::string_view text);

// What a check of a reduction needs to know of it.
struct StarTruth {
  std::string name;     // of the star's file, without extension, and of its recipe
  std::string type;     // spectral
  double velocity = 0;  // km/s
  double drift = 0;     // columns, in the middle of the exposure
  std::vector<AbsorptionLine> lines;
};
struct Truth {
  Optics optics;
  int trimCol1 = 1;
  std::vector<StarTruth> stars;
};

// Throws Refusal where the text says too little.
Truth ParseTruth(std::string_view text);

}  // namespace halmek::night
