// Saving of the frame and of spectra as FITS files.
#pragma once

#include <string>

#include "app/session.h"

namespace halmek {

// The bytes of a whole file, and what is to be said of pixels that will read back changed.
struct EncodedFits {
  std::string bytes;
  Warnings warnings;
};

// A 2-D file of that header, which describes the data, and the rows and columns from 1 on of `image`. Throws
// RunTimeError 6 where a value does not fit its bytes.
EncodedFits EncodeFrame(const FitsHeader& header, const FrameTable& image, int columns, int rows);

// Writes slot 0 to `file`, named relative to `dataFolder`, in its `savePixelType` (16, 17, 32 or -32), where
// WriteOutput allows it.
//
// The slot takes the header and the name of the file: the mandatory cards stand first and once and describe
// the data, cards of other data are dropped (BSCALE, BLANK, CHECKSUM, ...), and a HISTORY card tells of a
// change of type, or that the file is ours. Data and header end with whole records (FITS 4.0, 3.3 and 4.4).
// What is refused changes nothing.
//
// Warns where pixels will read back changed. Throws Refusal for 64-bit and for a header without BITPIX card,
// and RunTimeError: 9 where the header is full, 6 where a value does not fit its bytes, 61 and others for the
// file.
Warnings SaveFits2D(Session& session, const std::string& file, bool mayReplace = false);

// The same for the spectrum of slot 3 or 4; it has NAXIS2 = 1 where its header has two axes. Slot 3 is given
// the header of its extraction. As 16 bits, a pixel above 65535 is refused.
Warnings SaveFits1D(Session& session, int slot, const std::string& file, bool mayReplace = false);

}  // namespace halmek
