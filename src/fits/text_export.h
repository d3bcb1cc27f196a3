// Export of pixel values as plain text, for use in other programs.
#pragma once

#include <string>

#include "app/session.h"

namespace halmek {

// Writes the spectrum of a slot 1 to 4 to `file`, named relative to `dataFolder`: one line a pixel, its
// number, then its value from column 15 on. Numbers have at most 15 digits, a blank or a minus sign before
// and a blank behind; lines end with CR LF. The file is written as a whole or not at all. Throws
// RunTimeError.
void SaveSpectrumText(Session& session, int slot, const std::string& file);

// The same for the frame: one line a column, its values in the order of rows, separated by commas.
void SaveFrameText(Session& session, const std::string& file);

}  // namespace halmek
