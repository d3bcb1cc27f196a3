// The files of a sample night.
#pragma once

#include <string>

#include "night/night.h"

namespace halmek::night {

// Writes frames, wavelength table, mask, recipes and truth into `folder`, which is made where it is missing.
// Files of the same names are replaced. Returns some lines that say what was written. Throws Failure.
std::string WriteNight(const Night& night, const std::string& folder);

}  // namespace halmek::night
