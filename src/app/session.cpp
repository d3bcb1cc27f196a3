// What every part of the program asks of the session.
#include "app/session.h"

#include <filesystem>

namespace halmek {
int Columns(const Session& session) { return static_cast<int>(session.slot[slots::frame].naxis1); }

int Rows(const Session& session) { return static_cast<int>(session.slot[slots::frame].naxis2); }

int Pixels(const Slot& slot) { return static_cast<int>(slot.naxis1); }

std::string DataName(const Slot& slot) {
  return slot.loadedFile.empty() ? slot.fileName : LeafName(slot.loadedFile);
}

std::string SpectrumTextName(const Session& session, int slot) {
  const std::string data = DataName(session.slot[slot]);
  if (data.empty())
    return {};
  if (slot == slots::spectrum)
    return session.baseName + "_1D.txt";
  const std::string name = BaseName(data);
  // The object of Part II is a spectrum of Part I by its file, but not by what is in it.
  return name + (slot == slots::object && !name.ends_with("cal") ? "cal.txt" : ".txt");
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

std::string ProposedFile(const Session& session, int slot) {
  const Slot& s = session.slot[slot];
  const auto beside = [&](const std::string& name) {
    return FullName(session, (std::filesystem::path(s.loadedFile).parent_path() / name).string());
  };
  if (slot == slots::object)
    return beside(BaseName(DataName(s)) + "cal.fts");
  if (!s.savedFile.empty())
    return s.savedFile;
  if (slot == slots::frame)
    return beside(BaseName(DataName(s)) + ".fts");
  const Slot& frame = session.slot[slots::frame];
  const bool isSameFrame = session.crunchLoad == frame.loadedFile;
  return FullName(session, (isSameFrame ? BaseName(DataName(frame)) : session.baseName) + "_1D.fts");
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
