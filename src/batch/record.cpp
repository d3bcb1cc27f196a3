// What a run leaves to be looked at.
#include "batch/record.h"

#include <algorithm>
#include <cstddef>
#include <numeric>
#include <utility>
#include <vector>

#include "app/session.h"
#include "calib/arc_plot.h"
#include "calib/deviations.h"
#include "plot/svg.h"
#include "plot/wording.h"
#include "reduce/column_slice.h"
#include "reduce/continuum.h"
#include "reduce/signal_to_noise.h"
#include "steps/slot_names.h"

namespace halmek::batch {
namespace {

// A part of the session that is put back when it has been changed for a look.
template <class Part>
class Kept {
 public:
  explicit Kept(Part& part) : part_(part), value_(part) {}
  ~Kept() { part_ = std::move(value_); }
  Kept(const Kept&) = delete;
  Kept& operator=(const Kept&) = delete;

 private:
  Part& part_;
  Part value_;
};

std::optional<double> SignalToNoiseOf(const Slot& slot) {
  return SignalToNoise(slot.spectrum.Range(1, Pixels(slot)));
}

// The column of a spectrum for which 2 % of all are brighter: in an arc it has a line, and in a star it is no
// cosmic ray's.
int TellingColumn(const Slot& slot) {
  const auto pixels = slot.spectrum.Range(1, Pixels(slot));
  std::vector<int> columns(pixels.size());
  std::iota(columns.begin(), columns.end(), 1);
  const auto chosen = columns.begin() + static_cast<std::ptrdiff_t>(columns.size() / 50);
  std::nth_element(columns.begin(), chosen, columns.end(), [&](int a, int b) {
    const double left = slot.spectrum(a), right = slot.spectrum(b);
    return left != right ? left > right : a < b;
  });
  return *chosen;
}

std::string ObjectOf(const Session& s) {
  // A load that failed leaves a name of a file, but none of an object.
  for (const int slot : {slots::object, slots::spectrum, slots::frame})
    if (!s.slot[slot].objectName.empty())
      return s.slot[slot].objectName.substr(0, s.slot[slot].objectName.find_last_not_of(' ') + 1);
  return {};
}

std::optional<double> ScaleOf(const Session& s) {
  if (s.workflow.saveObjectEnabled)
    return s.dispStep;
  for (int a = 1; a <= s.arcCount; ++a)
    if (s.arc[a].LineCount >= 2)
      return s.arc[a].linSlope;
  return std::nullopt;
}

}  // namespace

// What is to be looked at after which step.
struct Recorder::Look {
  Recorder& recorder;
  Session& session;

  void operator()(const steps::Load& load) const {
    if (load.what == "arc1" || load.what == "arc2")
      ++recorder.generation_[SlotNamed(load.what)];
    if (load.what != "object")
      return;
    recorder.record_.summary.signalToNoise = SignalToNoiseOf(session.slot[slots::object]);
    recorder.objectMeasured_ = true;
  }
  void operator()(const steps::Crunch&) const {
    ++recorder.generation_[slots::spectrum];
    if (!recorder.objectMeasured_)
      recorder.record_.summary.signalToNoise = SignalToNoiseOf(session.slot[slots::spectrum]);
    recorder.ShowSlice(session);
  }
  void operator()(const steps::NormalizeAuto&) const { recorder.ShowContinuum(session); }
  void operator()(const steps::NormalizePoints&) const { recorder.ShowContinuum(session); }
  void operator()(const steps::FitDeviations& fit) const { recorder.ShowArc(session, fit.arc.back() - '0'); }
  void operator()(const auto&) const {}
};

void Recorder::After(Session& session, const Step& step) { std::visit(Look{*this, session}, step); }

void Recorder::AtEnd(Session& session) {
  Summary& summary = record_.summary;
  summary.object = ObjectOf(session);
  summary.scale = ScaleOf(session);
  for (int a = 1; a <= session.arcCount; ++a) {
    const Arc& arc = session.arc[a];
    if (arc.LineCount == 0)
      continue;
    summary.lines.push_back(arc.LineCount);
    summary.rms.push_back(IsFitted(arc) ? DeviationRms(arc) : LinearRms(arc));
    ShowArc(session, a);
  }
}

// Adds the plot that `draw` returns, in the place of an earlier one of the same while the slot holds what it
// held then. What cannot be drawn is no failure of the run.
void Recorder::Show(int slot, const std::string& of, const std::string& found,
                    const std::function<Drawing()>& draw) {
  if (!drawsFigures_)
    return;
  try {
    Figure figure{of, found, InlineSvgOf(draw()), generation_[slot]};
    const auto earlier = std::find_if(record_.figures.begin(), record_.figures.end(), [&](const Figure& f) {
      return f.of == of && f.generation == figure.generation;
    });
    if (earlier == record_.figures.end())
      record_.figures.push_back(std::move(figure));
    else
      *earlier = std::move(figure);
  } catch (const Failure&) {
    // A load that failed left a slot without pixels, for example.
  }
}

// What was marked is shown again, although the extraction has used it.
void Recorder::ShowSlice(Session& s) {
  const Kept kept(s.slice);
  Slice& slice = s.slice;
  slice.sliceColumn = TellingColumn(s.slot[slots::spectrum]);
  slice.apertureState = Slice::apertureSet;
  slice.backgroundClicks = 4;
  Show(slots::spectrum, "Slice of " + DataName(s.slot[slots::frame]),
       "column " + std::to_string(slice.sliceColumn) + ", aperture " +
           FromTo(slice.apertureFirstRow, slice.apertureLastRow) + ", background of power " +
           std::to_string(s.background.fittedPower) + " through " +
           FromTo(slice.background1FirstRow, slice.background1LastRow) + " and " +
           FromTo(slice.background2FirstRow, slice.background2LastRow),
       [&] { return DrawColumnPlot(s, {}); });
}

// The spectrum as it was before the normalisation, with the continuum through it.
void Recorder::ShowContinuum(Session& s) {
  Slot& slot = s.slot[slots::spectrum];
  const Kept continuum(s.continuum);
  const Kept spectrum(slot.spectrum);
  slot.spectrum = slot.spectrumWork;
  s.continuum.fitUsed = false;
  Show(slots::spectrum, "Continuum of " + s.crunchFile,
       "power " + std::to_string(s.continuum.fittedPower) + " through " +
           Count(static_cast<int>(s.continuum.fittedClicks.size()), "point"),
       [&] { return PlotContinuum(s, {}); });
}

void Recorder::ShowArc(Session& s, int a) {
  const Kept arc(s.arc[a]);
  const Kept estimate(s.estimatedWavelength);
  const std::string name = DataName(s.slot[a]);
  Show(a, "Arc " + name, Count(s.arc[a].LineCount, "line") + " identified",
       [&] { return PlotArc(s, a, {}); });
  if (s.arc[a].LineCount < 3)
    return;
  ComputeDeviations(s, a);
  const FitInWords words = DescribeFit(s.arc[a]);
  Show(a, "Deviations of " + name,
       words.fit + (words.rms.empty() ? "" : ", " + words.rms + ", " + words.largest),
       [&] { return PlotDeviations(s, a, {}); });
}

}  // namespace halmek::batch
