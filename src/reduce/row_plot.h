// The plot of one row of the frame: what it shows, and how clicks, zoom and scroll bars change that.
#pragma once

#include <optional>

#include "app/session.h"

namespace halmek {

// Opens the plot on a row over all columns, with no selection. A row below 1 is taken as 1. Throws Refusal
// for a row beyond the frame.
void OpenRowPlot(Session& session, int row);

// The plot of `plotRow` over `firstColumn`..`lastColumn`, on a scale that fits the whole row, with the ends
// of a pending zoom and of the zap selection marked. Nothing where the frame has one column only, and where
// the row has values under 100: `plotRow` then goes back to the last row drawn and `hint` says why.
std::optional<Drawing> DrawRowPlot(Session& session, WindowSize window);

// The same on the present scale, after pixels have changed.
Drawing RepaintRowPlot(const Session& session, WindowSize window);

// What `hint` says where a row is drawn.
inline constexpr const char* rowPlotHint =
    " Left-click to select range for zoom; Right-click to select pixels to zap.";

// The message where the first row asked for cannot be shown.
std::string RowNotShownMessage(int row);

// The column and the value under a position in twips. Any place within a column's step names that column.
int ColumnAt(const PlotFrame& frame, double mouseX);
double ValueAt(const PlotFrame& frame, double mouseY);
ReadOut ReadOutRow(const PlotFrame& frame, double mouseX, double mouseY);

// A left click for the zoom: the first of a pair is remembered, the second on another column zooms. Returns
// true if the columns shown have changed. Columns are kept within the frame.
bool ClickForZoom(Session& session, double mouseX);

// A right click: extends the zap selection to the column under it.
void ClickForZap(Session& session, double mouseX);

// Cancels a pending zoom and the zap selection.
void Deselect(RowPlot& plot);

// The zoom buttons and scroll bars. Each sets the columns or the row shown and its scroll bar; ZoomIn does
// nothing on fewer than 20 columns.
void ZoomIn(RowPlot& plot, int columns);
void ZoomOut(RowPlot& plot, int columns);
void ShowFullRow(RowPlot& plot, int columns);
void ScrollColumns(RowPlot& plot, int value, int columns);
void ScrollRows(RowPlot& plot, int value, int rows);

}  // namespace halmek
