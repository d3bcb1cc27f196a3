// The window of an arc's deviations from a straight line, and of their fit.
#pragma once

#include <string>

#include "plot/plot_window.h"

class QComboBox;

namespace halmek {

// `frmPlot_WL_Diff1` and `frmPlot_WL_Diff2`.
class DeviationWindow : public PlotWindow {
 public:
  DeviationWindow(Desk& desk, int arc);

 protected:
  std::optional<Drawing> Draw(WindowSize size) override;
  PlotFrame& Frame() override { return session().arc[arc_].deviationFrame; }
  CursorTrack Track() override;
  std::string PictureName() const override;
  void ShowState() override;
  bool Follow() override;
  void Loading() override;
  void PointTo(double x, double y) override;

 private:
  void AddFit();
  void AddButtons();
  void AddReadOuts();
  void AddQuality();
  void Fit();
  void Accept();

  int arc_;
  std::string word_;  // the arc's name in recipes
  QComboBox* power_;
  QLabel *status_, *fitInWords_, *rms_, *largest_;
  QLabel *column_, *value_, *wavelength_;
};

}  // namespace halmek
