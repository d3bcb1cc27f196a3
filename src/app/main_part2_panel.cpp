// Steps 8 to 11.
#include "app/main_part2_panel.h"

#include "platform/accessible.h"
#include "platform/text.h"

namespace halmek {
namespace {

// The names that the controls have for each arc.
struct ArcNames {
  const char *load, *file, *object, *plot, *status;
};
constexpr std::array<ArcNames, 3> arcNames{{{},
                                            {"Command12", "Label29", "Label39", "Command7", "Label31"},
                                            {"Command13", "Label30", "Label40", "Command14", "Label32"}}};

}  // namespace

Part2Panel::Part2Panel(Actions& actions)
    : StepPanel("Label21", "Part II - Calibrate 1-D Object Frames"), actions_(actions) {
  AddArcs();
  AddIdentification();
  AddObject();
  AddCorrection();
  EndSteps();
}

void Part2Panel::AddArcs() {
  QGridLayout* const step = AddStep("8. Load Arc Frame(s)");
  arcCount_ = new ChoiceBox("Combo1");
  arcCount_->addItems({"1", "2"});
  arcCount_->setToolTip("How many arcs calibrate the object");
  connect(arcCount_, &QComboBox::activated, this, [this](int index) { actions_.ChooseArcCount(index + 1); });
  QLabel* const caption = NewLabel({}, "# Arc files");
  SetCaption(caption, arcCount_);
  step->addLayout(Row({caption, arcCount_}), 0, 1);
  for (int arc : {1, 2})
    AddArc(step, 1 + 2 * (arc - 1), arc);
}

void Part2Panel::AddArc(QGridLayout* grid, int row, int arc) {
  const ArcNames& names = arcNames[arc];
  const QString arcName = "Arc " + QString::number(arc);
  auto* const load = loadArc_[arc] =
      NewButtonNamed("Load " + arcName, names.load, "Load ...", [this, arc] { actions_.LoadArc(arc); });
  load->setToolTip("Choose the spectrum of " + arcName);
  file_[arc] = new ElidedLabel(names.file);
  object_[arc] = new ElidedLabel(names.object);
  SetMeaning(file_[arc], "File of " + arcName);
  SetMeaning(object_[arc], "Object of " + arcName);
  QLabel* const title = NewLabel({}, arcName);
  title->setContentsMargins(14, 0, 0, 0);
  auto* const lines = new QVBoxLayout;
  lines->setContentsMargins(14, 0, 0, 0);
  lines->setSpacing(0);
  lines->addWidget(file_[arc]);
  lines->addWidget(object_[arc]);
  grid->addWidget(title, row, 0);
  grid->addWidget(load, row, 1, Qt::AlignRight);
  grid->addLayout(lines, row + 1, 0, 1, 2);
}

void Part2Panel::AddIdentification() {
  QGridLayout* const step = AddStep("9. ID Arc lines, fit correction");
  for (int arc : {1, 2}) {
    const ArcNames& names = arcNames[arc];
    plotArc_[arc] =
        NewButton(names.plot, "Plot Arc " + QString::number(arc), [this, arc] { actions_.PlotArc(arc); });
    fitStatus_[arc] = NewStatus(names.status, "Status of step 9, Arc " + QString::number(arc));
    step->addLayout(Row({fitStatus_[arc], plotArc_[arc]}), arc - 1, 1);
  }
}

void Part2Panel::AddObject() {
  QGridLayout* const step = AddStep("10. Load Object Frame - 1-D");
  QPushButton* const load =
      NewButtonNamed("Load Object Frame", "Command16", "Load ...", [this] { actions_.LoadObject(); });
  load->setToolTip("Choose the spectrum to be calibrated");
  step->addWidget(load, 0, 1);
  file_[slots::object] = new ElidedLabel("Label33");
  object_[slots::object] = new ElidedLabel("Label36");
  SetMeaning(file_[slots::object], "File of the Object Frame");
  SetMeaning(object_[slots::object], "Object of the Object Frame");
  auto* const lines = new QVBoxLayout;
  lines->setContentsMargins(14, 0, 0, 0);
  lines->setSpacing(0);
  lines->addWidget(file_[slots::object]);
  lines->addWidget(object_[slots::object]);
  step->addLayout(lines, 1, 0, 1, 2);
}

void Part2Panel::AddCorrection() {
  QGridLayout* const step = AddStep("11. Correct the Dispersion in Object Spectrum");
  correctionStatus_ = NewStatus("Label35", "Status of step 11");
  correct_ = NewButtonNamed("Fix the dispersion", "Command10", "Fix !", [this] { actions_.Correct(); });
  correct_->setToolTip("Put the object on a linear wavelength scale");
  save_ = NewButton("Command15", "Save Calibrated Frame...", [this] { actions_.SaveCalibrated(); });
  step->addLayout(Row({correctionStatus_, correct_, save_}), 1, 0, 1, 2);
}

void Part2Panel::Render(const Session& session) {
  const Workflow& workflow = session.workflow;
  arcCount_->setCurrentIndex(session.arcCount - 1);
  loadArc_[2]->setEnabled(workflow.loadArc2Enabled);
  for (int slot : {slots::arc1, slots::arc2, slots::object}) {
    file_[slot]->SetText(Shown(workflow.fileLabel[slot]));
    object_[slot]->SetText(Shown(workflow.objectLabel[slot]));
  }
  for (int arc : {1, 2}) {
    plotArc_[arc]->setEnabled(workflow.arc[arc].plotEnabled);
    fitStatus_[arc]->setText(Shown(workflow.arc[arc].fitStatus));
  }
  correct_->setEnabled(workflow.correctEnabled);
  save_->setEnabled(workflow.saveObjectEnabled);
  correctionStatus_->setText(Shown(workflow.correctionStatus));
}

}  // namespace halmek
