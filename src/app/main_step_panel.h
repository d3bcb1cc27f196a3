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
  // Adds a step and returns the grid for its controls. Its first row holds the step's label, which names
  // `field`, where there is one.
  QGridLayout* AddStep(const QString& text, QWidget* field = nullptr);

  // Leaves the rest of the height empty.
  void EndSteps() { steps_->addStretch(1); }

  // A status label, which shows "DONE!": its meaning, for screen readers.
  static QLabel* NewStatus(const QString& name, const QString& meaning);

  // Controls side by side, pushed to the right.
  static QHBoxLayout* Row(const QList<QWidget*>& controls);

 private:
  QVBoxLayout* steps_;
};

}  // namespace halmek
