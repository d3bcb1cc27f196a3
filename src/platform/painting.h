// Painting of a drawing on the screen.
#pragma once

#include <QPainter>

#include "plot/drawing.h"

namespace halmek {

inline QColor ColourOf(Colour c) { return {c.red, c.green, c.blue}; }

// Paints the lines, curves and circles of a drawing, `pixelsPerTwip` logical pixels to a twip. Upright and
// level lines lie on whole pixels of the screen, so that they are equally sharp everywhere. Texts are left to
// the labels of the window.
void PaintDrawing(QPainter& painter, const Drawing& drawing, double pixelsPerTwip);

}  // namespace halmek
