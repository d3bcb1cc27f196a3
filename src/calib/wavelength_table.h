// The table of laboratory wavelengths.
#pragma once

#include <string>

#include "app/session.h"

namespace halmek {

// Reads the table from `file`, named relative to `dataFolder`, in file order: a header line, then lines of a
// wavelength in Angstrom, a comma and a label, at most 1000 of them. Throws Refusal where the file is
// missing, is a mask or cannot be read as a table; the table stays as it was then. Warns where the header
// line reads like an entry.
Warnings LoadWavelengthTable(Session& session, const std::string& file);

// Takes a table's text apart. Throws RunTimeError.
WavelengthTable ParseWavelengthTable(const std::string& text);

}  // namespace halmek
