// How far the reduction has come: what the main window shows of it.
#pragma once

#include <array>
#include <string>

namespace halmek {

// The status text of a step that has completed.
inline constexpr const char* doneText = "DONE!";

// Which controls are enabled and which texts stand. Procedures change it; the main window only renders it.
// The names in brackets are those of the controls.
struct Workflow {
  std::string title = "Halmek";

  bool trimEnabled = false;          // [Command1] "Snip !"
  bool fixColumnEnabled = false;     // [Command2] "Fix !"
  bool sliceEnabled = false;         // [Command3] "Plot Vertical Slice ..."
  bool fixTraceEnabled = false;      // [Command4] "Fix Trace ..."
  bool crunchEnabled = false;        // [Command5] "Crunch !"
  bool normalizeEnabled = false;     // [Command6] "Normalize ..."
  bool saveSpectrumEnabled = false;  // [Command9] "Save 1-D Frame ..."
  bool correctEnabled = false;       // [Command10] "Fix !" of the dispersion
  bool saveObjectEnabled = false;    // [Command15] "Save Calibrated Frame..."
  bool loadArc2Enabled = true;       // [Command13]

  std::string traceStatus;       // [Label24]
  std::string sliceStatus;       // [Label25]
  std::string crunchStatus;      // [Label26]
  std::string continuumStatus;   // [Label27]
  std::string correctionStatus;  // [Label35]

  // By slot: [Label43] and [Label44], [Label29] and [Label39], [Label30] and [Label40], [Label33] and
  // [Label36].
  std::array<std::string, 5> fileLabel, objectLabel;

  // By arc, 1 and 2.
  struct ArcStatus {
    bool plotEnabled = false;     // [Command7], [Command14] "Plot Arc"
    std::string fitStatus;        // [Label31], [Label32] of the main window
    std::string maskName;         // [Label13] of the arc window
    std::string maskStatus;       // [Label15] of the arc window
    std::string deviationStatus;  // [Label16] of the arc window
    std::string fitWindowStatus;  // [Label13] of the deviation window
  };
  std::array<ArcStatus, 3> arc;
};

// Clears the status texts of the frame's steps, which a new or trimmed frame starts over.
void ClearFrameStatus(Workflow& workflow);

// Clears those of a fit, which are about the lines that it went through.
void ClearFitStatus(Workflow::ArcStatus& status);

}  // namespace halmek
