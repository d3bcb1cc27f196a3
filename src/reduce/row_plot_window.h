// The window of the row plot: zoom along a row, scroll through rows, and zap cosmic-ray hits.
#pragma once

#include "plot/plot_window.h"

namespace halmek {

// `frmPlot_Row`. Opened after OpenRowPlot has chosen the row.
class RowPlotWindow : public PlotWindow {
 public:
  explicit RowPlotWindow(Desk& desk);

 protected:
  std::optional<Drawing> Draw(WindowSize size) override;
  PlotFrame& Frame() override { return session().rowPlot.rowFrame; }
  CursorTrack Track() override;
  std::string PictureName() const override;
  void ShowState() override;
  bool Follow() override;
  void Leaving() override;
  void PointTo(double x, double y) override;
  void ClickLeft(double x, double y) override;
  void ClickRight(double x, double y) override;
  QScrollBar* Scrolled(Qt::KeyboardModifiers modifiers) override;

 private:
  void AddOptionsMenu();
  void AddControls();
  void ZapSelection();
  void Undo();

  QScrollBar *columns_, *rows_;  // HScroll1, VScroll1
  EntryBox* neighbours_;
  QLabel *row_, *column_, *value_, *hint_;
  QAction* fullRowAfterZap_;
  bool keepsScale_ = false;
};

}  // namespace halmek
