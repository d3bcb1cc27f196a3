// A sample night: everything that is true of it, before a single pixel is drawn.
#pragma once

#include <span>
#include <string>
#include <vector>

#include "night/instrument.h"
#include "night/options.h"
#include "night/star_lines.h"

namespace halmek::night {

// A run of pixels of one row that a cosmic ray hit.
struct CosmicRay {
  int row = 0, first = 0, last = 0;
  double electrons = 0;  // in each pixel
};

struct Exposure {
  int number = 0;      // in the order of the night, from 0
  std::string name;    // of the file, without its extension
  std::string object;  // as the observer called it
  double start = 0;    // seconds from the begin of the night
  double seconds = 0;
  double drift = 0;  // columns by which flexure moves the image right
  std::vector<CosmicRay> cosmicRays;

  std::string File() const { return name + ".fts"; }
};

// A star with the arcs before and after it. Flexure runs evenly from the one arc to the other, so that in the
// middle of the star's exposure it is their mean.
struct Star {
  int number = 0;  // from 1
  SpectralType type;
  double velocity = 0;  // km/s, as the spectrograph sees it; positive is away from us
  double peak = 0;      // ADU above the sky on the brightest row of the brightest column
  std::vector<AbsorptionLine> lines;
  Exposure before, exposure, after;
};

// A line that an observer identified on an earlier night: its column then, on the trimmed frame.
struct MaskEntry {
  double column = 0, wavelength = 0;
};

struct Night {
  Options options;
  Instrument instrument;
  std::vector<Star> stars;
  std::vector<MaskEntry> mask;
};

Night PlanNight(const Options& options);

}  // namespace halmek::night
