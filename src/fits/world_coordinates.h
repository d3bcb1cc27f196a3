// Cards that tie pixels to a scale or to the detector, kept true when the data change.
//
// The keywords are those of FITS 4.0 (section 8), with an alternate scale's letter or without, and those by
// which IRAF ties an image to the one it was cut from (LTV, LTM; CCDSEC and its like).
#pragma once

#include "app/session.h"

namespace halmek {

// Follows a cut that makes column `firstColumn` and row `firstRow`, counted from 1, the first ones: reference
// pixels (CRPIX1, LTV1, ...) move with it, and sections of the detector are dropped.
void FollowTrim(FitsHeader& header, int firstColumn, int firstRow);

// Drops what no spectrum has that is summed from rows: sections, the scale of the second axis, and the first
// one's unless it is one of wavelengths.
void DropRows(FitsHeader& header);

// Drops every scale, and sections.
void DropScales(FitsHeader& header);

// True if the data are on a scale of wavelengths already: an earlier correction by this program, or CRVAL1 or
// CD1_1 that are neither of the sky (CTYPE1 says so, or there is a CTYPE2) nor of pixels (CTYPE1 'PIXEL').
bool HasWavelengthScale(const FitsHeader& header);

}  // namespace halmek
