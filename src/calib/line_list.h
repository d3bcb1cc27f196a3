// The identified lines of an arc and their straight-line dispersion.
#pragma once

#include <optional>
#include <string_view>

#include "app/session.h"

namespace halmek {

// True for the wavelengths that a line can be given: 3000 to 9000 Angstrom.
bool IsValidWavelength(double wavelength);

// Throws Refusal for any other.
void RequireValidWavelength(double wavelength);

// Rebuilds the line list of arc `a` in pixel order from the wavelengths given to its pixels, and the points
// of the straight-line fit.
void RebuildLineList(Session& session, int a);

// To be called where the lines of arc `a` are others than those its fits went through: the fits are stale,
// and no "DONE!" of them stands.
void LinesHaveChanged(Session& session, int a);

// A click at a column, numbered from 1: finds the peak, centroids it unless that was done before, and fills
// the identification panel, with a proposed wavelength once two lines are known. Throws Refusal
// (noMaximumMessage) where there is no peak within 9 pixels or it is below a hundredth of the plot's upper
// limit.
void ClickLine(Session& session, int a, int column);

// Gives the clicked line a wavelength in Angstrom, rebuilds the list and refits the straight line. Returns
// false, and does nothing, where the line has one already. Throws Refusal for a wavelength outside 3000 to
// 9000 and for a 51st line, with nothing changed.
bool UpdateFit(Session& session, int a, double wavelength);

// True if the clicked line of arc `a` has a wavelength; it keeps it until it is deleted.
bool IsIdentified(const Session& session, int a);

// How many identified lines of arc `a` peak within 3 pixels of the clicked one, itself included.
int LinesNearPeak(const Session& session, int a);

// Takes the wavelengths of all lines within 3 pixels of the clicked one, and refits. Returns how many
// there were; where there was none, the list stays as it was.
int DeleteEntry(Session& session, int a);

// Takes all identifications of the arc, and its fits.
void DeleteAllLines(Session& session, int a);

// Shows entry `entry` of the wavelength table in the identification panel. Other numbers than 1..wlCount are
// moved to the nearer end; without a table nothing happens. The deviation is that from the estimate that the
// panel shows, from 0 where it shows none.
void ShowTableEntry(Session& session, int entry);

// Shows in the identification panel what belongs to a wavelength that is being typed: the name of the table's
// entry of that wavelength, and the deviation from the estimate; neither where there is none. The entry shown
// before, and its wavelength, stay what the table is walked from.
void ShowTypedWavelength(Session& session, std::string_view text);

// Fits the straight line to the list of arc `a` and stores it, but for its RMS. Returns the sum of squared
// residuals in Angstrom squared; nothing, with nothing changed, where the fit is singular.
std::optional<double> FitDispersionLine(Session& session, int a);

// Throws Refusal, "Hey, no Arc 1 file has been loaded!" or the like, where the arc holds no spectrum.
void RequireArc(const Session& session, int a);

}  // namespace halmek
