// Drawings by QPainter.
#include "plot/painting.h"

#include <QPaintDevice>
#include <algorithm>
#include <cmath>

namespace halmek {
namespace {

constexpr double twipsPerPixel = 15;

QColor ColourOf(Colour c) { return {c.red, c.green, c.blue}; }

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

  void operator()(const Line& line) { Segment(line.from, line.to, line.colour, line.penWidth, surface_); }

  // Steps are painted as bars on whole pixels, which is exact and many times as fast as a pen; whatever
  // slants is painted smooth.
  void operator()(const Polyline& line) {
    const QRect clip = surface_.intersected(plotArea_.toAlignedRect());
    if (clip.isEmpty())
      return;
    painter_.setClipRect(clip);
    if (IsStepped(line))
      for (size_t i = 1; i < line.points.size(); ++i)
        Segment(line.points[i - 1], line.points[i], line.colour, line.penWidth, clip);
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

  void Segment(Point from, Point to, Colour colour, int penWidth, const QRect& clip) {
    const int pen = PenPixels(penWidth);
    const auto pixel = [&](float twips) {
      return static_cast<int>(std::lround(std::clamp(twips * scale_, -1e8, 1e8) - pen / 2.0));
    };
    const int left = pixel(std::min(from.x, to.x)), right = pixel(std::max(from.x, to.x));
    const int top = pixel(std::min(from.y, to.y)), bottom = pixel(std::max(from.y, to.y));
    const QRect bar = QRect(left, top, right - left + pen, bottom - top + pen).intersected(clip);
    if (!bar.isEmpty())
      painter_.fillRect(bar, ColourOf(colour));
  }

  void Smooth(const Polyline& line) {
    QPolygonF polygon;
    polygon.reserve(static_cast<qsizetype>(line.points.size()));
    for (const Point& p : line.points)
      polygon.push_back(Device(p));
    painter_.setRenderHint(QPainter::Antialiasing);
    painter_.setPen(QPen(ColourOf(line.colour), PenPixels(line.penWidth)));
    painter_.drawPolyline(polygon);
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
