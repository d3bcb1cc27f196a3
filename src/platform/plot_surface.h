// The surface on which a plot is drawn: white, with the axis numbers as labels, and a cursor for the
// keyboard.
#pragma once

#include <QLabel>
#include <QPoint>
#include <QWheelEvent>
#include <QWidget>
#include <functional>
#include <map>
#include <optional>

#include "plot/plot_cursor.h"

namespace halmek {

class PlotSurface : public QWidget {
 public:
  explicit PlotSurface(QWidget* parent);

  // Shows the drawing, in place of the one before, with the columns on which the cursor can stand.
  void Show(Drawing drawing, const CursorTrack& track);
  const std::optional<Drawing>& drawing() const { return drawing_; }

  // A label of the window that stands on the surface, from its top left corner on, in twips.
  QLabel* AddLabel(const char* name, const QString& text);

  // What mouse and keyboard do, at a position in twips. The cursor of the keyboard moves and clicks as the
  // mouse does: Return is the left button, Shift+Return the right one.
  struct Handlers {
    std::function<void(double x, double y)> move, leftClick, rightClick, otherClick;
    std::function<void()> leave;
    std::function<void(QWheelEvent*)> wheel;
    std::function<void(int notches, Qt::KeyboardModifiers)> scroll;  // as the wheel, by Up and Down
    std::function<QString(double x, double y)> toolTip;  // what is to be read there; empty: nothing
  };
  void SetHandlers(Handlers handlers) { handlers_ = std::move(handlers); }

  // What is read of the keys when the Tab key comes here.
  void SetKeyHint(const QString& hint) { keyHint_ = hint; }

  // Where the cursor is: in the middle until it is moved.
  const CursorTrack& track() const { return track_; }
  int cursorColumn() const;
  void PutCursor(int column);

  // Its position, while it is shown.
  std::optional<Point> cursor() const;

  // True while the mouse points into the plot area, where the pointer is a cross.
  void SetPointsInside(bool inside);

 protected:
  bool event(QEvent* event) override;
  void paintEvent(QPaintEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void focusInEvent(QFocusEvent* event) override;
  void focusOutEvent(QFocusEvent* event) override;
  void hideEvent(QHideEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void leaveEvent(QEvent* event) override;
  void wheelEvent(QWheelEvent* event) override;

 private:
  void ShowTexts();
  QLabel* LabelNamed(std::string_view name);
  void Click(Qt::MouseButton button, double x, double y);
  bool TakeKey(const QKeyEvent& event);
  void TellCursor();
  void PaintCursor(QPainter& painter, Point at);

  std::optional<Drawing> drawing_;
  std::map<std::string, QLabel*, std::less<>> axisLabels_;
  Handlers handlers_;
  QString keyHint_;
  CursorTrack track_;
  std::optional<int> column_;  // of the cursor, once the keyboard has been used
};

}  // namespace halmek
