// Painting of drawings and of a window's controls as lines and texts, for paper and for picture files.
#pragma once

#include <QPainter>
#include <QWidget>

#include "plot/drawing.h"

namespace halmek {

// Paints the lines, curves and circles of a drawing, `unitsPerTwip` of the painter's units to a twip. Nothing
// is rounded to pixels, and nothing becomes a bitmap.
void PaintVectors(QPainter& painter, const Drawing& drawing, double unitsPerTwip);

// Paints what stands on a window as it is: labels, buttons, boxes, lists and scroll bars, in black on white.
// The painter's units are the window's pixels.
void PaintControls(QPainter& painter, const QWidget& window);

// Writes the caption above a plot that is `room` twips wide, as much of it as fits.
void PaintCaption(QPainter& painter, const QString& caption, double room, double unitsPerTwip);

// The font of a widget, in the units of a painter instead of points.
QFont FontInPixels(const QWidget& widget);

}  // namespace halmek
