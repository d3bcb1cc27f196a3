// Removal of cosmic-ray hits: a run of pixels of one row gives way to the mean of the pixels beside it.
#pragma once

#include <optional>

#include "app/session.h"

namespace halmek {

// The selection of pixels to zap. It grows to the smallest and largest column that was added.
void SelectForZap(RowPlot& plot, int column);
void ClearZapSelection(RowPlot& plot);

// Replaces the selected pixels of `plotRow` by the mean of up to `zapNeighbours` pixels on each side, one
// pixel away from the selection, keeps the old values for an undo, and empties the selection. Returns the
// mean. Does nothing without a selection. Throws Refusal where there is no pixel to average.
std::optional<double> Zap(Session& session);

// Puts the pixels of the last zap back into the row they came from and makes it the row shown. Does nothing
// where there was none. Returns true if it did something.
bool UndoZap(Session& session);

// The number of neighbours for a typed count: 3 where it is not positive.
int NeighboursFor(int typed);

}  // namespace halmek
