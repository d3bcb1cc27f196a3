// The plot of one column across the spectrum, on which the aperture and the background ranges are marked.
#pragma once

#include "app/session.h"

namespace halmek {

// Opens the slice on the middle column, with power 0 and the automatic scale chosen. What is marked stays.
void OpenColumnPlot(Session& session);

// The plot of column `sliceColumn` with its markers and, once fitted, the background model.
Drawing DrawColumnPlot(Session& session, WindowSize window);

// The row and the value under a position in twips.
ReadOut ReadOutSlice(const Session& session, double mouseX, double mouseY);

// A left click sets the first, then the last row of the aperture; a right click the next end of the two
// background ranges, of which the fourth completes the selection. Further clicks do nothing. Rows are kept
// within the frame.
void ClickForAperture(Session& session, double mouseX, double mouseY);
void ClickForBackground(Session& session, double mouseX, double mouseY);

// What has been marked, in words: "Aperture 60 to 78   Background 33 to 56, 82 to ..".
std::string MarksText(const Slice& slice);

// Chooses the aperture and the background ranges by their rows, in either order, as the clicks would. Throws
// Refusal for a row outside the frame, with nothing changed.
void SetAperture(Session& session, int first, int last);
void SetBackgroundRanges(Session& session, int first1, int last1, int first2, int last2);

// Drops the aperture and both ranges; the fit stays.
void ClearSelection(Session& session);

// Drops the fit; the selection stays.
void ClearBackgroundFit(Session& session);

// Accepts the fit: the frame may be collapsed. Throws Refusal where there is none.
void AcceptBackground(Session& session);

// Drops selection and fit.
void CancelBackground(Session& session);

}  // namespace halmek
