// The file choosers: one design, and the table of what differs.
#pragma once

#include <string>
#include <vector>

#include "app/session.h"
#include "steps/steps.h"

namespace halmek {

// A button of a chooser's choice: its object name, and the pixel type or the slot that it stands for.
struct ChooserOption {
  const char* name;
  const char* caption;
  int value;
  const char* explanation;
};

struct ChooserKind {
  // What the option buttons choose: the pixel type to save, or the slot to export.
  enum class Choice { none, pixelType, slot };

  const char* name;   // of the window as an object
  const char* title;  // "" where the caller gives it
  std::vector<std::string> patterns;
  WindowPlacement Settings::*placement;

  // The step of OK. `what` is what the chooser was opened for, `option` the value of the button chosen.
  Step (*StepOf)(const std::string& what, const std::string& file, int option);

  bool saves = false;
  bool requiresName = false;  // stays open without one
  Choice choice = Choice::none;
  std::vector<ChooserOption> options = {};  // shown in two columns, down the left one first
};

namespace choosers {

extern const ChooserKind loadData, saveData, loadMask, saveMask, loadTable, saveSpectrumText, saveFrameText;

}  // namespace choosers

}  // namespace halmek
