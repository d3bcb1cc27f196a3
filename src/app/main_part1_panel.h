// Steps 1 to 7 of the main window: from a 2-D frame to a spectrum.
#pragma once

#include "app/main_actions.h"
#include "app/main_step_panel.h"
#include "platform/controls.h"

namespace halmek {

class Part1Panel : public StepPanel {
 public:
  explicit Part1Panel(Actions& actions);

  // Shows the parameters that are kept between runs.
  void ShowSettings(const Settings& settings);
  void Render(const Workflow& workflow);

  QString startRow() const { return startRow_->text(); }
  QString badColumn() const { return badColumn_->text(); }

 private:
  void AddLoad();
  void AddFixColumn();
  void AddTrim();
  void AddTraceAndSlice();
  void AddExtraction();

  Actions& actions_;
  ElidedLabel *file_, *object_;
  EntryBox *badColumn_, *startRow_;
  std::array<EntryBox*, 4> corners_{};
  QPushButton *trim_, *fixColumn_, *slice_, *fixTrace_, *crunch_, *normalize_, *save_;
  QLabel *traceStatus_, *sliceStatus_, *crunchStatus_, *continuumStatus_;
};

}  // namespace halmek
