// The deviations' windows.
#include "calib/deviation_window.h"

#include "calib/arc_plot.h"
#include "calib/deviations.h"
#include "platform/text.h"
#include "steps/slot_names.h"

namespace halmek {
namespace {

constexpr const char* keys = "There is nothing to click here.";
constexpr PlotWindowNames windowNames[] = {{},
                                           {"frmPlot_WL_Diff1", "Plot of the deviations of Arc 1", keys},
                                           {"frmPlot_WL_Diff2", "Plot of the deviations of Arc 2", keys}};

constexpr int leastPower = 2, usualPower = 4;

}  // namespace

DeviationWindow::DeviationWindow(Desk& desk, int arc)
    : PlotWindow(desk, windowNames[arc], desk.session().plotWLDiff[arc]), arc_(arc), word_(NameOfSlot(arc)) {
  AddFit();
  AddReadOuts();
  AddButtons();
  AddQuality();
}

void DeviationWindow::AddFit() {
  power_ = new ChoiceBox("Combo1");
  power_->addItems({"Polyn. power 2", "Polyn. power 3", "Polyn. power 4", "Polyn. power 5"});
  power_->setAccessibleName("Fitting function");
  power_->setToolTip("Of the next fit, and of the fit by which the object is corrected");
  connect(power_, &QComboBox::activated, this, [this](int index) {
    session().arc[arc_].fitPower = index + leastPower;
    Redraw();
  });
  QPushButton* const fit = NewButton("Command1", "Fit Differences", [this] { Fit(); });
  fit->setToolTip("Fit the deviations with a polynomial of this power");
  status_ = NewReadOut("Label13", "Status of the fit", doneText);
  QPushButton* const reset = NewButton("Command3", "Reset", [this] {
    ResetDeviations(session(), arc_);
    desk().RefreshViews();
  });
  reset->setToolTip("Drop the fit");
  band().AddGroup({power_, fit, status_});
  band().AddGroup({reset});
}

void DeviationWindow::AddReadOuts() {
  column_ = NewReadOut("Label7", "Column pointed at", "000000");
  value_ = NewReadOut("Label10", "Deviation at the pointer", "-00000.00");
  wavelength_ = NewReadOut("Label14", "Wavelength pointed at, in Angstroms", "00000.00");
  wavelength_->setToolTip("By the straight line through the lines identified");
  band().AddGroup({NewLabel("Label5", "Column"), column_, NewLabel("Label8", "Diff"), value_,
                   NewLabel("Label15", "WaveL"), wavelength_, NewLabel("Label16", "(Ang.)")});
}

void DeviationWindow::AddButtons() {
  QPushButton* const accept = NewButton("Command6", "OK", [this] { Accept(); });
  accept->setToolTip("Accept the fit and close");
  band().AddGroup({accept, NewButton("Command2", "Cancel", [this] { Return(); })});
}

void DeviationWindow::AddQuality() {
  fitInWords_ = NewReadOut("labelFit", "Fit", "power 0 not fitted yet; straight line through 00 lines");
  rms_ = NewReadOut("labelRms", "Quality", "RMS 00.0000 Angstroms (00.000 pixels)");
  rms_->setToolTip("Root mean square of what is left, over lines less coefficients");
  largest_ = NewReadOut("labelLargest", "Worst line", "largest -00.0000 at 0000.0000 Angstroms");
  largest_->setToolTip("The line that lies farthest off");
  for (QLabel* label : {fitInWords_, rms_, largest_}) {
    label->setTextInteractionFlags(Qt::TextSelectableByMouse);
    band().AddGroup({label});
  }
}

CursorTrack DeviationWindow::Track() { return TrackOfPositions(Frame(), Pixels(session().slot[arc_])); }

std::string DeviationWindow::PictureName() const {
  return BaseName(DataName(session().slot[arc_])) + "_deviations";
}

std::optional<Drawing> DeviationWindow::Draw(WindowSize size) {
  return PlotDeviations(session(), arc_, size);
}

void DeviationWindow::ShowState() {
  const Arc& arc = session().arc[arc_];
  power_->setCurrentIndex(arc.fitPower - leastPower);
  status_->setText(Shown(session().workflow.arc[arc_].fitWindowStatus));
  const FitInWords words = DescribeFit(arc);
  fitInWords_->setText(Shown(words.fit));
  rms_->setText(Shown(words.rms));
  largest_->setText(Shown(words.largest));
}

bool DeviationWindow::Follow() {
  if (!session().workflow.arc[arc_].plotEnabled)
    return false;
  // Lines may have come or gone, and what the read-outs say with them.
  for (QLabel* const label : {column_, value_, wavelength_})
    label->clear();
  ComputeDeviations(session(), arc_);
  return true;
}

void DeviationWindow::Loading() { session().arc[arc_].fitPower = usualPower; }

void DeviationWindow::PointTo(double x, double y) {
  const ArcReadOut at = ReadOutArc(session(), arc_, Frame(), x, y);
  ShowReadOut(at, column_, value_);
  if (at.inside)
    wavelength_->setText(Shown(at.wavelengthText));
}

void DeviationWindow::Fit() { desk().Do(this, steps::FitDeviations{word_, session().arc[arc_].fitPower}); }

void DeviationWindow::Accept() {
  if (!desk().Try(this, [&] { AcceptDeviations(session(), arc_); }))
    return;
  desk().RefreshViews();
  Return();
}

}  // namespace halmek
