// The dispersion correction: the object's spectrum on a strictly linear wavelength scale.
#pragma once

#include "app/session.h"

namespace halmek {

// Redistributes the object's flux so that pixel p lies at dispStart + (p - 1) x dispStep Angstrom, on the
// mean of the straight lines of the arcs in use, and appends CRVAL1, CD1_1 and a HISTORY card. Flux is
// conserved but for what leaves the spectrum and for the edges: where the shift at an end is positive, about
// as many pixels there get their uncorrected values back; where it is negative, those that it empties stay
// empty.
//
// Warns where lines have changed since their deviations were fitted, where an arc has no deviation fit, and
// where arc and object differ in length. Throws Refusal, with nothing changed, where no object is loaded,
// where it was corrected before, and where the arcs in use are not ready; RunTimeError 9 where the header has
// no room.
Warnings CorrectDispersion(Session& session);

// The shift of the flux of pixel `column`, in pixels toward lower columns, by the arcs in use: their mean
// correction over the linear scale's step.
double CorrectionShift(const Session& session, double column);

}  // namespace halmek
