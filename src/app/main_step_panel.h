// One of the two panels of the main window: a heading, and numbered steps below it.
#pragma once

#include <QFrame>
#include <QGridLayout>
#include <QLabel>
#include <QVBoxLayout>

namespace halmek {

class StepPanel : public QFrame {
 public:
  StepPanel(const QString& headingName, const QString& heading);

 protected:
  // Adds a step and returns the grid for its controls. Its first row holds the step's label.
  QGridLayout* AddStep(const QString& text);

  // Leaves the rest of the height empty.
  void EndSteps() { steps_->addStretch(1); }

  // A status label, which shows "DONE!".
  static QLabel* NewStatus(const QString& name);

  // Controls side by side, pushed to the right.
  static QHBoxLayout* Row(const QList<QWidget*>& controls);

 private:
  QVBoxLayout* steps_;
};

}  // namespace halmek
