// The background under the spectrum: fitted along every column of the frame from two ranges of rows.
#pragma once

#include "app/session.h"

namespace halmek {

// Throws Refusal unless both background ranges are chosen.
void RequireCompleteSelection(const Session& session);

// Fits every column with `backgroundPower`: 0 the median of the background rows, 1 a straight line, 2 a
// parabola, each a function of the row, numbered from 1. The ranges may have been chosen in either direction.
//
// Throws Refusal where the selection is not complete, for power 3, for more rows than the fit takes (200; 181
// for power 1) and for too few different rows, and RunTimeError 6 for pixels near the largest double. The
// old fit then stays.
void FitBackground(Session& session);

// The model of a column at a row, by the power that was fitted.
double BackgroundAt(const Background& background, int column, double row);

}  // namespace halmek
