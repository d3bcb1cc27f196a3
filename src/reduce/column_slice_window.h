// The window of the column slice: aperture and background rows are marked and the background is fitted.
#pragma once

#include <QComboBox>
#include <QRadioButton>

#include "plot/plot_window.h"

namespace halmek {

// `frmPlot_Column`. Opened after OpenColumnPlot has chosen the column.
class ColumnSliceWindow : public PlotWindow {
 public:
  explicit ColumnSliceWindow(Desk& desk);

 protected:
  std::optional<Drawing> Draw(WindowSize size) override;
  PlotFrame& Frame() override { return session().slice.colFrame; }
  CursorTrack Track() override;
  std::string PictureName() const override;
  void ShowState() override;
  bool Follow() override;
  void PointTo(double x, double y) override;
  void ClickLeft(double x, double y) override;
  void ClickRight(double x, double y) override;
  QScrollBar* Scrolled(Qt::KeyboardModifiers) override { return columns_; }

 private:
  void AddSelectionControls();
  void AddScaleControls();
  void AddReadOuts();
  void AddScroll();
  void Fit();
  void Accept();
  void Cancel();

  QComboBox* power_;
  QRadioButton *fixedScale_, *autoScale_;
  QScrollBar* columns_;
  QLabel *column_, *row_, *value_, *hint_, *marks_;
};

}  // namespace halmek
