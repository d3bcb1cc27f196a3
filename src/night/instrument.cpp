// The spectrograph and its detector.
#include "night/instrument.h"

#include <algorithm>
#include <cmath>

namespace halmek::night {
namespace {

constexpr int overscan = 48;
constexpr int raggedColumns = 4, raggedRows = 2;  // at the edges of the detector

Layout MakeLayout(const Options& options, double traceRow) {
  Layout l;
  l.columns = options.columns;
  l.rows = options.rows;
  l.litColumns = options.columns - overscan;
  l.badColumn = static_cast<int>(std::lround(0.7992 * options.columns));
  l.trimCol1 = raggedColumns + 1;
  l.trimCol2 = l.litColumns;
  l.trimRows = {raggedRows + 1, l.rows - raggedRows};

  const int dark = std::max(8, l.rows / 16);  // rows that the slit leaves dark at either end
  l.slit = {dark + 1, l.rows - dark};
  l.dark1 = {l.trimRows.first, dark - 2};
  l.dark2 = {l.rows - dark + 3, l.trimRows.last};

  constexpr int apertureHalf = 9, gap = 4, mostSky = 24;
  const int centre = static_cast<int>(std::lround(traceRow));
  l.aperture = {centre - apertureHalf, centre + apertureHalf};
  l.sky1.last = l.aperture.first - gap;
  l.sky1.first = std::max(l.slit.first + 1, l.sky1.last - mostSky + 1);
  l.sky2.first = l.aperture.last + gap;
  l.sky2.last = std::min(l.slit.last - 1, l.sky2.first + mostSky - 1);
  return l;
}

Optics MakeOptics(const Options& options) {
  const double litColumns = options.columns - overscan;
  Optics o;
  o.referenceColumn = (litColumns + 1) / 2;
  o.referenceRow = (options.rows + 1) / 2.0;
  o.dispersion = {6261, 0.55, -4.2e-6, -1.3e-9};
  // Less than a pixel over the slit, however long it is.
  o.tilt = std::min(0.004, 0.6 / options.rows);
  o.curvature = std::min(4e-5, 0.8 / options.rows / options.rows);
  o.lineSigma = 3.2 / 2.3548;
  o.traceRow = 0.5 * options.rows + 0.8;
  o.traceSlope = 3 / litColumns;
  return o;
}

}  // namespace

double TraceRow(const Optics& o, double column) {
  return o.traceRow + o.traceSlope * (column - o.referenceColumn);
}

double SlitShift(const Optics& o, double row) {
  const double rows = row - o.referenceRow;
  return (o.tilt + o.curvature * rows) * rows;
}

double WavelengthAt(const Optics& o, double column, double row, double drift) {
  const double u = column - SlitShift(o, row) - drift - o.referenceColumn;
  const auto& a = o.dispersion;
  return a[0] + u * (a[1] + u * (a[2] + u * a[3]));
}

double ScaleAt(const Optics& o, double column) {
  const double u = column - o.referenceColumn;
  const auto& a = o.dispersion;
  return a[1] + u * (2 * a[2] + u * 3 * a[3]);
}

double ColumnOf(const Optics& o, double wavelength) {
  // Newton's method; the dispersion is so near a straight line that it cannot go astray on the detector, and
  // what lies far off it only needs to stay off.
  double column = o.referenceColumn + (wavelength - o.dispersion[0]) / o.dispersion[1];
  if (std::fabs(column - o.referenceColumn) > mostColumns)
    return column;
  for (int step = 0; step < 6; ++step)
    column -= (WavelengthAt(o, column, o.referenceRow, 0) - wavelength) / ScaleAt(o, column);
  return column;
}

Instrument MakeInstrument(const Options& options) {
  const Optics optics = MakeOptics(options);
  return {optics, MakeLayout(options, optics.traceRow)};
}

double SaturationOf(int pixelType) { return pixelType == pixel_types::signed16 ? 32767 : 65535; }

}  // namespace halmek::night
