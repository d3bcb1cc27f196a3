// The spectrograph and its detector: what lies where on a frame.
#pragma once

#include <array>

#include "night/options.h"

namespace halmek::night {

inline constexpr double speedOfLight = 299792.458;  // km/s

// Columns, rows and parts of them count from 1 on the frame as read out; the middle of a pixel is a whole
// number.
struct Optics {
  // Wavelength in air, in Angstrom, as a cubic in the columns from `referenceColumn`, on `referenceRow`.
  double referenceColumn = 0, referenceRow = 0;
  std::array<double, 4> dispersion{};

  // The image of the slit leans and bends: on other rows a wavelength lies further right by
  // tilt x rows + curvature x rows^2.
  double tilt = 0, curvature = 0;

  double lineSigma = 0;  // columns; of the Gaussian that the spectrograph makes of a narrow line

  // The star's spectrum runs across the rows: row = traceRow + traceSlope x (columns from referenceColumn).
  double traceRow = 0, traceSlope = 0;
};

// The row on which the star's spectrum lies in a column.
double TraceRow(const Optics& optics, double column);

// How far right of its place on the reference row a wavelength lies on `row`.
double SlitShift(const Optics& optics, double row);

// The wavelength in the middle of a pixel where flexure has moved the image right by `drift` columns, and
// what a column is worth there in Angstrom.
double WavelengthAt(const Optics& optics, double column, double row, double drift);
double ScaleAt(const Optics& optics, double column);

// The column of a wavelength on the reference row, without flexure.
double ColumnOf(const Optics& optics, double wavelength);

struct RowRange {
  int first = 0, last = 0;
};

// How the detector is laid out and how an observer would cut it up.
struct Layout {
  int columns = 0, rows = 0;
  int litColumns = 0;  // the overscan strip begins behind them
  RowRange slit;       // rows that the slit lights
  int badColumn = 0;
  int trimCol1 = 0, trimCol2 = 0;  // without the overscan strip and the ragged edges
  RowRange trimRows;
  RowRange aperture;      // of the stars, and of the arcs to go with them
  RowRange sky1, sky2;    // in the slit, on either side of the star
  RowRange dark1, dark2;  // beyond the ends of the slit
};

struct Instrument {
  Optics optics;
  Layout layout;
};

Instrument MakeInstrument(const Options& options);

// What the detector does with light.
namespace detector {
inline constexpr double bias = 400;        // ADU
inline constexpr double gain = 1.6;        // electrons per ADU
inline constexpr double readNoise = 4;     // electrons
inline constexpr double hotColumn = 1500;  // ADU that the bad column reads above its neighbours
}  // namespace detector

// The largest number that a frame of that pixel type can hold of a 16-bit converter.
double SaturationOf(int pixelType);

}  // namespace halmek::night
