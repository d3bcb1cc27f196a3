// Arc spectra of known lines.
#pragma once

#include <cmath>
#include <vector>

#include "calib/line_list.h"
#include "support/test_session.h"

namespace halmek::test {

// `pixels` values of emission lines, Gaussians of 4 pixels full width at half maximum, centred on the columns
// (numbered from 1), over a background of 0.
inline std::vector<double> ArcOf(int pixels, const std::vector<double>& columns, double height = 1000) {
  std::vector<double> values(static_cast<size_t>(pixels));
  for (double column : columns) {
    for (int p = 1; p <= pixels; ++p) {
      const double distance = (p - column) / 4.0;
      values[static_cast<size_t>(p) - 1] += height * std::exp(-4 * std::log(2.0) * distance * distance);
    }
  }
  return values;
}

// Columns `first`, `first + step`, ... of `count` lines.
inline std::vector<double> Columns(int count, double first = 50, double step = 40) {
  std::vector<double> columns;
  for (int k = 0; k < count; ++k)
    columns.push_back(first + step * k);
  return columns;
}

// Loads lines at these columns into an arc and identifies each by `wavelength(column)`.
template <class Wavelength>
void IdentifyLines(Session& session, int a, int pixels, const std::vector<double>& columns,
                   Wavelength wavelength) {
  SetSpectrum(session, a, ArcOf(pixels, columns));
  for (double column : columns) {
    ClickLine(session, a, static_cast<int>(std::lround(column)));
    UpdateFit(session, a, wavelength(column));
  }
}

}  // namespace halmek::test
