// Repair of a bad column from its neighbours in the same row.
#pragma once

#include "app/session.h"

namespace halmek {

// Stores `column` as it was typed, checks it, and repairs it. Columns 4..NAXIS1-3 are valid; others are
// refused with the frame unchanged.
void FixColumn(Session& session, int column);

// The row proposed as the first to plot after a repair, four below the brightest; it can be 0 or less.
inline int ProposedStartRow(const Session& session) { return session.traceRow - 4; }

// Replaces column `badColumn` of the frame, row by row, by the median of the three pixels on either side, and
// sets `traceRow` to the row that is brightest two columns toward the middle (of equals the lowest). The
// column must be valid.
void RepairBadColumn(Session& session);

}  // namespace halmek
