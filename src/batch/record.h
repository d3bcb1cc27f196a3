// What a run leaves to be looked at when it is over: the numbers of its summary and the plots of its report.
#pragma once

#include <array>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "plot/drawing.h"
#include "steps/steps.h"

namespace halmek {

struct Session;

namespace batch {

struct Summary {
  std::string object;      // as its header says
  std::vector<int> lines;  // identified in each arc that has any
  // Of the same arcs, in Angstrom: what the fit of the deviations leaves, or the straight line where there is
  // no such fit.
  std::vector<double> rms;
  std::optional<double>
      scale;  // Angstrom per pixel: of the corrected object, or of the first arc's straight line
  std::optional<double> signalToNoise;  // of the object as loaded, or of the spectrum extracted last
};

// A plot for the report.
struct Figure {
  std::string of;      // what is plotted, as in "Slice of star1.fts"
  std::string found;   // what there is to be said of it
  std::string svg;     // an element of an HTML page
  int generation = 0;  // how often its slot had been filled
};

struct Record {
  Summary summary;
  std::vector<Figure> figures;
};

// Follows a run, step by step. It leaves everything in the session as it was.
class Recorder {
 public:
  // What it sees goes into `record`, which outlives it; figures only where they are asked for.
  Recorder(Record& record, bool drawsFigures) : record_(record), drawsFigures_(drawsFigures) {}

  // Looks at the session after a step that succeeded.
  void After(Session& session, const Step& step);

  // Looks at it when the run is over, be it for a refusal.
  void AtEnd(Session& session);

 private:
  struct Look;

  void Show(int slot, const std::string& of, const std::string& found, const std::function<Drawing()>& draw);
  void ShowSlice(Session& session);
  void ShowContinuum(Session& session);
  void ShowArc(Session& session, int a);

  Record& record_;
  const bool drawsFigures_;
  bool objectMeasured_ = false;
  std::array<int, 5> generation_{};  // by slot: how often an arc was loaded, a spectrum extracted
};

}  // namespace batch
}  // namespace halmek
