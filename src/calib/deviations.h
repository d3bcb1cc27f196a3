// Deviations of an arc's lines from its straight-line dispersion, and the polynomial through them.
#pragma once

#include <string>

#include "app/session.h"

namespace halmek {

// Computes the deviation of each line, straight-line fit minus table, in Angstrom.
void ComputeDeviations(Session& session, int a);

// Computes them to be looked at and fitted, as "Calc. Fit" does. Throws Refusal for fewer than three lines.
void OpenDeviations(Session& session, int a);

// Fits the deviations with a polynomial of the arc's `fitPower`, 2 to 4; it becomes the arc's correction
// function of that power. Throws Refusal for too few lines and for power 5, with nothing changed.
void FitDeviations(Session& session, int a);

// The root mean square of the lines' deviations from the straight line, and of what the fitted polynomial
// leaves of the computed deviations, in Angstrom, with n - 1 and n - p - 1 degrees of freedom (0 where none
// is left).
double LinearRms(const Arc& arc);
double DeviationRms(const Arc& arc);

// The correction function of the arc's `fitPower` at a column, in Angstrom; 0 for a power that was never
// fitted.
double CorrectionAt(const Arc& arc, double column);

// Whether the arc's `fitPower` has been fitted, and through the lines that it has now.
bool IsFitted(const Arc& arc);

// What was fitted and how well, in words: the fit, its RMS and its largest residual, or what is missing. The
// last two are empty where there is nothing to be said.
struct FitInWords {
  std::string fit, rms, largest;
};
FitInWords DescribeFit(const Arc& arc);

// The plot of the deviations as dots with the correction function, once there is one.
Drawing PlotDeviations(Session& session, int a, WindowSize window);

// Drops the fit, as "Reset" does.
void ResetDeviations(Session& session, int a);

// Accepts the fit, as "OK" of its window does. Throws Refusal where there is none.
void AcceptDeviations(Session& session, int a);

// Leaves the arc's own window by "OK". Throws Refusal where its lines are not identified and fitted.
void RequireCalibrated(const Session& session, int a);

}  // namespace halmek
