// Steps 1 to 7.
#include "app/main_part1_panel.h"

#include "platform/accessible.h"
#include "platform/text.h"

namespace halmek {

Part1Panel::Part1Panel(Actions& actions)
    : StepPanel("Label22", "Part I - Convert 2-D Frames to 1-D (objects, arcs)"), actions_(actions) {
  AddLoad();
  AddFixColumn();
  AddTrim();
  AddTraceAndSlice();
  AddExtraction();
  EndSteps();
}

void Part1Panel::AddLoad() {
  QGridLayout* const step = AddStep("1. Load 2-D Frame");
  QPushButton* const load =
      NewButtonNamed("Load 2-D Frame", "Command11", "Load ...", [this] { actions_.LoadFrame(); });
  load->setToolTip("Choose the FITS file of an object or an arc");
  step->addWidget(load, 0, 1);
  file_ = new ElidedLabel("Label43");
  object_ = new ElidedLabel("Label44");
  auto* const names = new QGridLayout;
  names->setContentsMargins(14, 0, 0, 0);
  names->setHorizontalSpacing(6);
  names->setVerticalSpacing(0);
  names->setColumnStretch(1, 1);
  const auto add = [&](int row, const char* text, QLabel* value) {
    QLabel* const caption = NewLabel({}, text);
    SetCaption(caption, value);
    names->addWidget(caption, row, 0);
    names->addWidget(value, row, 1);
  };
  add(0, "Filename:", file_);
  add(1, "Object:", object_);
  step->addLayout(names, 1, 0, 1, 2);
}

void Part1Panel::AddFixColumn() {
  badColumn_ = NewNumberBox("Text6", "A column 4 to NAXIS1 - 3");
  QGridLayout* const step = AddStep(" 2. Fix bad column #", badColumn_);
  fixColumn_ = NewButtonNamed("Fix bad column", "Command2", "Fix !", [this] {
    if (const auto row = actions_.FixColumn(badColumn_->text()))
      startRow_->setText(*row);
  });
  fixColumn_->setToolTip("Replace the column by the median of its neighbours in each row");
  step->addLayout(Row({badColumn_, fixColumn_}), 0, 1);
}

void Part1Panel::AddTrim() {
  QGridLayout* const step = AddStep("3. Trim overscan, etc.");
  auto* const corners = new QGridLayout;
  corners->setContentsMargins(14, 0, 0, 0);
  corners->setHorizontalSpacing(6);
  corners->setVerticalSpacing(2);
  corners->setColumnStretch(3, 1);
  corners->addWidget(NewLabel({}, "Corner Points to be Included ---------------"), 0, 0, 1, 5);
  const std::array across = {"Col (x)", "Row (y)"}, down = {"Upper left", "Lower right"};
  for (int i = 0; i < 2; ++i) {
    corners->addWidget(NewLabel({}, across[static_cast<size_t>(i)]), 1, 1 + i);
    corners->addWidget(NewLabel({}, down[static_cast<size_t>(i)]), 2 + i, 0);
  }
  corners_ = {NewNumberBox("Text1", "First column to keep"), NewNumberBox("Text2", "First row to keep"),
              NewNumberBox("Text3", "Last column to keep"), NewNumberBox("Text4", "Last row to keep")};
  for (size_t i = 0; i < corners_.size(); ++i) {
    corners_[i]->setAccessibleName(QString("%1, %2").arg(down[i / 2], across[i % 2]));
    corners->addWidget(corners_[i], static_cast<int>(2 + i / 2), static_cast<int>(1 + i % 2));
  }
  trim_ = NewButton("Command1", "Snip !", [this] {
    actions_.Trim({corners_[0]->text(), corners_[1]->text(), corners_[2]->text(), corners_[3]->text()});
  });
  trim_->setToolTip("Keep the rectangle between the corners, both included; a frame is trimmed once");
  corners->addWidget(trim_, 3, 4);
  step->addLayout(corners, 1, 0, 1, 2);
}

void Part1Panel::AddTraceAndSlice() {
  QGridLayout* const trace = AddStep("4. Fix Trace (for cosmic ray hits)");
  traceStatus_ = NewStatus("Label24", "Status of step 4");
  startRow_ = NewNumberBox("Text5", "The first row to plot");
  fixTrace_ = NewButton("Command4", "Fix Trace ...", [this] { actions_.FixTrace(startRow_->text()); });
  fixTrace_->setToolTip("Look along rows and remove cosmic-ray hits");
  auto* const start = new QHBoxLayout;
  start->setContentsMargins(14, 0, 0, 0);
  start->setSpacing(6);
  QLabel* const caption = NewLabel({}, "Start row #");
  SetCaption(caption, startRow_);
  start->addWidget(caption);
  start->addWidget(startRow_);
  start->addStretch(1);
  trace->addLayout(start, 1, 0);
  trace->addLayout(Row({traceStatus_, fixTrace_}), 1, 1);

  QGridLayout* const slice = AddStep("5. Set Aperture, Fit Background in Y-slice");
  sliceStatus_ = NewStatus("Label25", "Status of step 5");
  slice_ = NewButton("Command3", "Plot Vertical Slice ...", [this] { actions_.PlotSlice(); });
  slice->addLayout(Row({sliceStatus_, slice_}), 1, 0, 1, 2);
}

void Part1Panel::AddExtraction() {
  QGridLayout* const crunch = AddStep("6. Transform 2-D to 1-D");
  crunchStatus_ = NewStatus("Label26", "Status of step 6");
  crunch_ = NewButton("Command5", "Crunch !", [this] { actions_.Crunch(); });
  crunch_->setToolTip("Sum the rows of the aperture, less the background");
  crunch->addLayout(Row({crunchStatus_, crunch_}), 0, 1);

  QGridLayout* const continuum = AddStep("7. Normalize Continuum (skip for arcs)");
  continuumStatus_ = NewStatus("Label27", "Status of step 7");
  normalize_ = NewButton("Command6", "Normalize ...", [this] { actions_.Normalize(); });
  save_ = NewButton("Command9", "Save 1-D Frame ...", [this] { actions_.SaveSpectrum(); });
  continuum->addLayout(Row({continuumStatus_, normalize_, save_}), 1, 0, 1, 2);
}

void Part1Panel::ShowSettings(const Settings& settings) {
  corners_[0]->setText(QString::number(settings.trimCol1));
  corners_[1]->setText(QString::number(settings.trimRow1));
  corners_[2]->setText(QString::number(settings.trimCol2));
  corners_[3]->setText(QString::number(settings.trimRow2));
  startRow_->setText(QString::number(settings.startRow));
  badColumn_->setText(QString::number(settings.badColumn));
}

void Part1Panel::Render(const Workflow& workflow) {
  file_->SetText(Shown(workflow.fileLabel[slots::frame]));
  object_->SetText(Shown(workflow.objectLabel[slots::frame]));
  trim_->setEnabled(workflow.trimEnabled);
  fixColumn_->setEnabled(workflow.fixColumnEnabled);
  slice_->setEnabled(workflow.sliceEnabled);
  fixTrace_->setEnabled(workflow.fixTraceEnabled);
  crunch_->setEnabled(workflow.crunchEnabled);
  normalize_->setEnabled(workflow.normalizeEnabled);
  save_->setEnabled(workflow.saveSpectrumEnabled);
  traceStatus_->setText(Shown(workflow.traceStatus));
  sliceStatus_->setText(Shown(workflow.sliceStatus));
  crunchStatus_->setText(Shown(workflow.crunchStatus));
  continuumStatus_->setText(Shown(workflow.continuumStatus));
}

}  // namespace halmek
