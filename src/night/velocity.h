// Radial velocity of a star from its spectrum and the list of its lines.
#pragma once

#include <span>

#include "night/truth.h"

namespace halmek::night {

struct VelocityFit {
  double velocity = 0, error = 0;  // km/s; the error is what the noise of the spectrum allows
  int pixels = 0;                  // that were fitted
};

// Fits the spectrum, whose pixel p (from 1) lies at start + (p - 1) x step Angstrom, by the star's lines at
// one velocity times a polynomial for what is left of the continuum. Pixels far from the fit are left out.
// Throws Refusal where the spectrum is no star's.
VelocityFit MeasureVelocity(std::span<const double> spectrum, double start, double step, const Truth& truth,
                            const StarTruth& star);

}  // namespace halmek::night
