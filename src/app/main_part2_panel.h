// Steps 8 to 11 of the main window: from arcs and an object's spectrum to a calibrated one.
#pragma once

#include <QComboBox>

#include "app/main_actions.h"
#include "app/main_step_panel.h"
#include "platform/controls.h"

namespace halmek {

class Part2Panel : public StepPanel {
 public:
  explicit Part2Panel(Actions& actions);

  void Render(const Session& session);

 private:
  void AddArcs();
  void AddArc(QGridLayout* grid, int row, int arc);
  void AddIdentification();
  void AddObject();
  void AddCorrection();

  Actions& actions_;
  QComboBox* arcCount_;
  // By slot; by arc, 1 and 2.
  std::array<ElidedLabel*, 5> file_{}, object_{};
  std::array<QPushButton*, 3> loadArc_{}, plotArc_{};
  std::array<QLabel*, 3> fitStatus_{};
  QPushButton *correct_, *save_;
  QLabel* correctionStatus_;
};

}  // namespace halmek
