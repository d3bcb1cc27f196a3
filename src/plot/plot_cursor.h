// The cursor that the keys move over a plot, from column to column.
#pragma once

#include "plot/plot_frame.h"

namespace halmek {

// The columns on which the cursor can stand, and where in twips a click means the first and the last of them.
// Those between are equally far apart.
struct CursorTrack {
  int first = 1, last = 1;
  double firstX = 0, lastX = 0;
};

// Where the read-out maps the plot's width onto the columns 1..n.
CursorTrack TrackOfPositions(const PlotFrame& frame, int n);

// Where each column has a step, the first of them at `xMin`. A click is made in this part of the step, from 0
// to 1: what rounds to the nearest edge and what looks for the step may have to mean the same column.
CursorTrack TrackOfSteps(const PlotFrame& frame, int first, int last, double within);

// The position of the cursor on a column, strictly inside the plot area: at the height of the data, or of the
// fit where there is no other curve; half way up where there is none.
Point CursorAt(const Drawing& drawing, const CursorTrack& track, int column);

}  // namespace halmek
