// The arcs' windows.
#include "calib/arc_window.h"

#include <QAction>
#include <QMenu>
#include <QMenuBar>

#include "calib/arc_plot.h"
#include "calib/deviations.h"
#include "calib/line_list.h"
#include "platform/accessible.h"
#include "platform/text.h"
#include "platform/twips.h"
#include "plot/wording.h"
#include "steps/slot_names.h"

namespace halmek {
namespace {

// The names that differ between the two.
constexpr const char* keys = "Return identifies the line at the cursor.";
constexpr PlotWindowNames arcNames[] = {{},
                                        {.window = "frmPlot_Arc1",
                                         .plot = "Plot of Arc 1",
                                         .keys = keys,
                                         .fileMenu = "nFile",
                                         .printSetup = "nPrintSetup",
                                         .print = "nPrint"},
                                        {.window = "frmPlot_Arc2",
                                         .plot = "Plot of Arc 2",
                                         .keys = keys,
                                         .fileMenu = "m2File",
                                         .printSetup = "m2Printsetup",
                                         .print = "mPrint"}};
constexpr const char* helpNames[] = {"", "Arc1Help", "mHelpArc2"};

// Pixels on either side of a clicked line that its identification leaves uncovered.
constexpr int besideLine = 24;

}  // namespace

ArcWindow::ArcWindow(Desk& desk, int arc, ArcCompanions companions)
    : PlotWindow(desk, arcNames[arc], desk.session().plot1D[arc]),
      arc_(arc),
      word_(NameOfSlot(arc)),
      companions_(std::move(companions)) {
  QAction* const help = menuBar()->addAction("Help", this, [this] { companions_.showHelp(); });
  help->setObjectName(helpNames[arc]);
  AddMasks();
  AddFit();
  AddReadOuts();
  AddButtons();
}

void ArcWindow::AddMasks() {
  QPushButton* const load = NewButton("Command5", "Load Mask", [this] { companions_.loadMask(); });
  load->setToolTip("Load the lines of an arc that was identified before");
  maskName_ = new ElidedLabel("Label13");
  SetMeaning(maskName_, "Mask");
  maskName_->setFixedWidth(maskName_->fontMetrics().horizontalAdvance("a_name_of_a_mask.dat"));
  applyMask_ = NewButton("Command6", "Apply Mask", [this] { desk().Do(this, steps::ApplyMask{word_}); });
  maskStatus_ = NewReadOut("Label15", "Status of the mask", doneText);
  QPushButton* const save = NewButton("Command4", "Save Mask", [this] { companions_.saveMask(); });
  save->setToolTip("Save the lines of this arc, to identify the same lines in another");
  band().AddGroup({load, save, applyMask_, maskStatus_});
}

void ArcWindow::AddFit() {
  QPushButton* const deleteAll =
      NewButton("Command2", "Delete All IDs", [this] { desk().Do(this, steps::DeleteLines{word_}); });
  deleteAll->setToolTip("Drop the wavelengths of all lines of this arc");
  QPushButton* const fit = NewButton("Command1", "Calc. Fit", [this] { CalculateFit(); });
  fit->setToolTip("Show the deviations of the lines from a straight line, and fit them");
  deviationStatus_ = NewReadOut("Label16", "Status of the fit", doneText);
  band().AddGroup({deleteAll});
  band().AddGroup({fit, deviationStatus_});
}

void ArcWindow::AddReadOuts() {
  column_ = NewReadOut("Label7", "Column pointed at", "000000");
  value_ = NewReadOut("Label10", "Intensity at the pointer", "00000000.00");
  wavelength_ = NewReadOut("Label11", "Wavelength pointed at, in Angstroms", "00000.00");
  wavelength_->setToolTip("By the straight line through two or more identified lines");
  band().AddGroup({NewLabel("Label5", "Column"), column_, NewLabel("Label9", "Intens."), value_,
                   NewLabel("Label12", "WaveL"), wavelength_, NewLabel("Label14", "(Ang.)")});
}

void ArcWindow::AddButtons() {
  QPushButton* const accept = NewButton("Command3", "OK", [this] { Accept(); });
  accept->setToolTip("Close after the lines are identified and their deviations fitted");
  band().AddGroup({accept, NewButton("Command7", "Cancel", [this] { Return(); })});
  band().AddGroup({maskName_});
}

CursorTrack ArcWindow::Track() { return TrackOfPositions(Frame(), Pixels(session().slot[arc_])); }

std::string ArcWindow::PictureName() const { return BaseName(DataName(session().slot[arc_])) + "_lines"; }

std::optional<Drawing> ArcWindow::Draw(WindowSize size) { return PlotArc(session(), arc_, size); }

void ArcWindow::ShowState() {
  const Workflow::ArcStatus& status = session().workflow.arc[arc_];
  maskName_->SetText(Shown(status.maskName));
  maskStatus_->setText(Shown(status.maskStatus));
  deviationStatus_->setText(Shown(status.deviationStatus));

  const LineMask& mask = session().mask;
  applyMask_->setToolTip(
      "Identify the lines of this arc from the mask loaded: " +
      (mask.maskCount == 0
           ? QString("none yet")
           : Shown(mask.maskFileName + ", " + Count(mask.maskCount, "line")).toHtmlEscaped()));
}

bool ArcWindow::Follow() {
  // What they say may be of another file, or of lines that are gone. Where the pointer is over the plot, they
  // are filled again.
  for (QLabel* const label : {column_, value_, wavelength_})
    label->clear();
  return session().workflow.arc[arc_].plotEnabled;
}

void ArcWindow::PointTo(double x, double y) {
  const ArcReadOut at = ReadOutArc(session(), arc_, Frame(), x, y);
  ShowReadOut(at, column_, value_);
  if (at.inside)
    wavelength_->setText(Shown(at.wavelengthText));
}

QString ArcWindow::ToolTipAt(double x, double y) { return Shown(MarkTextAt(session(), arc_, x, y)); }

void ArcWindow::Click(double x, double y) {
  const auto column = ArcColumnAt(session(), arc_, x, y);
  if (column && desk().Try(this, [&] { ClickLine(session(), arc_, *column); }))
    companions_.identifyLine(this, ClickedLineOnScreen());
}

QRect ArcWindow::ClickedLineOnScreen() {
  const PlotFrame& f = Frame();
  const int x = PixelsOf(ScreenX(f, session().peakPixel));
  const QRect line(x - besideLine, PixelsOf(f.plotTop), 2 * besideLine, PixelsOf(f.plotHeight));
  return {surface().mapToGlobal(line.topLeft()), line.size()};
}

void ArcWindow::CalculateFit() {
  if (desk().Try(this, [&] { OpenDeviations(session(), arc_); })) {
    ShowState();
    companions_.showDeviations();
  }
}

void ArcWindow::Accept() {
  if (desk().Try(this, [&] { RequireCalibrated(session(), arc_); }))
    Return();
}

}  // namespace halmek
