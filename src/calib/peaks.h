// Peaks of arc lines and their centroids.
#pragma once

#include "app/session.h"

namespace halmek {

// The search for a peak around a pixel: the window low..high of 10 pixels on either side, cut at the ends of
// the spectrum, and the first pixel in it that holds the largest positive value. Pixel 0 where none is
// positive.
struct Peak {
  int low = 0, high = 0;
  int pixel = 0;
  double value = 0;
};
Peak FindPeak(const Slot& slot, int guess);

// The centroid of a line in fractional pixels, numbered from 1, and its standard error.
struct Centroid {
  double column = 0, error = 0;
};

// The centroid of the line that peaks at pixel `peak`, by the mean of the midpoints of its bisector at the
// level of each pixel above 15 % of the peak; the error is that of the mean. `midpoints` receives the
// midpoints from place 1 on. Throws Refusal (noMaximumMessage) where the line has fewer than two such pixels
// beside the peak or more than 50, or does not fall to 15 % within the spectrum.
Centroid CentroidLine(const Slot& slot, int peak, FixedTable<double>& midpoints);

inline constexpr const char* noMaximumMessage = "There is no maximum in this range.  Please try again.";

}  // namespace halmek
