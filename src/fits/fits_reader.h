// Loading of FITS files into the slots.
#pragma once

#include <string>

#include "app/session.h"

namespace halmek {

// Loads `file`, named relative to `dataFolder`, as the 2-D frame: header, pixels and their range, and what
// the main window shows of it. Reads the DAO layout where `daoFrame` is set, and clears it. Pixels are
// BZERO + BSCALE x the stored numbers (FITS 4.0, 4.4.2), but for the DAO layout. A stored number that BLANK
// says to be no value is filled with the mean of the nearest pixels of its row; a warning and a HISTORY card
// tell how many were.
//
// What is refused changes nothing. Throws Refusal (not a FITS file, no END card, a pixel type that is not
// supported, no pixels) and RunTimeError: 53 and others for the file, 62 where it ends too early, 9 for more
// than 200 cards, 3000 columns or 500 rows, 5 for an OBJECT card without quotes, 6 for a scaled pixel that is
// too large. Does nothing where `file` or the data folder is empty.
Warnings LoadFits2D(Session& session, const std::string& file);

// The same for a 1-D spectrum of at most 3000 pixels into slot 1, 2 or 4. An arc's identifications are
// dropped. A file of more than one row is refused.
Warnings LoadFits1D(Session& session, int slot, const std::string& file);

}  // namespace halmek
