// Painting of printed pages.
#include "plot/plot_page.h"

#include <algorithm>

#include "platform/twips.h"
#include "platform/vector_painting.h"
#include "plot/picture.h"

namespace halmek {

void PaintPage(QPainter& painter, const QRectF& page, const QWidget& client, const PlotSurface& surface,
               const QString& title) {
  const QSizeF size = client.size();
  const double scale = std::min(page.width() / size.width(), page.height() / size.height());
  painter.translate(page.center());
  painter.scale(scale, scale);
  painter.translate(-size.width() / 2, -size.height() / 2);
  painter.setClipRect(client.rect());

  painter.save();
  painter.translate(surface.pos());
  painter.setClipRect(surface.rect(), Qt::IntersectClip);
  if (surface.drawing())
    PaintVectors(painter, *surface.drawing(), PixelsPerTwip());
  painter.setFont(FontInPixels(client));
  painter.setPen(Qt::black);
  painter.drawText(
      QPointF(PixelsOf(captionTopLeft.x), PixelsOf(captionTopLeft.y) + painter.fontMetrics().ascent()),
      title);
  painter.restore();
  PaintControls(painter, client);
}

}  // namespace halmek
