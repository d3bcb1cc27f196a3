// Cutting the frame down to a rectangle, to drop the overscan and unusable borders.
#pragma once

#include "app/session.h"

namespace halmek {

// Stores the corners, both included, as they were typed, checks them against the frame, and trims. The first
// corner is the one with the smaller column and row; equal corners keep one column or row. Throws Refusal
// with the frame unchanged; the corners stay stored.
void TrimTo(Session& session, int col1, int row1, int col2, int row2);

// Cuts the frame to the stored corners, which must have been checked: pixels, NAXIS1 and NAXIS2 with their
// cards, one HISTORY and one OVERSCAN card. What was marked and fitted on the frame is dropped; it cannot be
// trimmed again. Throws RunTimeError 9 where the header has no room, with nothing changed.
void TrimFrame(Session& session);

}  // namespace halmek
