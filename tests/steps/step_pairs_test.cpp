// What one step leaves behind shows in nothing that the next one defines.
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <variant>

#include "reduce/background.h"
#include "steps/recipe.h"
#include "steps/slot_names.h"
#include "support/small_night.h"
#include "support/test_session.h"

namespace halmek::test {
namespace {

void Append(std::string& bytes, const auto& value) {
  using Value = std::remove_cvref_t<decltype(value)>;
  if constexpr (std::is_arithmetic_v<Value>)
    bytes.append(reinterpret_cast<const char*>(&value), sizeof value);
  else if constexpr (std::is_same_v<Value, Polynomial>)
    Append(bytes, value.a);
  else
    for (const auto& each : value)
      Append(bytes, each);
}

std::string Bytes(const auto&... values) {
  std::string bytes;
  ((Append(bytes, values), bytes += '\n'), ...);
  return bytes;
}

// What a session holds, by piece; "a.b" is a part of "a".
using State = std::map<std::string, std::string>;

void AddSlot(State& state, const Session& s, int number) {
  const Slot& slot = s.slot[number];
  const std::string name(NameOfSlot(number));
  const int n = Pixels(slot), rows = number == slots::frame ? Rows(s) : 0;
  state[name + ".pixels"] = Bytes(n, rows, slot.spectrum.Range(1, n));
  for (int row = 1; row <= rows; ++row)
    state[name + ".pixels"] += Bytes(s.image.Row(row, 1, n));
  state[name + ".file"] = Bytes(slot.card.Range(1, slot.cardCount), slot.objectName, slot.loadedFile,
                                slot.fileName, slot.savedFile);
  state["before." + name] = Bytes(slot.spectrumWork.Range(1, 40));
  state["type." + name] = Bytes(slot.savePixelType);
}

void AddArc(State& state, const Session& s, int a) {
  const Arc& arc = s.arc[a];
  const Workflow::ArcStatus& status = s.workflow.arc[a];
  const std::string name(NameOfSlot(a));
  const int n = Pixels(s.slot[a]), lines = arc.LineCount;
  state[name + ".lines"] = Bytes(arc.ArcLineColumn.Range(1, lines), arc.ArcLineWavelength.Range(1, lines),
                                 arc.linRms, arc.PixelWavelength.Range(1, n), arc.PixelCentroid.Range(1, n));
  state[name + ".fitted"] = Bytes(arc.fitDone, arc.fitIsStale, status.fitStatus, status.deviationStatus);
  state[name + ".masked"] = Bytes(arc.maskApplied, status.maskStatus);
  state[name + ".unsaved"] = Bytes(s.unsaved.arc[a]);
  state["line." + name] = Bytes(arc.linIntercept, arc.linSlope);
  state["fits." + name] = Bytes(arc.Deviation.Range(1, 3), arc.DeviationCoef);
  state["power." + name] = Bytes(arc.fitPower, arc.stepPower);
}

State StateOf(const Session& s) {
  const Workflow& w = s.workflow;
  const RowPlot& row = s.rowPlot;
  const Slice& slice = s.slice;
  const Background& b = s.background;
  const Continuum& c = s.continuum;
  State state{
      {"frame.state", Bytes(s.imageMin, s.imageMax, s.frameTrimmed, w.trimEnabled)},
      {"frame.fixed", Bytes(w.fixColumnEnabled)},
      {"unsaved.frame", Bytes(s.unsaved.frame)},
      {"unsaved.extracted", Bytes(s.unsaved.frameIsExtracted)},
      {"row", Bytes(row.plotRow, row.rowScroll.value)},
      {"row-scale", Bytes(row.rowFrame.ySpan)},
      {"zapped", Bytes(row.zapNeighbours, row.undoFirst, row.undoLast, row.zapBackup.Range(1, 40))},
      {"marks.zap", Bytes(row.undoRow)},
      {"marks.selection", Bytes(row.zapSelected, row.zapFirst, row.zapLast)},
      {"marks.zoom", Bytes(row.zoomAwaitingFirst)},
      {"marks.aperture", Bytes(slice.apertureFirstRow, slice.apertureLastRow, slice.stepFirstRow)},
      {"marks.clicks", Bytes(slice.apertureState, slice.backgroundClicks)},
      {"marks.background", Bytes(b.backgroundFitted, w.crunchEnabled, w.sliceStatus)},
      {"marks.crunched", w.crunchStatus},
      {"marks.normalized", w.continuumStatus},
      {"ranges", Bytes(slice.background1FirstRow, slice.background2LastRow, b.backgroundPower)},
      {"background", Bytes(b.BackgroundRows.Range(1, b.BackgroundCount), b.fittedPower)},
      {"spectrum.source", Bytes(s.baseName, s.crunchFile, s.crunchHeader.cardCount)},
      {"spectrum.unsaved", Bytes(s.unsaved.spectrum)},
      {"continuum", Bytes(c.normalized, c.continuumFitDone, c.continuumPointCount)},
      {"fit", Bytes(c.fittedPower, c.fittedByHand, c.fittedClicks, c.continuumFitMax, c.fitUsed)},
      {"choices", Bytes(s.manualFit, c.continuumPower, c.continuumInterval, slice.fixedScale, s.daoFrame)},
      {"slot", Bytes(s.currentSlot)},
      {"folder", s.dataFolder},
      {"arcs", Bytes(s.arcCount, w.loadArc2Enabled)},
      {"mask", Bytes(s.mask.maskFileName, s.mask.MaskColumn.Range(1, s.mask.maskCount))},
      {"panel", Bytes(s.linePanel.column, s.linePanel.stateText, s.linePanel.countText, s.peakPixel)},
      {"scale", Bytes(s.dispStart, s.dispStep)},
      {"object.corrected", Bytes(w.correctEnabled, w.saveObjectEnabled, w.correctionStatus)},
      {"object.unsaved", Bytes(s.unsaved.object)},
  };
  for (int column = 1; column <= 40; ++column)
    state["background"] += Bytes(BackgroundAt(b, column, 1), BackgroundAt(b, column, 7));
  for (int number = slots::frame; number <= slots::object; ++number)
    AddSlot(state, s, number);
  for (int a : {slots::arc1, slots::arc2})
    AddArc(state, s, a);
  return state;
}

// A step, the last of its lines; the pieces that it sets whatever was before, those that it makes of others,
// and these. All but the first two it leaves alone.
struct Effect {
  const char *recipe, *sets = "", *makes = "", *from = "";
};

constexpr Effect effects[] = {
    {"# nothing"},
    {"folder sub", "folder", "", "folder"},
    {"load frame frame.fts", "frame marks unsaved slot", "", "folder"},
    {"load dao frame.fts", "frame marks unsaved slot", "", "folder"},
    {"load arc1 arc2.fts", "arc1 slot", "", "folder"},
    {"load arc2 arc1.fts", "arc2 slot", "", "folder arcs"},
    {"load object arc2.fts", "object slot", "", "folder"},
    {"load mask a.mask", "mask", "arc1.masked arc2.masked", "folder slot arc1.masked arc2.masked"},
    {"fix-column 20", "frame.fixed unsaved", "frame.pixels", "frame"},
    {"trim 2 2 39 11", "marks unsaved", "frame", "frame"},
    {"zap 5 8 9 2", "marks.zap marks.selection unsaved", "row frame.pixels zapped", "frame.pixels row"},
    {"undo-zap", "marks.zap marks.selection unsaved", "row frame.pixels", "frame.pixels marks.zap zapped"},
    {"aperture 5 9", "marks.aperture", "marks.clicks", "frame.pixels marks.clicks"},
    {"background 1 3 10 12 0", "marks.clicks marks.background ranges", "background", "frame.pixels"},
    {"crunch", "continuum spectrum.unsaved unsaved.extracted marks.crunched", "spectrum",
     "frame background marks.aperture marks.background"},
    {"normalize auto 8 2", "continuum marks.normalized spectrum.unsaved",
     "spectrum.pixels before.spectrum fit", "spectrum.pixels"},
    {"normalize points 3 4 12 20 -30 38", "continuum marks.normalized spectrum.unsaved",
     "spectrum.pixels before.spectrum fit", "spectrum.pixels"},
    {"normalize again", "continuum spectrum.unsaved", "spectrum.pixels before.spectrum",
     "spectrum fit continuum"},
    {"revert", "continuum spectrum.unsaved", "spectrum.pixels", "before.spectrum continuum"},
    {"arcs 1", "arcs"},
    {"delete-line arc1 33\nidentify arc1 33 5033.2", "slot", "arc1 line panel", "arc1 line"},
    {"delete-lines arc1", "arc1.lines arc1.fitted arc1.unsaved line.arc1", "arc1.masked", "arc1.masked"},
    {"apply-mask arc1", "slot arc1.masked arc1.unsaved", "arc1 line panel", "arc1 mask"},
    {"fit-deviations arc1 2", "power.arc1", "arc1.fitted fits", "arc1 line fits"},
    {"use-power arc1 3", "power.arc1"},
    {"load object arc1.fts\ncorrect", "slot object.unsaved", "object before.object scale",
     "folder arc1 arc2 arcs line fits power"},
    {"save mask arc1 m.mask", "slot arc1.unsaved", "mask", "folder arc1"},
    {"save frame f.fts 17", "slot type.frame unsaved.frame", "frame.file", "folder frame"},
    {"save spectrum s.fts 32", "slot type.spectrum spectrum.unsaved", "spectrum.file unsaved.frame",
     "folder spectrum unsaved"},
    {"export spectrum x.txt", "slot", "", "spectrum"},
    {"header arc1", "slot"},
    {"plot row 4 r.svg", "row marks.zoom marks.selection", "row-scale", "frame.pixels"},
    {"plot column 7 c.svg"},
    {"plot deviations1 d.svg", "slot", "arc1.fitted fits", "arc1 line"},
};

// Whether one of the words is the piece, or what it is a part of.
bool IsIn(const std::string& words, const std::string& piece) {
  const std::string list = " " + words + " ", whole = piece.substr(0, piece.find('.'));
  return list.find(" " + piece + " ") != std::string::npos ||
         list.find(" " + whole + " ") != std::string::npos;
}

// Where and why the recipe stops; empty where it does not.
std::string StopOf(Session& s, const char* recipe) {
  try {
    RunRecipe(s, ParseRecipe(recipe, {}), [](const RecipeLine&, const Outcome&) {});
    return {};
  } catch (const RecipeStopped& stopped) {
    return std::to_string(stopped.line()) + ": " + stopped.what();
  }
}

// A session in which every step is possible, with marks and a choice that no step has used.
std::unique_ptr<Session> Prepared(const std::string& folder) {
  auto s = SessionIn(folder);
  EXPECT_EQ(
      StopOf(
          *s,
          "load frame frame.fts\nzap 6 20 22\naperture 4 8\nbackground 1 2 11 12 1\ncrunch\n"
          "normalize auto 5 2\nload table lines.txt\nload mask a.mask\nload arc1 arc1.fts\napply-mask arc1\n"
          "fit-deviations arc1 2\nload arc2 arc2.fts\napply-mask arc2\nfit-deviations arc2 2\n"
          "load object arc1.fts\ncorrect\n"),
      "");
  s->manualFit = 1;
  s->rowPlot.zapSelected = true;
  s->rowPlot.zapFirst = s->rowPlot.zapLast = 30;
  s->rowPlot.zoomAwaitingFirst = false;
  return s;
}

// The pieces that are not what they must be after the step.
std::string Wrong(const Effect& step, bool hasSameInput, const State& before, const State& alone,
                  const State& after) {
  std::string wrong;
  for (const auto& [piece, bytes] : after) {
    const bool isSet = IsIn(step.sets, piece), isMade = !isSet && IsIn(step.makes, piece);
    const State& expected = isSet || isMade ? alone : before;
    if ((!isMade || hasSameInput) && bytes != expected.at(piece))
      wrong += piece + " ";
  }
  return wrong;
}

TEST(StepPairs, AStepLeavesInWhatItDefinesWhatItAloneWouldLeave) {
  const TemporaryFolder folder;
  WriteTinyNight(folder.path());
  std::filesystem::create_directory(folder.File("sub"));
  // What a step sets it sets on files just loaded, too: where no step but itself would ever change it.
  const char* const justLoaded = "load frame frame.fts\nload arc1 arc1.fts\nload mask a.mask";
  const auto after = [&](const char* recipe) {
    auto s = recipe == justLoaded ? SessionIn(folder.path()) : Prepared(folder.path());
    EXPECT_EQ(StopOf(*s, recipe), "");
    return s;
  };
  std::map<const char*, State> alone{{justLoaded, StateOf(*after(justLoaded))}};
  for (const Effect& step : effects)
    alone[step.recipe] = StateOf(*after(step.recipe));
  for (const auto& [first, before] : alone)
    for (const Effect& step : effects) {
      SCOPED_TRACE(std::string(first) + ", then " + step.recipe);
      const bool hasSameInput =
          std::ranges::all_of(alone[effects[0].recipe], [&step, &was = before](const auto& piece) {
            return !IsIn(step.from, piece.first) || was.at(piece.first) == piece.second;
          });
      const auto s = after(first);
      if (const std::string stop = StopOf(*s, step.recipe); stop.empty())
        EXPECT_EQ(Wrong(step, hasSameInput, before, alone[step.recipe], StateOf(*s)), "");
      else
        EXPECT_FALSE(hasSameInput) << stop;
    }
}

TEST(StepPairs, HoldEveryStep) {
  std::set<size_t> held;
  for (const Effect& effect : effects)
    for (const RecipeLine& line : ParseRecipe(effect.recipe, {}))
      held.insert(line.step.index());
  EXPECT_EQ(held.size(), std::variant_size_v<Step>);
}

TEST(StepPairs, AStepThatIsRefusedLeavesEverything) {
  const TemporaryFolder folder;
  WriteTinyNight(folder.path());
  WriteFile(folder.File("halfway.dat"), ReadFile(folder.File("a.mask")) + "junk\r\n");
  WriteFile(folder.File("precious.txt"), "precious");
  const auto s = Prepared(folder.path());
  const State before = StateOf(*s);
  const char* const refused =
      "load mask halfway.dat\nload mask frame.fts\nload table precious.txt\nload arc1 frame.fts\n"
      "load arc1 none.fts\nload frame a.mask\nload object none.fts\nfolder none\ncorrect\nfix-column 3\n"
      "export object precious.txt\nsave spectrum frame.fts\nsave frame x/y.fts\naperture 0 5\n"
      "background 1 2 11 12 7\nbackground 1 1 2 2 2\nbackground 1 2 11 13 1\nzap 5 1 40 3\nzap 5 0 2\n"
      "normalize auto 0 2\nnormalize points 5 10 20\nfit-deviations arc1 4\nidentify arc1 15 5000\n"
      "identify arc1 9 5009.3\n";
  for (const RecipeLine& line : ParseRecipe(refused, {})) {
    EXPECT_NE(RefusalOf([&] { Perform(*s, line.step); }), "") << line.number;
    const State after = StateOf(*s);
    // A click on a line and a type chosen stay.
    EXPECT_EQ(Wrong({"", "slot panel type"}, true, before, after, after), "") << line.number;
  }
  EXPECT_EQ(ReadFile(folder.File("precious.txt")), "precious");
}

}  // namespace
}  // namespace halmek::test
