// What all plot windows share: layout, axis labels, the resize rule, the drawing and the read-outs.
#pragma once

#include <QMainWindow>
#include <utility>

#include "platform/control_band.h"
#include "platform/controls.h"
#include "platform/desk.h"
#include "platform/plot_surface.h"
#include "plot/plot_frame.h"

namespace halmek {

// The names by which a plot window and its menu are found; what a screen reader is told of its plot, and of
// the keys in it beside those that move the cursor.
struct PlotWindowNames {
  const char* window;
  const char* plot;
  const char* keys;
  const char* fileMenu = "mFile";
  const char* printSetup = "mPrintSetup";
  const char* print = "mPrint";
};

// The plot stands on the surface above, the controls in a band below it. A window is loaded when it is first
// shown and until its close box is used; its buttons only hide it.
class PlotWindow : public QMainWindow, public View {
 public:
  ~PlotWindow() override;

  // Shows the window with what the session holds, and brings it to the front. Returns false, with the window
  // as it was, where there is nothing to draw.
  bool Open();

  void Refresh() override;

  // The size by which the plot is laid out, in twips: the window's outer size; less where a tall menu bar or
  // controls on several lines need the room.
  WindowSize LayoutSize() const;

 protected:
  // `placement`, of the session, is where the window's place and size are kept.
  PlotWindow(Desk& desk, const PlotWindowNames& names, SizedPlacement& placement);

  Desk& desk() { return desk_; }
  Session& session() { return desk_.session(); }
  const Session& session() const { return std::as_const(desk_).session(); }
  PlotSurface& surface() { return *surface_; }
  ControlBand& band() { return *band_; }

  // The drawing of what the session holds; nothing where it cannot be shown.
  virtual std::optional<Drawing> Draw(WindowSize size) = 0;
  virtual PlotFrame& Frame() = 0;

  // The columns, or rows, on which the cursor of the keyboard can stand in what was drawn.
  virtual CursorTrack Track() = 0;

  // The name proposed for a picture of the plot, without its ending.
  virtual std::string PictureName() const = 0;

  // Puts the controls to what the session holds. Called after each drawing.
  virtual void ShowState() {}

  // Whether the session still holds what the window shows. Called when the session has changed; the window
  // closes where it does not.
  virtual bool Follow() { return true; }

  virtual void Loading() {}    // the window is loaded
  virtual void Unloading() {}  // it is closed by its close box
  virtual void Leaving() {}    // it is hidden or closed

  virtual void PointTo(double x, double y) = 0;  // the mouse has moved, to a position in twips
  virtual void ClickLeft(double, double) {}
  virtual void ClickRight(double, double) {}
  virtual void ClickOther(double, double) {}
  virtual QString ToolTipAt(double, double) { return {}; }

  // The scroll bar that the wheel and the keys Up and Down move; none where they do nothing.
  virtual QScrollBar* Scrolled(Qt::KeyboardModifiers) { return nullptr; }

  // Draws anew.
  void Redraw();

  // Stores the window's place and hides it.
  void Return();

  // Shows a position's read-out in two labels, and the cross or the arrow.
  void ShowReadOut(const ReadOut& at, QLabel* column, QLabel* value);

  // A hint on the surface, on the line of the axis title.
  void ShowHint(QLabel* hint, const QString& text);

  // A scroll bar across the band, under the plot, and what it moves.
  QScrollBar* AddColumnScroll(const char* name, const char* meaning);
  // A scroll bar at the right edge, beside the plot.
  QScrollBar* AddRowScroll(const char* name, const char* meaning);

  void closeEvent(QCloseEvent* event) override;
  void moveEvent(QMoveEvent* event) override;
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void AddFileMenu(const PlotWindowNames& names);
  void Print();
  void SavePictureAs();
  void ArrangeParts();
  void Resized();
  void MovePointer(double x, double y);
  void Scroll(int notches, Qt::KeyboardModifiers modifiers);
  void DescribePlot();

  Desk& desk_;
  SizedPlacement& placement_;
  QString keys_;   // what is read of the keys
  QWidget* area_;  // everything below the menu bar
  PlotSurface* surface_;
  ControlBand* band_;
  QScrollBar* columnScroll_ = nullptr;
  QScrollBar* rowScroll_ = nullptr;
  bool loaded_ = false;
  bool framed_ = false;  // the desktop has put the window into its frame
  WheelNotches wheel_;
  double pointerX_ = -1, pointerY_ = -1;  // in twips, where the read-outs are of
};

}  // namespace halmek
