// Line masks: the identified lines of one arc, to identify the same lines in another.
#pragma once

#include <string>

#include "app/session.h"

namespace halmek {

// Reads a mask of at most 50 lines from `file`, named relative to `dataFolder`; the arc window of
// `currentSlot` shows its name. Throws Refusal for a file that is no mask, and RunTimeError for one that
// cannot be read or is malformed: 321, or 9 for too many lines; the loaded mask is kept then.
void LoadMask(Session& session, const std::string& file);

// True for the text of a file that can be loaded as a mask.
bool IsMask(const std::string& text);

// Writes the lines of arc `a` to `file`, columns and wavelengths with 15 digits, and makes them the loaded
// mask. Throws Refusal where the arc has no lines, and warns and throws as WriteOutput does; the loaded mask
// is kept then.
Warnings SaveMask(Session& session, int a, const std::string& file, bool mayReplace = false);

// Identifies the lines of arc `a` from the loaded mask: each at the peak within 10 pixels of its column, in
// the order of the mask, and fits the straight-line dispersion. Other identifications of the arc are dropped.
// Warns where two entries find the same line or one lies at the edge of the search. Throws Refusal, with
// nothing of the arc changed, where no mask is loaded, where an entry, which is named, finds no line, and
// where the lines give no straight line.
Warnings ApplyMask(Session& session, int a);

}  // namespace halmek
