// The window of an arc's plot, in which its lines are identified by clicks.
#pragma once

#include <functional>
#include <string>

#include "plot/plot_window.h"

namespace halmek {

// The windows that an arc's window opens.
struct ArcCompanions {
  // The identification of the clicked line, which leaves `free` of the screen uncovered.
  std::function<void(QWidget* over, const QRect& free)> identifyLine;
  std::function<void()> showDeviations, loadMask, saveMask, showHelp;
};

// `frmPlot_Arc1` and `frmPlot_Arc2`.
class ArcWindow : public PlotWindow {
 public:
  ArcWindow(Desk& desk, int arc, ArcCompanions companions);

 protected:
  std::optional<Drawing> Draw(WindowSize size) override;
  PlotFrame& Frame() override { return session().arc[arc_].plotFrame; }
  CursorTrack Track() override;
  std::string PictureName() const override;
  void ShowState() override;
  bool Follow() override;
  void PointTo(double x, double y) override;
  void ClickLeft(double x, double y) override { Click(x, y); }
  void ClickRight(double x, double y) override { Click(x, y); }
  void ClickOther(double x, double y) override { Click(x, y); }
  QString ToolTipAt(double x, double y) override;

 private:
  void AddFit();
  void AddMasks();
  void AddButtons();
  void AddReadOuts();
  void Click(double x, double y);
  void CalculateFit();
  void Accept();
  QRect ClickedLineOnScreen();

  int arc_;
  std::string word_;  // the arc's name in recipes
  ArcCompanions companions_;
  QPushButton* applyMask_;
  ElidedLabel* maskName_;
  QLabel *maskStatus_, *deviationStatus_;
  QLabel *column_, *value_, *wavelength_;
};

}  // namespace halmek
