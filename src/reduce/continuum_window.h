// The window of the continuum: points, fit and normalisation of the extracted spectrum.
#pragma once

#include <QComboBox>
#include <QRadioButton>

#include "plot/plot_window.h"

namespace halmek {

// `frmPlot_Continuum`.
class ContinuumWindow : public PlotWindow {
 public:
  explicit ContinuumWindow(Desk& desk);

 protected:
  std::optional<Drawing> Draw(WindowSize size) override;
  PlotFrame& Frame() override { return session().continuum.contFrame; }
  CursorTrack Track() override;
  std::string PictureName() const override;
  void ShowState() override;
  void Loading() override;
  void Unloading() override;
  void PointTo(double x, double y) override;
  void ClickLeft(double x, double y) override;
  void ClickRight(double x, double y) override;

 private:
  void AddFitControls();
  void AddButtons();
  void AddReadOuts();
  void Fit();
  bool TakesPoint(double x, double y);

  QRadioButton *automatic_, *manual_;
  EntryBox* interval_;
  QComboBox* power_;
  QLabel *column_, *value_, *hint_;
};

}  // namespace halmek
