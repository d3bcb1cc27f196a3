// The column slice's window.
#include "reduce/column_slice_window.h"

#include "platform/text.h"
#include "reduce/column_slice.h"
#include "steps/clicks.h"

namespace halmek {
namespace {

constexpr const char* markHint =
    " Left-click to select range for aperture; Right-click to select each range for background fitting.";

constexpr PlotWindowNames names{.window = "frmPlot_Column",
                                .plot = "Plot of a column",
                                .keys =
                                    "Return marks an end of the aperture, Shift+Return an end of a "
                                    "background range, Up and Down change the column."};

}  // namespace

ColumnSliceWindow::ColumnSliceWindow(Desk& desk) : PlotWindow(desk, names, desk.session().plotColumn) {
  AddScroll();
  AddSelectionControls();
  AddScaleControls();
  AddReadOuts();
  band().AddGroup({NewButton("Command4", "OK", [this] { Accept(); }),
                   NewButton("Command5", "Cancel", [this] { Cancel(); })});
  hint_ = surface().AddLabel("Label16", markHint);
}

void ColumnSliceWindow::AddScroll() {
  columns_ = AddColumnScroll("HScroll1", "Column to plot");
  connect(columns_, &QScrollBar::valueChanged, this, [this](int value) {
    session().slice.sliceColumn = value;
    Redraw();
  });
}

void ColumnSliceWindow::AddSelectionControls() {
  QPushButton* const clearMarks = NewButtonNamed("Clear apertures", "Command1", "Clear", [this] {
    ClearSelection(session());
    desk().RefreshViews();
  });
  clearMarks->setToolTip("Drop the aperture and both background ranges");
  band().AddGroup({NewLabel("Label15", "Apertures"), clearMarks});

  power_ = new ChoiceBox("Combo1");
  power_->addItems(
      {"Power 0 - Median (Horiz.)", "Power 1 - Line with slope", "Power 2 - Parabolic", "Power 3 - Cubic"});
  power_->setAccessibleName("Background function");
  power_->setToolTip("What the background of each column is fitted by");
  connect(power_, &QComboBox::activated, this,
          [this](int index) { session().background.backgroundPower = index; });
  QPushButton* const clearFit = NewButtonNamed("Clear the background fit", "Command3", "Clear", [this] {
    ClearBackgroundFit(session());
    desk().RefreshViews();
  });
  clearFit->setToolTip("Drop the background fit");
  band().AddGroup({power_, NewButton("Command2", "Fit Background", [this] { Fit(); }), clearFit});
}

void ColumnSliceWindow::AddScaleControls() {
  fixedScale_ = new QRadioButton("Fixed");
  fixedScale_->setObjectName("Option1");
  fixedScale_->setToolTip("The same vertical scale for all columns");
  autoScale_ = new QRadioButton("Auto");
  autoScale_->setObjectName("Option2");
  autoScale_->setToolTip("A vertical scale for each column");
  for (QRadioButton* button : {fixedScale_, autoScale_})
    connect(button, &QRadioButton::clicked, this, [this] {
      session().slice.fixedScale = fixedScale_->isChecked();
      Redraw();
    });
  band().AddGroup({NewLabel("Label11", "V.Scale:"), fixedScale_, autoScale_});
}

void ColumnSliceWindow::AddReadOuts() {
  column_ = NewReadOut("Label13", "Column shown", "0000");
  row_ = NewReadOut("Label7", "Row pointed at", "000000");
  value_ = NewReadOut("Label10", "Value at the pointer", "00000000.00");
  band().AddGroup({NewLabel("Label12", "Col"), column_, NewLabel("Label5", "Row"), row_,
                   NewLabel("Label9", "Pix val."), value_});
  marks_ = NewReadOut("labelMarks", "Rows marked", "Aperture 000 to 000   Background 000 to 000, 000 to 000");
  band().AddGroup({marks_});
}

std::string ColumnSliceWindow::PictureName() const {
  return BaseName(DataName(session().slot[slots::frame])) + "_slice";
}

std::optional<Drawing> ColumnSliceWindow::Draw(WindowSize size) { return DrawColumnPlot(session(), size); }

void ColumnSliceWindow::ShowState() {
  const Session& s = session();
  ShowScrollBar(
      columns_,
      {.min = 1, .max = Columns(s), .value = s.slice.sliceColumn, .smallChange = 1, .largeChange = 10});
  column_->setText(QString::number(s.slice.sliceColumn));
  power_->setCurrentIndex(s.background.backgroundPower);
  fixedScale_->setChecked(s.slice.fixedScale);
  autoScale_->setChecked(!s.slice.fixedScale);
  marks_->setText(Shown(MarksText(s.slice)));
  ShowHint(hint_, markHint);
}

bool ColumnSliceWindow::Follow() {
  Session& s = session();
  if (!s.workflow.sliceEnabled)
    return false;
  if (s.slice.sliceColumn > Columns(s))
    OpenColumnPlot(s);
  return true;
}

void ColumnSliceWindow::PointTo(double x, double y) {
  ShowReadOut(ReadOutSlice(session(), x, y), row_, value_);
}

void ColumnSliceWindow::ClickLeft(double x, double y) {
  ClickForAperture(session(), x, y);
  Redraw();
}

void ColumnSliceWindow::ClickRight(double x, double y) {
  ClickForBackground(session(), x, y);
  Redraw();
}

// Early in a row's step both buttons mean this row.
CursorTrack ColumnSliceWindow::Track() { return TrackOfSteps(Frame(), 1, Rows(session()), 0.25); }

void ColumnSliceWindow::Fit() {
  std::vector<Step> steps;
  if (desk().Try(this, [&] { steps = BackgroundSteps(session()); }))
    desk().Do(this, steps);
}

void ColumnSliceWindow::Accept() {
  if (!desk().Try(this, [this] { AcceptBackground(session()); }))
    return;
  desk().RefreshViews();
  Return();
}

void ColumnSliceWindow::Cancel() {
  CancelBackground(session());
  desk().RefreshViews();
  Return();
}

}  // namespace halmek
