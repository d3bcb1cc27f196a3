// Identification of arc lines.
#include "calib/line_list.h"

#include <algorithm>
#include <cmath>

#include "calib/peaks.h"
#include "numeric/number_prefix.h"
#include "plot/number_text.h"

namespace halmek {
namespace {

constexpr double leastWavelength = 3000, largestWavelength = 9000;  // Angstrom
constexpr double notIdentified = 0.001;                             // a wavelength up to this is none

// The pixels beside the clicked peak within which one deletion takes several lines.
struct Nearby {
  static constexpr int pixels = 3;
  int first, last;
  explicit Nearby(const Session& s)
      : first(std::max(1, s.peakPixel - pixels)), last(std::min(lastPixel, s.peakPixel + pixels)) {}
};

// The panel's two number forms: as filled by a click, and as refreshed by a fit.
std::string ClickText(double value) { return FormatFixed(value, 11, 5); }
std::string FitText(double value) { return FormatFixed(value, 9, 3); }
std::string CountText(int value) { return " " + std::to_string(value); }

double Estimate(const Arc& arc, double column) { return arc.linIntercept + arc.linSlope * column; }

// The table's entry nearest to `wavelength`; of equals the first. 0 where none is nearer than 9999 Angstrom.
int NearestEntry(const WavelengthTable& table, double wavelength) {
  double best = 9999;
  int entry = 0;
  for (int i = 1; i <= table.wlCount; ++i) {
    const double distance = std::fabs(table.WLValue(i) - wavelength);
    if (distance < best) {
      best = distance;
      entry = i;
    }
  }
  return entry;
}

void ProposeWavelength(Session& s, int a) {
  LinePanel& panel = s.linePanel;
  const Arc& arc = s.arc[a];
  s.estimatedWavelength = Estimate(arc, arc.PixelCentroid(s.peakPixel));
  panel.estimateText = ClickText(s.estimatedWavelength);
  const int entry = NearestEntry(s.wavelengthTable, s.estimatedWavelength);
  if (entry == 0)
    return;
  const double proposed = s.wavelengthTable.WLValue(entry);
  panel.tableEntry = entry;
  panel.wavelengthText = ClickText(proposed);
  panel.nameText = s.wavelengthTable.WLName(entry);
  panel.deviationText = ClickText(s.estimatedWavelength - proposed);
}

std::string StateText(const Session& s, int a) {
  if (!IsIdentified(s, a))
    return {};
  return "This line is identified as " + FormatFixed(s.arc[a].PixelWavelength(s.peakPixel), 10, 5) + ".";
}

void FillPanel(Session& s, int a, int column) {
  const Arc& arc = s.arc[a];
  s.linePanel = {.arc = a,
                 .column = column,
                 .peakText = CountText(s.peakPixel),
                 .centroidText = ClickText(arc.PixelCentroid(s.peakPixel)),
                 .errorText = ClickText(arc.PixelCentroidError(s.peakPixel)),
                 .estimateText = {},
                 .wavelengthText = {},
                 .nameText = {},
                 .deviationText = {},
                 .rmsText = arc.linRms == 0 ? std::string() : FitText(arc.linRms),
                 .countText = CountText(arc.LineCount),
                 .stateText = StateText(s, a)};
  if (arc.LineCount >= 2)
    ProposeWavelength(s, a);
}

// Refits after the list has changed, where it has two lines.
void Refit(Session& s, int a, double wavelength) {
  Arc& arc = s.arc[a];
  LinePanel& panel = s.linePanel;
  panel.countText = CountText(arc.LineCount);
  panel.stateText = StateText(s, a);
  if (arc.LineCount < 2)
    return;
  if (const auto sumSq = FitDispersionLine(s, a))
    arc.linRms = std::sqrt(*sumSq / (arc.LineCount - 1));
  s.estimatedWavelength = Estimate(arc, s.centroidValue);
  panel.estimateText = FitText(s.estimatedWavelength);
  panel.deviationText = FitText(s.estimatedWavelength - wavelength);
  panel.rmsText = FitText(arc.linRms);
}

// The lines are no longer those of the mask that was applied.
void DropMaskStatus(Session& s, int a) {
  s.arc[a].maskApplied = false;
  s.workflow.arc[a].maskStatus.clear();
}

// The entry of the table that is written as this wavelength is; 0 where there is none.
int EntryWrittenAs(const WavelengthTable& table, double wavelength) {
  const int entry = NearestEntry(table, wavelength);
  return entry != 0 && ClickText(table.WLValue(entry)) == ClickText(wavelength) ? entry : 0;
}

double UpperAxisLimit(const Slot& slot) {
  return NiceUpperBound(RangeOf(slot.spectrum.Range(1, Pixels(slot))).largest);
}

}  // namespace

void RequireArc(const Session& s, int a) {
  const Slot& slot = s.slot[a];
  if (slot.fileName.empty() || Pixels(slot) == 0)
    throw Refusal("Hey, no Arc " + std::to_string(a) + " file has been loaded!");
}

bool IsValidWavelength(double wavelength) {
  return wavelength >= leastWavelength && wavelength <= largestWavelength;
}

void RequireValidWavelength(double wavelength) {
  if (!IsValidWavelength(wavelength))
    throw Refusal("Hey, you need to type a valid wavelength! (It must be between 3000 and 9000 Angstroms.)");
}

bool IsIdentified(const Session& s, int a) {
  return s.arc[a].LineCount >= 1 && s.arc[a].PixelWavelength(s.peakPixel) != 0;
}

int LinesNearPeak(const Session& s, int a) {
  const Nearby near(s);
  const auto wavelengths = s.arc[a].PixelWavelength.Range(near.first, near.last);
  return static_cast<int>(
      std::count_if(wavelengths.begin(), wavelengths.end(), [](double w) { return w > notIdentified; }));
}

void RebuildLineList(Session& s, int a) {
  Arc& arc = s.arc[a];
  int n = 0;
  for (int p = 1; p <= Pixels(s.slot[a]); ++p) {
    if (arc.PixelWavelength(p) <= notIdentified)
      continue;
    ++n;
    s.FitColumn(n) = arc.ArcLineColumn(n) = arc.PixelCentroid(p);
    s.FitWavelength(n) = arc.ArcLineWavelength(n) = arc.PixelWavelength(p);
  }
  arc.LineCount = n;
  LinesHaveChanged(s, a);
}

void LinesHaveChanged(Session& s, int a) {
  s.arc[a].fitIsStale.fill(true);
  ClearFitStatus(s.workflow.arc[a]);
}

std::optional<double> FitDispersionLine(Session& s, int a) {
  Arc& arc = s.arc[a];
  const auto fit =
      FitLinear(arc.ArcLineColumn.Range(1, arc.LineCount), arc.ArcLineWavelength.Range(1, arc.LineCount));
  if (!fit)
    return std::nullopt;
  arc.linIntercept = fit->a0;
  arc.linSlope = fit->a1;
  return fit->sumSq;
}

void ClickLine(Session& s, int a, int column) {
  RequireArc(s, a);
  s.currentSlot = a;
  const Slot& slot = s.slot[a];
  Arc& arc = s.arc[a];
  const Peak peak = FindPeak(slot, column);
  // A maximum on the edge of the window is the flank of a line outside it.
  if (peak.pixel == 0 || peak.pixel == peak.low || peak.pixel == peak.high ||
      peak.value < UpperAxisLimit(slot) / 100)
    throw Refusal(noMaximumMessage);

  if (arc.PixelCentroid(peak.pixel) == 0) {
    const Centroid centroid = CentroidLine(slot, peak.pixel, s.BisectorMidpoint);
    arc.PixelCentroid(peak.pixel) = centroid.column;
    arc.PixelCentroidError(peak.pixel) = centroid.error;
  }
  s.peakPixel = peak.pixel;
  s.centroidValue = arc.PixelCentroid(peak.pixel);
  FillPanel(s, a, column);
}

bool UpdateFit(Session& s, int a, double wavelength) {
  RequireValidWavelength(wavelength);
  Arc& arc = s.arc[a];
  if (IsIdentified(s, a))
    return false;
  if (arc.LineCount >= lastLine)
    throw Refusal("An arc can have " + std::to_string(lastLine) +
                  " identified lines at most.  Please delete one first.");
  arc.PixelWavelength(s.peakPixel) = wavelength;
  RebuildLineList(s, a);
  if (arc.LineCount >= 2 && !HasDistinct(arc.ArcLineColumn.Range(1, arc.LineCount), 2)) {
    arc.PixelWavelength(s.peakPixel) = 0;
    RebuildLineList(s, a);
    throw Refusal("Hey, this line lies at the same column as the other.  Please choose another line.");
  }
  Refit(s, a, wavelength);
  return true;
}

int DeleteEntry(Session& s, int a) {
  Arc& arc = s.arc[a];
  const int deleted = LinesNearPeak(s, a);
  if (deleted == 0)
    return 0;

  // Their centroids go, too, so that they are centroided again when they are clicked.
  const Nearby near(s);
  for (int p = near.first; p <= near.last; ++p)
    if (arc.PixelCentroid(p) > 0.0001)
      arc.PixelCentroid(p) = arc.PixelWavelength(p) = 0;
  RebuildLineList(s, a);
  DropMaskStatus(s, a);
  Refit(s, a, NumericPrefix(s.linePanel.wavelengthText));
  return deleted;
}

void DeleteAllLines(Session& s, int a) {
  Arc& arc = s.arc[a];
  arc.PixelCentroid.Clear();
  arc.PixelCentroidError.Clear();
  arc.PixelWavelength.Clear();
  arc.LineCount = 0;
  arc.linIntercept = arc.linSlope = arc.linRms = 0;
  arc.fitDone = false;
  LinesHaveChanged(s, a);
  DropMaskStatus(s, a);
}

void ShowTableEntry(Session& s, int entry) {
  const WavelengthTable& table = s.wavelengthTable;
  if (table.wlCount == 0)
    return;
  LinePanel& panel = s.linePanel;
  panel.tableEntry = std::clamp(entry, 1, table.wlCount);
  panel.nameText = table.WLName(panel.tableEntry);
  panel.wavelengthText = ClickText(table.WLValue(panel.tableEntry));
  panel.deviationText = ClickText(NumericPrefix(panel.estimateText) - NumericPrefix(panel.wavelengthText));
}

void ShowTypedWavelength(Session& s, std::string_view text) {
  LinePanel& panel = s.linePanel;
  const double wavelength = NumericPrefix(text);
  const int entry = EntryWrittenAs(s.wavelengthTable, wavelength);
  panel.nameText = entry == 0 ? "" : s.wavelengthTable.WLName(entry);
  const bool isComparable = IsValidWavelength(wavelength) && !panel.estimateText.empty();
  panel.deviationText = isComparable ? ClickText(NumericPrefix(panel.estimateText) - wavelength) : "";
}

}  // namespace halmek
