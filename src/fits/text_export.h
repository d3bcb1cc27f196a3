// Export of pixel values as plain text, for use in other programs.
#pragma once

#include <string>

#include "app/session.h"

namespace halmek {

// Writes the spectrum of a slot 1 to 4 to `file`, named relative to `dataFolder`: one line a pixel, its
// number, then its value from column 15 on. Numbers have at most 15 digits, a blank or a minus sign before
// and a blank behind; lines end with CR LF. Warns and throws as WriteOutput does.
Warnings SaveSpectrumText(Session& session, int slot, const std::string& file, bool mayReplace = false);

// The same for the frame: one line a column, its values in the order of rows, separated by commas.
Warnings SaveFrameText(Session& session, const std::string& file, bool mayReplace = false);

}  // namespace halmek
