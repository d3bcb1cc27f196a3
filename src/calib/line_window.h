// The window in which a clicked arc line gets its wavelength.
#pragma once

#include <QScrollBar>
#include <optional>

#include "platform/controls.h"
#include "platform/desk.h"

class QGridLayout;
class QScreen;

namespace halmek {

// `frmClickMax`, one for both arcs. It closes when the line is no more what was clicked: another arc was
// loaded, the lines were deleted, or a recipe has clicked elsewhere.
class LineWindow : public QWidget, public View {
 public:
  explicit LineWindow(Desk& desk);
  ~LineWindow() override;

  // Shows the line that was just clicked, over the arc's window, with `free` of the screen uncovered.
  void Open(QWidget* over, const QRect& free);

  void Refresh() override;

 protected:
  void keyPressEvent(QKeyEvent* event) override;
  void wheelEvent(QWheelEvent* event) override;
  void closeEvent(QCloseEvent* event) override;
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void AddLine(QGridLayout& grid);
  void AddWavelength(QGridLayout& grid);
  void AddQuality(QGridLayout& grid);
  void AddButtons(QGridLayout& grid);

  void AttachTo(QWidget* over);
  void Place(const QRect& free, const QScreen& screen);
  void StorePlacement();
  void ShowPanel();
  void ShowTable();
  void ShowFit();
  void ScrollTo(int entry);
  void Walk(int entries);
  void Update();
  void UpdateAndClose();
  void Delete();
  void Leave();

  Desk& desk_;
  QWidget* over_ = nullptr;
  int arc_ = 0, clicked_ = 0;      // the arc and the column that were clicked
  std::optional<QPoint> movedTo_;  // where it was put to clear a line, which is not where it belongs
  WheelNotches wheel_;

  QLabel *peak_, *centroid_, *error_, *estimate_, *deviation_, *rms_, *count_, *state_;
  ElidedLabel* name_;
  EntryBox* wavelength_;
  QScrollBar* table_;
};

}  // namespace halmek
