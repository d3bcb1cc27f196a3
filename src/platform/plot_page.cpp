// Painting of printed pages.
#include "platform/plot_page.h"

#include <algorithm>

#include "platform/twips.h"
#include "platform/vector_painting.h"

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
  PaintCaption(painter, title, TwipsOf(surface.width()), PixelsPerTwip());
  painter.restore();
  PaintControls(painter, client);
}

}  // namespace halmek
