// The steps that read and write files.
#include <algorithm>
#include <filesystem>
#include <optional>

#include "app/output.h"
#include "calib/arc_plot.h"
#include "calib/deviations.h"
#include "calib/line_list.h"
#include "calib/line_mask.h"
#include "calib/wavelength_table.h"
#include "fits/fits_reader.h"
#include "fits/fits_writer.h"
#include "fits/text_export.h"
#include "plot/number_text.h"
#include "plot/svg.h"
#include "plot/wording.h"
#include "reduce/column_slice.h"
#include "reduce/continuum.h"
#include "reduce/row_plot.h"
#include "steps/execute.h"
#include "steps/slot_names.h"

namespace halmek::steps {
namespace {

namespace fs = std::filesystem;

std::string TypeName(int pixelType) {
  switch (pixelType) {
    case 16:
      return "16-bit";
    case 17:
      return "16-bit unsigned";
    case 32:
      return "32-bit integer";
    case -32:
      return "32-bit real";
    default:
      return "64-bit real";
  }
}

std::string Described(const FitsHeader& header, const std::string& size, ValueRange range) {
  // Names may keep blanks from within their quotes.
  const std::string name = header.objectName.substr(0, header.objectName.find_last_not_of(' ') + 1);
  return size + " pixels, " + TypeName(header.pixelType) + ", " + ShortText(range.smallest) + " to " +
         ShortText(range.largest) + (name.empty() ? "" : ", object " + name);
}

// The range of a frame as a load found it starts from bounds that large values never cross.
ValueRange RangeOfFrame(const Session& s) {
  ValueRange range{s.imageMin, s.imageMax};
  if (range.smallest < 99999 && range.largest > -99999)
    return range;
  range = {s.image(1, 1), s.image(1, 1)};
  for (int row = 1; row <= Rows(s); ++row) {
    const auto pixels = s.image.Row(row, 1, Columns(s));
    const auto [least, most] = std::minmax_element(pixels.begin(), pixels.end());
    range = {std::min(range.smallest, *least), std::max(range.largest, *most)};
  }
  return range;
}

Outcome LoadFrame(Session& s, const Load& step) {
  s.daoFrame = step.what == "dao";
  Warnings warnings = LoadFits2D(s, step.file);
  s.currentSlot = slots::frame;
  return {Described(s.slot[slots::frame], std::to_string(Columns(s)) + " x " + std::to_string(Rows(s)),
                    RangeOfFrame(s)),
          std::move(warnings)};
}

Outcome LoadSpectrum(Session& s, const Load& step) {
  const int slot = SlotNamed(step.what);
  if (slot == slots::arc2 && !s.workflow.loadArc2Enabled)
    throw Refusal("Hey, the number of arc files is 1!  Set it to 2 to load Arc 2.");
  Warnings warnings = LoadFits1D(s, slot, step.file);
  s.currentSlot = slot;
  const Slot& loaded = s.slot[slot];
  const auto pixels = loaded.spectrum.Range(1, Pixels(loaded));
  const auto [least, most] = std::minmax_element(pixels.begin(), pixels.end());
  return {Described(loaded, std::to_string(Pixels(loaded)), {*least, *most}), std::move(warnings)};
}

// A file as it is named where `folder` is current.
std::string NameWithin(const std::string& folder, const std::string& file) {
  return fs::path(file).parent_path() == fs::path(folder) ? LeafName(file) : file;
}

void RequireSavable(const Session& s, int slot) {
  if (slot == slots::frame)
    RequireFrame(s);
  RequireLoaded(s, slot);
  if (slot == slots::object && !s.workflow.saveObjectEnabled)
    throw Refusal("Hey, you need to correct the dispersion of the object first!");
}

// For each of the steps that plot.
template <class PlotStep>
Outcome WriteDrawing(Session& s, const PlotStep& step, const Drawing& drawing) {
  return {"wrote " + step.file, WriteOutput(s, {step.file, FileKind::plot, step.replace}, SvgOf(drawing))};
}

}  // namespace

Outcome Execute(Session& s, const Folder& step) {
  const std::string folder = FullName(s, step.directory);
  std::error_code failed;
  if (!fs::is_directory(folder, failed))
    throw RunTimeError(run_time_error::pathNotFound);
  const fs::path real = fs::canonical(folder, failed);
  s.dataFolder = failed ? folder : real.string();
  return {s.dataFolder, {}};
}

Outcome Execute(Session& s, const Load& step) {
  if (step.file.empty())
    throw RunTimeError(run_time_error::badFileName);
  if (step.what == "table") {
    Warnings warnings = LoadWavelengthTable(s, step.file);
    return {Count(s.wavelengthTable.wlCount, "wavelength"), std::move(warnings)};
  }
  if (step.what == "mask") {
    LoadMask(s, step.file);
    return {Count(s.mask.maskCount, "line"), {}};
  }
  return step.what == "frame" || step.what == "dao" ? LoadFrame(s, step) : LoadSpectrum(s, step);
}

Outcome Execute(Session& s, const Save& step) {
  const int slot = SlotNamed(step.what);
  RequireSavable(s, slot);
  s.slot[slot].savePixelType = step.pixelType;
  const std::string file = step.file.empty() ? NameWithin(s.dataFolder, ProposedFile(s, slot)) : step.file;
  Warnings warnings =
      slot == slots::frame ? SaveFits2D(s, file, step.replace) : SaveFits1D(s, slot, file, step.replace);
  s.currentSlot = slot;
  return {"wrote " + file + " as " + TypeName(step.pixelType), std::move(warnings)};
}

Outcome Execute(Session& s, const SaveMask& step) {
  const int a = ArcNamed(step.arc);
  RequireArcInUse(s, a);
  Warnings warnings = halmek::SaveMask(s, a, step.file, step.replace);
  return {"wrote " + step.file + ", " + Count(s.mask.maskCount, "line"), std::move(warnings)};
}

Outcome Execute(Session& s, const Export& step) {
  const int slot = SlotNamed(step.what);
  if (slot == slots::frame)
    RequireFrame(s);
  RequireLoaded(s, slot);
  Warnings warnings = slot == slots::frame ? SaveFrameText(s, step.file, step.replace)
                                           : SaveSpectrumText(s, slot, step.file, step.replace);
  s.currentSlot = slot;
  return {"wrote " + step.file, std::move(warnings)};
}

Outcome Execute(Session& s, const Header& step) {
  const int slot = SlotNamed(step.what);
  if (s.slot[slot].fileName.empty())
    throw Refusal("Hey, no file has been loaded.");
  s.currentSlot = slot;
  std::string cards;
  for (int k = 1; k <= s.slot[slot].cardCount; ++k)
    cards += "\n" + s.slot[slot].card(k);
  return {std::to_string(s.slot[slot].cardCount) + " cards" + cards, {}};
}

Outcome Execute(Session& s, const PlotRow& step) {
  RequireFrame(s);
  if (step.row < 1)
    RequireWithin("Row", step.row, Rows(s));
  OpenRowPlot(s, step.row);
  const auto drawing = DrawRowPlot(s, {s.plotRow.width, s.plotRow.height});
  if (!drawing)
    throw Refusal(Columns(s) <= 1 ? "A frame of one column has no rows to plot."
                                  : RowNotShownMessage(step.row));
  return WriteDrawing(s, step, *drawing);
}

Outcome Execute(Session& s, const PlotColumn& step) {
  RequireFrame(s);
  RequireWithin("Column", step.column, Columns(s));
  s.slice.sliceColumn = step.column;
  return WriteDrawing(s, step, DrawColumnPlot(s, {s.plotColumn.width, s.plotColumn.height}));
}

Outcome Execute(Session& s, const Plot& step) {
  const auto size = [](const SizedPlacement& p) { return WindowSize{p.width, p.height}; };
  if (step.what == "continuum") {
    RequireLoaded(s, slots::spectrum);
    return WriteDrawing(s, step, PlotContinuum(s, size(s.plotContinuum)));
  }
  const int a = step.what.back() - '0';
  RequireArcInUse(s, a);
  if (step.what.starts_with("arc"))
    return WriteDrawing(s, step, PlotArc(s, a, size(s.plot1D[a])));
  OpenDeviations(s, a);
  return WriteDrawing(s, step, PlotDeviations(s, a, size(s.plotWLDiff[a])));
}

}  // namespace halmek::steps
