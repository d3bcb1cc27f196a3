// Panels of steps.
#include "app/main_step_panel.h"

#include "platform/accessible.h"
#include "platform/controls.h"

namespace halmek {

StepPanel::StepPanel(const QString& headingName, const QString& heading) : steps_(new QVBoxLayout(this)) {
  setFrameShape(QFrame::StyledPanel);
  setAccessibleName(heading);
  steps_->setContentsMargins(8, 5, 8, 5);
  steps_->setSpacing(0);
  QLabel* const label = NewLabel(headingName, heading);
  QFont bold = label->font();
  bold.setBold(true);
  label->setFont(bold);
  steps_->addWidget(label);
}

QGridLayout* StepPanel::AddStep(const QString& text, QWidget* field) {
  steps_->addStretch(1);
  auto* const grid = new QGridLayout;
  grid->setHorizontalSpacing(6);
  grid->setVerticalSpacing(2);
  QLabel* const label = NewLabel({}, text);
  if (field != nullptr)
    SetCaption(label, field);
  grid->addWidget(label, 0, 0);
  grid->setColumnStretch(0, 1);
  steps_->addLayout(grid);
  return grid;
}

QLabel* StepPanel::NewStatus(const QString& name, const QString& meaning) {
  QLabel* const status = NewLabel(name, {});
  SetMeaning(status, meaning);
  QFont bold = status->font();
  bold.setBold(true);
  status->setFont(bold);
  status->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
  return status;
}

QHBoxLayout* StepPanel::Row(const QList<QWidget*>& controls) {
  auto* const row = new QHBoxLayout;
  row->setSpacing(6);
  row->addStretch(1);
  for (QWidget* control : controls)
    row->addWidget(control);
  return row;
}

}  // namespace halmek
