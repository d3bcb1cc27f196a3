// Loading of FITS files into the slots.
#pragma once

#include <string>

#include "app/session.h"

namespace halmek {

// Loads `file`, named relative to `dataFolder`, as the 2-D frame: header, pixels and their range, and what
// the main window shows of it. Reads the DAO layout where `daoFrame` is set, and clears it.
//
// The slot takes the file's name at once and its header before its pixels are looked at: where a load stops
// after that, the slot holds the new header but the old pixels, and the frame's steps are disabled. Pixels
// are replaced all or not at all.
//
// Throws Refusal (not a FITS file, no END card, a pixel type that is not supported, no pixels) and
// RunTimeError: 53 and others for the file, 62 where it ends too early, 9 for more than 200 cards, 3000
// columns or 500 rows, 5 for an OBJECT card without quotes. Does nothing where `file` or the data folder is
// empty.
Warnings LoadFits2D(Session& session, const std::string& file);

// The same for a 1-D spectrum of at most 3000 pixels into slot 1, 2 or 4. An arc's identifications are
// dropped once the new spectrum is in. A file of more than one row is refused.
Warnings LoadFits1D(Session& session, int slot, const std::string& file);

}  // namespace halmek
