// Drawings by QPainter.
#include "platform/painting.h"

#include <QImage>
#include <QPaintDevice>
#include <algorithm>
#include <cmath>
#include <span>
#include <vector>

namespace halmek {
namespace {

// Paints in pixels of the device. The painter's own scale is undone before.
class DevicePainter {
 public:
  DevicePainter(QPainter& painter, double scale, const Drawing& drawing) : painter_(painter), scale_(scale) {
    const Point a = drawing.plotTopLeft, b = drawing.plotBottomRight;
    plotArea_ = QRectF(QPointF(a.x, a.y) * scale, QPointF(b.x, b.y) * scale);
    surface_ = QRect(0, 0, painter.device()->width(), painter.device()->height());
    const double ratio = painter.device()->devicePixelRatioF();
    surface_.setSize(QSizeF(surface_.width() * ratio, surface_.height() * ratio).toSize());
  }

  void operator()(const Line& line) {
    const QRect bar = Bar(line.from, line.to, PenPixels(line.penWidth)).intersected(surface_);
    if (!bar.isEmpty())
      painter_.fillRect(bar, ColourOf(line.colour));
  }

  // Steps are painted as bars on whole pixels, which is exact and many times as fast as a pen; whatever
  // slants is painted smooth.
  void operator()(const Polyline& line) {
    const QRect clip = surface_.intersected(plotArea_.toAlignedRect());
    if (clip.isEmpty())
      return;
    painter_.setClipRect(clip);
    if (IsStepped(line))
      Steps(line, clip);
    else
      Smooth(line);
    painter_.setClipping(false);
  }

  void operator()(const Circle& circle) {
    const double inner = circle.innerRadius * scale_, outer = circle.outerRadius * scale_;
    painter_.setRenderHint(QPainter::Antialiasing);
    painter_.setPen(QPen(ColourOf(circle.colour), outer - inner));
    painter_.setBrush(Qt::NoBrush);
    const double radius = (inner + outer) / 2;
    painter_.drawEllipse(Device(circle.centre), radius, radius);
    painter_.setRenderHint(QPainter::Antialiasing, false);
  }

  void operator()(const Text&) {}

 private:
  static bool IsStepped(const Polyline& line) {
    for (size_t i = 1; i < line.points.size(); ++i)
      if (line.points[i].x != line.points[i - 1].x && line.points[i].y != line.points[i - 1].y)
        return false;
    return true;
  }

  QPointF Device(Point p) const { return {p.x * scale_, p.y * scale_}; }

  int PenPixels(int penWidth) const {
    return std::max(1, static_cast<int>(std::lround(penWidth * twipsPerPixel * scale_)));
  }

  // An upright or level line as a bar on whole pixels.
  QRect Bar(Point from, Point to, int pen) const {
    const auto pixel = [&](float twips) {
      return static_cast<int>(std::lround(std::clamp(twips * scale_, -1e8, 1e8) - pen / 2.0));
    };
    const int left = pixel(std::min(from.x, to.x)), right = pixel(std::max(from.x, to.x));
    const int top = pixel(std::min(from.y, to.y)), bottom = pixel(std::max(from.y, to.y));
    return {left, top, right - left + pen, bottom - top + pen};
  }

  // Thousands of tall thin bars side by side. Each would touch as many lines of memory as it is high, over
  // and over; so they are painted in low bands, which stay in the processor's cache, and these are put
  // together.
  void Steps(const Polyline& line, const QRect& clip) {
    constexpr int bandHeight = 64;
    const int pen = PenPixels(line.penWidth);
    std::vector<QRect> bars;
    bars.reserve(line.points.size());
    for (size_t i = 1; i < line.points.size(); ++i)
      if (const QRect bar = Bar(line.points[i - 1], line.points[i], pen).intersected(clip); !bar.isEmpty())
        bars.push_back(bar);

    const QRgb colour = ColourOf(line.colour).rgba();
    const int width = clip.width();
    QImage band(width, bandHeight, QImage::Format_ARGB32_Premultiplied);
    for (int top = clip.top(); top <= clip.bottom(); top += bandHeight) {
      band.fill(Qt::transparent);
      const QRect shown(clip.left(), top, width, std::min(bandHeight, clip.bottom() - top + 1));
      const std::span pixels(reinterpret_cast<QRgb*>(band.bits()), static_cast<size_t>(width * bandHeight));
      for (const QRect& bar : bars) {
        const int last = std::min(bar.bottom(), shown.bottom());
        for (int y = std::max(bar.top(), top); y <= last; ++y)
          std::fill_n(&pixels[(y - top) * width + bar.left() - clip.left()], bar.width(), colour);
      }
      painter_.drawImage(shown.topLeft(), band, QRect(QPoint(0, 0), shown.size()));
    }
  }

  // Points that lie closer together than one can see are left out: they would cost time and change nothing.
  void Smooth(const Polyline& line) {
    constexpr double nearest = 8;
    QPolygonF polygon;
    for (const Point& p : line.points) {
      const QPointF point = Device(p);
      if (polygon.isEmpty() || (point - polygon.back()).manhattanLength() >= nearest)
        polygon.push_back(point);
    }
    if (!line.points.empty())
      polygon.push_back(Device(line.points.back()));
    painter_.setRenderHint(QPainter::Antialiasing);
    painter_.setPen(QPen(ColourOf(line.colour), PenPixels(line.penWidth)));
    painter_.drawPolyline(polygon);
    painter_.setRenderHint(QPainter::Antialiasing, false);
  }

  QPainter& painter_;
  double scale_;  // pixels of the device per twip
  QRectF plotArea_;
  QRect surface_;
};

}  // namespace

void PaintDrawing(QPainter& painter, const Drawing& drawing, double pixelsPerTwip) {
  const double ratio = painter.device()->devicePixelRatioF();
  painter.save();
  painter.scale(1 / ratio, 1 / ratio);
  DevicePainter device(painter, pixelsPerTwip * ratio, drawing);
  for (const DrawingItem& item : drawing.items)
    std::visit(device, item);
  painter.restore();
}

}  // namespace halmek
