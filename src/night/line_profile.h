// Spectral lines on pixels.
#pragma once

#include <span>

namespace halmek::night {

// A Gaussian line in pixels: its centre, where the first pixel's middle is 1, its deviation, and the area
// under it, in pixels times whatever the spectrum counts.
struct PixelLine {
  double centre = 0, sigma = 1, area = 0;
};

// Adds to each pixel the part of the line that falls on it.
void AddLine(std::span<double> pixels, const PixelLine& line);

// Makes pixels that hold the light missing in lines into the part of the continuum that is left. Where lines
// pile up, a little is always left.
void LeaveLight(std::span<double> missing);

}  // namespace halmek::night
