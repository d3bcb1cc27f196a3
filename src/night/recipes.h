// The recipes that reduce a sample night.
#pragma once

#include <string>

#include "night/night.h"

namespace halmek::night {

// The power of the polynomial that the night's lines can bear.
int DeviationPower(const Night& night);

// Reduces the arc frame $arc to a spectrum.
std::string ArcRecipe(const Night& night);

// Reduces a star with its two arcs, from the frames to the calibrated spectrum.
std::string StarRecipe(const Night& night, const Star& star);

// The same for the star of number $n, whichever it is, and therefore without its cosmic rays and plots.
std::string NightRecipe(const Night& night);

}  // namespace halmek::night
