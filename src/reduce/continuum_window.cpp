// The continuum's window.
#include "reduce/continuum_window.h"

#include <algorithm>
#include <cmath>

#include "files/whole_number.h"
#include "numeric/number_prefix.h"
#include "platform/accessible.h"
#include "platform/text.h"
#include "reduce/continuum.h"
#include "steps/clicks.h"

namespace halmek {
namespace {

constexpr const char* pointsHint =
    "In manual fit mode, use left mouse button to select points for fit, right to delete.";

constexpr PlotWindowNames names{.window = "frmPlot_Continuum",
                                .plot = "Plot of the spectrum",
                                .keys = "In manual fit mode Return adds a point, Shift+Return deletes one."};

constexpr int leastPower = 2;

// What is typed, rounded down, for as long as it is typed; the fit will say what is wrong with it.
int IntervalWhileTyped(const QString& text) {
  return static_cast<int>(std::clamp(std::floor(NumericPrefix(Typed(text))), 0.0, 32767.0));
}

}  // namespace

ContinuumWindow::ContinuumWindow(Desk& desk) : PlotWindow(desk, names, desk.session().plotContinuum) {
  AddFitControls();
  AddButtons();
  AddReadOuts();
  hint_ = surface().AddLabel("labelHint", pointsHint);
  SetMeaning(hint_, "Hint");
}

void ContinuumWindow::AddFitControls() {
  automatic_ = new QRadioButton("Auto");
  automatic_->setObjectName("Option1(0)");
  automatic_->setToolTip("The highest pixel of each interval is a point");
  manual_ = new QRadioButton("Manual");
  manual_->setObjectName("Option1(1)");
  manual_->setToolTip(pointsHint);
  for (QRadioButton* button : {automatic_, manual_})
    connect(button, &QRadioButton::clicked, this, [this] {
      session().manualFit = manual_->isChecked() ? -1 : 0;
      ShowState();
    });
  band().AddGroup({automatic_, manual_});

  interval_ = NewNumberBox("Text1", "Width in pixels of the intervals from which automatic points are taken");
  interval_->setText("10");
  connect(interval_, &QLineEdit::textChanged, this,
          [this](const QString& text) { session().continuum.continuumInterval = IntervalWhileTyped(text); });
  QLabel* const interval = NewLabel("Label12", "Interval");
  SetCaption(interval, interval_);
  band().AddGroup({NewLabel("Label14", "Sample"), interval, interval_});

  power_ = new ChoiceBox("Combo1");
  power_->addItems({"Polyn. power 2", "Polyn. power 3", "Polyn. power 4", "Polyn. power 5"});
  connect(power_, &QComboBox::activated, this,
          [this](int index) { session().continuum.continuumPower = index + leastPower; });
  QLabel* const function = NewLabel("Label11", "Bkgd Fitting Function");
  SetCaption(function, power_);
  band().AddGroup({function, power_});
}

void ContinuumWindow::AddButtons() {
  QPushButton* const fit = NewButton("Command1", "Fit Bkgd", [this] { Fit(); });
  fit->setToolTip("Fit the continuum through the points");
  QPushButton* const edit = NewButton("Command2", "Edit Points",
                                      [this] { desk().Tell(this, "Sorry!  This is not implemented yet."); });
  QPushButton* const reset = NewButton("Command3", "Reset", [this] {
    ResetContinuum(session());
    Redraw();
  });
  reset->setToolTip("Drop the points and the fit");
  QPushButton* const normalize = NewButton("Command4", "Normalize", [this] {
    if (const auto step = NormalizeStep(session()))
      desk().Do(this, *step);
  });
  normalize->setToolTip("Divide the spectrum by the fit");
  QPushButton* const revert = NewButton("Command5", "Revert", [this] {
    if (session().continuum.normalized)
      desk().Do(this, steps::Revert{});
  });
  revert->setToolTip("Put back the spectrum from before the last normalisation");
  band().AddGroup({fit, edit, reset});
  band().AddGroup({normalize, revert});
  band().AddGroup({NewButton("Command6", "OK", [this] {
    AcceptContinuum(session());
    desk().RefreshViews();
    Return();
  })});
}

void ContinuumWindow::AddReadOuts() {
  column_ = NewReadOut("Label7", "Column pointed at", "000000");
  value_ = NewReadOut("Label10", "Intensity at the pointer", "00000000.00");
  band().AddGroup({NewLabel("Label5", "Column"), column_, NewLabel("Label9", "Intens."), value_});
}

CursorTrack ContinuumWindow::Track() {
  return TrackOfPositions(Frame(), Pixels(session().slot[slots::spectrum]));
}

std::string ContinuumWindow::PictureName() const { return BaseName(session().crunchFile) + "_continuum"; }

std::optional<Drawing> ContinuumWindow::Draw(WindowSize size) { return PlotContinuum(session(), size); }

void ContinuumWindow::ShowState() {
  const Session& s = session();
  automatic_->setChecked(s.manualFit == 0);
  manual_->setChecked(s.manualFit != 0);
  power_->setCurrentIndex(s.continuum.continuumPower - leastPower);
  ShowHint(hint_, s.manualFit == 0 ? QString() : pointsHint);
}

void ContinuumWindow::Loading() {
  OpenContinuum(session());
  session().continuum.continuumInterval = IntervalWhileTyped(interval_->text());
}

void ContinuumWindow::Unloading() { ResetContinuum(session()); }

void ContinuumWindow::PointTo(double x, double y) {
  ShowReadOut(ReadOutPosition(Frame(), x, y, Pixels(session().slot[slots::spectrum])), column_, value_);
}

bool ContinuumWindow::TakesPoint(double x, double y) {
  return session().manualFit != 0 && IsInside(Frame(), x, y);
}

void ContinuumWindow::ClickLeft(double x, double y) {
  if (!TakesPoint(x, y))
    return;
  const int column = std::max(1, ContinuumColumnAt(session(), x));
  desk().Try(this, [&] {
    if (!AddContinuumPoint(session(), column))
      throw Refusal("There is no positive pixel near column " + std::to_string(column) +
                    ".  Please try again.");
  });
  Redraw();
}

void ContinuumWindow::ClickRight(double x, double y) {
  if (!TakesPoint(x, y))
    return;
  DeleteContinuumPoint(session(), ContinuumColumnAt(session(), x));
  Redraw();
}

void ContinuumWindow::Fit() {
  desk().Try(this, [this] {
    session().continuum.continuumInterval = WholeNumber(Typed(interval_->text()));
    FitContinuum(session());
  });
  Redraw();
}

}  // namespace halmek
