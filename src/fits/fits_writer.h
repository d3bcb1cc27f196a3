// Saving of the frame and of spectra as FITS files.
#pragma once

#include <string>

#include "app/session.h"

namespace halmek {

// Writes slot 0 to `file`, named relative to `dataFolder`, in its `savePixelType` (16, 17, 32 or -32). Where
// that differs from the type it has, the BITPIX and BZERO cards are replaced and a HISTORY card is appended.
// The slot takes the file's name. What is changed in the slot stays where the save then fails; the file is
// written as a whole or not at all.
//
// Warns where pixels will read back changed. Throws Refusal for 64-bit and for a header without BITPIX card,
// and RunTimeError: 9 where the header is full (before anything changes), 6 where a value does not fit its
// bytes, 61 and others for the file.
Warnings SaveFits2D(Session& session, const std::string& file);

// The same for the spectrum of slot 3 or 4. Slot 3 has no header of its own: it is given that of the frame as
// it was when the spectrum was extracted, with NAXIS2 = 1. As 16 bits, a pixel above 65535 is refused.
Warnings SaveFits1D(Session& session, int slot, const std::string& file);

}  // namespace halmek
