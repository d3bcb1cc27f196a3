// A plot window on a printed page.
#pragma once

#include <QPainter>

#include "platform/plot_surface.h"

namespace halmek {

// Paints what stands in a plot window, the plot and its controls, as large as it fits on the page without
// distortion, centred, with the title above the plot. `client` is what the window holds below its menu bar,
// with the surface in it.
void PaintPage(QPainter& painter, const QRectF& page, const QWidget& client, const PlotSurface& surface,
               const QString& title);

}  // namespace halmek
