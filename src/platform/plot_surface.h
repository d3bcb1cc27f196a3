// The surface on which a plot is drawn: white, with the axis numbers as labels.
#pragma once

#include <QLabel>
#include <QPoint>
#include <QWheelEvent>
#include <QWidget>
#include <functional>
#include <map>
#include <optional>

#include "plot/drawing.h"

namespace halmek {

class PlotSurface : public QWidget {
 public:
  explicit PlotSurface(QWidget* parent);

  // Shows the drawing, in place of the one before.
  void Show(Drawing drawing);
  const std::optional<Drawing>& drawing() const { return drawing_; }

  // A label of the window that stands on the surface, from its top left corner on, in twips.
  QLabel* AddLabel(const char* name, const QString& text);

  // What the mouse does, at a position in twips.
  struct MouseHandlers {
    std::function<void(double x, double y)> move, leftClick, rightClick, otherClick;
    std::function<void()> leave;
    std::function<void(QWheelEvent*)> wheel;
    std::function<QString(double x, double y)> toolTip;  // what is to be read there; empty: nothing
  };
  void SetMouseHandlers(MouseHandlers handlers) { handlers_ = std::move(handlers); }

  // True while the mouse points into the plot area, where the pointer is a cross.
  void SetPointsInside(bool inside);

 protected:
  bool event(QEvent* event) override;
  void paintEvent(QPaintEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void leaveEvent(QEvent* event) override;
  void wheelEvent(QWheelEvent* event) override;

 private:
  void ShowTexts();
  QLabel* LabelNamed(std::string_view name);

  std::optional<Drawing> drawing_;
  std::map<std::string, QLabel*, std::less<>> axisLabels_;
  MouseHandlers handlers_;
};

}  // namespace halmek
