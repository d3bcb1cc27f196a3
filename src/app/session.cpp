// What every part of the program asks of the session.
#include "app/session.h"

#include <filesystem>

namespace halmek {
namespace {

// `naxis` as a count within 0..limit.
int CountUpTo(double naxis, int limit, const char* keyword) {
  if (!(naxis < limit + 1))
    throw RunTimeError(run_time_error::subscript,
                       std::string(keyword) + " is above " + std::to_string(limit));
  return naxis > 0 ? static_cast<int>(naxis) : 0;
}

}  // namespace

int Columns(const Session& session) {
  return CountUpTo(session.slot[0].naxis1, FrameTable::lastColumn, "NAXIS1");
}

int Rows(const Session& session) { return CountUpTo(session.slot[0].naxis2, FrameTable::lastRow, "NAXIS2"); }

int Pixels(const Slot& slot) { return CountUpTo(slot.naxis1, lastPixel, "NAXIS1"); }

std::string SpectrumTextName(const Session& session, int slot) {
  const std::string& data = DataName(session.slot[slot]);
  if (data.empty())
    return {};
  return slot == slots::spectrum ? session.baseName + "_1D.txt" : BaseName(data) + ".txt";
}

void RequireWithin(const char* what, int value, int last) {
  if (value < 1 || value > last)
    throw Refusal(std::string(what) + " " + std::to_string(value) + " is outside 1 to " +
                  std::to_string(last) + ".  Please try again.");
}

std::string FullName(const Session& session, const std::string& file) {
  return (std::filesystem::path(session.dataFolder) / file).string();
}

std::string BaseName(const std::string& name) { return name.substr(0, name.rfind('.')); }

std::string LeafName(const std::string& name) { return name.substr(name.rfind('/') + 1); }

std::string SpectrumName(const Session& session) {
  const Slot& frame = session.slot[slots::frame];
  const bool isSameFrame = session.crunchLoad == frame.loadedFile;
  return (isSameFrame ? BaseName(DataName(frame)) : session.baseName) + "_1D.fts";
}

void DropFrameState(Session& session) {
  Slice& slice = session.slice;
  slice.apertureFirstRow = slice.apertureLastRow = 0;
  slice.stepFirstRow = slice.stepLastRow = 0;
  slice.apertureState = Slice::nothing;
  slice.backgroundClicks = 0;
  session.background.backgroundFitted = false;

  RowPlot& rowPlot = session.rowPlot;
  rowPlot.undoRow = rowPlot.lastDrawnRow = 0;
  rowPlot.zoomAwaitingFirst = true;
  rowPlot.zapSelected = false;
  rowPlot.zapFirst = RowPlot::noFirst;
  rowPlot.zapLast = RowPlot::noLast;

  session.workflow.crunchEnabled = false;
}

void SetArcCount(Session& session, int count) {
  session.arcCount = count;
  session.workflow.loadArc2Enabled = count == 2;
  session.workflow.arc[2].plotEnabled = count == 2;
}

}  // namespace halmek
