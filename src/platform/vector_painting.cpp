// Drawings and controls as vectors.
#include "platform/vector_painting.h"

#include <QComboBox>
#include <QFontInfo>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QScrollBar>
#include <algorithm>

#include "platform/controls.h"
#include "platform/painting.h"
#include "plot/picture.h"

namespace halmek {
namespace {

constexpr QColor outline(128, 128, 128), disabledText(128, 128, 128);

class VectorPainter {
 public:
  VectorPainter(QPainter& painter, const Drawing& drawing, double scale) : painter_(painter), scale_(scale) {
    plotArea_ = QRectF(At(drawing.plotTopLeft), At(drawing.plotBottomRight));
  }

  void operator()(const Line& line) {
    painter_.setPen(Pen(line.colour, line.penWidth));
    painter_.drawLine(At(line.from), At(line.to));
  }

  void operator()(const Polyline& line) {
    QPolygonF polygon;
    polygon.reserve(static_cast<qsizetype>(line.points.size()));
    for (const Point& point : line.points)
      polygon.push_back(At(point));
    painter_.save();
    painter_.setClipRect(plotArea_, Qt::IntersectClip);
    painter_.setPen(Pen(line.colour, line.penWidth));
    painter_.drawPolyline(polygon);
    painter_.restore();
  }

  void operator()(const Circle& circle) {
    const double radius = (circle.innerRadius + circle.outerRadius) / 2.0 * scale_;
    const double width = (circle.outerRadius - circle.innerRadius) * scale_;
    painter_.setPen(QPen(ColourOf(circle.colour), width));
    painter_.setBrush(Qt::NoBrush);
    painter_.drawEllipse(At(circle.centre), radius, radius);
  }

  void operator()(const Text&) {}

 private:
  // Far beyond every page a coordinate is as good as any other, and some printers stumble over it.
  QPointF At(Point p) const {
    constexpr double farAway = 1e5;
    return {std::clamp(p.x * scale_, -farAway, farAway), std::clamp(p.y * scale_, -farAway, farAway)};
  }

  QPen Pen(Colour c, int penWidth) const {
    return {ColourOf(c), penWidth * twipsPerPixel * scale_, Qt::SolidLine, Qt::SquareCap, Qt::RoundJoin};
  }

  QPainter& painter_;
  double scale_;
  QRectF plotArea_;
};

class ControlPainter {
 public:
  explicit ControlPainter(QPainter& painter) : painter_(painter) {}

  void Paint(const QWidget& widget, const QRectF& rect) {
    painter_.setFont(FontInPixels(widget));
    textPen_ = widget.isEnabled() ? QPen(Qt::black) : QPen(disabledText);
    if (const auto* const label = qobject_cast<const QLabel*>(&widget))
      PaintLabel(*label, rect);
    else if (const auto* const button = qobject_cast<const QPushButton*>(&widget))
      PaintButton(*button, rect);
    else if (const auto* const radio = qobject_cast<const QRadioButton*>(&widget))
      PaintRadio(*radio, rect);
    else if (const auto* const list = qobject_cast<const QComboBox*>(&widget))
      PaintList(*list, rect);
    else if (const auto* const box = qobject_cast<const QLineEdit*>(&widget))
      PaintBox(*box, rect);
    else if (const auto* const bar = qobject_cast<const QScrollBar*>(&widget))
      PaintScrollBar(*bar, rect);
  }

 private:
  void PaintLabel(const QLabel& label, const QRectF& rect) {
    const bool isElided = dynamic_cast<const ElidedLabel*>(&label) != nullptr;
    const QString text = isElided
                             ? label.fontMetrics().elidedText(label.text(), Qt::ElideMiddle, label.width())
                             : label.text();
    const int wrap = label.wordWrap() ? Qt::TextWordWrap : 0;
    Write(rect, static_cast<int>(label.alignment()) | wrap, text);
  }

  void PaintButton(const QPushButton& button, const QRectF& rect) {
    Outline(rect, 3);
    Write(rect, Qt::AlignCenter | Qt::TextHideMnemonic, button.text());
  }

  void PaintRadio(const QRadioButton& radio, const QRectF& rect) {
    const double size = painter_.fontInfo().pixelSize();
    const QRectF ring(rect.left() + 1, rect.center().y() - size / 2, size, size);
    painter_.setPen(QPen(Qt::black, 1));
    painter_.setBrush(Qt::NoBrush);
    painter_.drawEllipse(ring);
    if (radio.isChecked()) {
      painter_.setBrush(Qt::black);
      painter_.drawEllipse(ring.center(), size / 5, size / 5);
    }
    Write(rect.adjusted(size + 6, 0, 0, 0), Qt::AlignVCenter | Qt::TextHideMnemonic, radio.text());
  }

  void PaintList(const QComboBox& list, const QRectF& rect) {
    Outline(rect, 3);
    const QPointF middle(rect.right() - 11, rect.center().y() + 2);
    painter_.setPen(QPen(outline, 1));
    painter_.drawPolyline(QPolygonF({middle + QPointF(-4, -4), middle, middle + QPointF(4, -4)}));
    Write(rect.adjusted(6, 0, -18, 0), Qt::AlignVCenter, list.currentText());
  }

  void PaintBox(const QLineEdit& box, const QRectF& rect) {
    Outline(rect, 0);
    Write(rect.adjusted(5, 0, 0, 0), Qt::AlignVCenter, box.text());
  }

  void PaintScrollBar(const QScrollBar& bar, const QRectF& rect) {
    Outline(rect, 0);
    const bool isLevel = bar.orientation() == Qt::Horizontal;
    const double length = isLevel ? rect.width() : rect.height();
    const double span = std::max(1, bar.maximum() - bar.minimum());
    const double slider = std::max(10.0, length * bar.pageStep() / (span + bar.pageStep()));
    const double before = (length - slider) * (bar.value() - bar.minimum()) / span;
    Outline(isLevel ? QRectF(rect.left() + before, rect.top(), slider, rect.height())
                    : QRectF(rect.left(), rect.top() + before, rect.width(), slider),
            3);
  }

  void Outline(const QRectF& rect, double radius) {
    painter_.setPen(QPen(outline, 1));
    painter_.setBrush(Qt::NoBrush);
    painter_.drawRoundedRect(rect.adjusted(0.5, 0.5, -0.5, -0.5), radius, radius);
  }

  // What a window cuts off is cut off on paper, but for letters that are a little wider there.
  void Write(const QRectF& rect, int flags, const QString& text) {
    constexpr double wider = 2;
    painter_.save();
    painter_.setClipRect(rect.adjusted(-wider, -wider, wider, wider), Qt::IntersectClip);
    painter_.setPen(textPen_);
    painter_.drawText(rect, flags | Qt::TextDontClip, text);
    painter_.restore();
  }

  QPainter& painter_;
  QPen textPen_;
};

}  // namespace

void PaintVectors(QPainter& painter, const Drawing& drawing, double unitsPerTwip) {
  painter.save();
  painter.setRenderHint(QPainter::Antialiasing);
  VectorPainter vectors(painter, drawing, unitsPerTwip);
  for (const DrawingItem& item : drawing.items)
    std::visit(vectors, item);
  painter.restore();
}

void PaintControls(QPainter& painter, const QWidget& window) {
  painter.save();
  painter.setRenderHint(QPainter::Antialiasing);
  ControlPainter controls(painter);
  for (const QWidget* widget : window.findChildren<QWidget*>())
    if (widget->isVisibleTo(&window))
      controls.Paint(*widget, QRectF(widget->mapTo(&window, QPointF(0, 0)), widget->size()));
  painter.restore();
}

void PaintCaption(QPainter& painter, const QString& caption, double room, double unitsPerTwip) {
  const QFontMetricsF metrics(painter.font(), painter.device());
  const QPointF topLeft(captionTopLeft.x, captionTopLeft.y);
  painter.setPen(Qt::black);
  painter.drawText(topLeft * unitsPerTwip + QPointF(0, metrics.ascent()),
                   metrics.elidedText(caption, Qt::ElideRight, (room - topLeft.x()) * unitsPerTwip));
}

QFont FontInPixels(const QWidget& widget) {
  QFont font = widget.font();
  font.setPixelSize(QFontInfo(font).pixelSize());
  return font;
}

}  // namespace halmek
