// Continuum of the extracted spectrum: points, fit and normalisation.
#pragma once

#include "app/session.h"

namespace halmek {

// Drops points and fit and chooses power 4, as the window does when it is first opened.
void OpenContinuum(Session& session);

// The plot of the spectrum with its continuum points and, once fitted, the continuum.
Drawing PlotContinuum(Session& session, WindowSize window);

// Adds a point at the largest positive pixel within 5 columns of `column`. Returns false where there is none.
// Throws Refusal where 2000 points are set.
bool AddContinuumPoint(Session& session, int column);

// Adds a point at the pixel `column` itself, as the automatic mode does. Returns false where it is not
// positive.
bool AddContinuumPixel(Session& session, int column);

// Deletes the first point less than 10 columns from `column`. Returns false where there is none.
bool DeleteContinuumPoint(Session& session, int column);

// The column under a position in twips, for clicks in the manual mode.
int ContinuumColumnAt(const Session& session, double mouseX);

// Fits a polynomial of `continuumPower`, 2 to 5, to the points. In the automatic mode (`manualFit` 0) the
// points are first set anew: the largest positive pixel of each bin of `continuumInterval` columns. Throws
// Refusal for an interval below 1 and too few points.
void FitContinuum(Session& session);

// Divides the spectrum by the fit and multiplies it by the fit's maximum. Pixels where the fit is zero stay
// as they are. Drops the points; the fit stays, so that a second call divides again. Throws Refusal where
// there is no fit. Warns where the fit is zero or negative.
Warnings NormalizeContinuum(Session& session);

// Puts back the spectrum before the last normalisation and drops points and fit. Returns false, and does
// nothing, where there was no normalisation.
bool RevertContinuum(Session& session);

// Drops points and fit; the spectrum stays.
void ResetContinuum(Session& session);

// Leaves the window by "OK": drops the points, and the spectrum may be saved.
void AcceptContinuum(Session& session);

}  // namespace halmek
