// The actions of the main window.
#include "app/main_actions.h"

#include <QDesktopServices>
#include <QUrl>
#include <filesystem>

#include "calib/arc_plot.h"
#include "dialogs/chooser_kinds.h"
#include "files/whole_number.h"
#include "platform/installed.h"
#include "platform/text.h"
#include "plot/wording.h"
#include "reduce/bad_column.h"
#include "reduce/column_slice.h"
#include "reduce/row_plot.h"
#include "steps/clicks.h"
#include "steps/recipe.h"
#include "steps/slot_names.h"
#include "steps/unsaved_work.h"

namespace halmek {
namespace {

namespace fs = std::filesystem;

constexpr const char* noFrameMessage = "Hey, no 2-D file has been loaded!";
constexpr const char* recipePattern = "*.recipe";

// A window, made where it is not there yet.
template <class Window, class... Arguments>
Window& Made(std::unique_ptr<Window>& window, Desk& desk, Arguments... arguments) {
  if (!window)
    window = std::make_unique<Window>(desk, arguments...);
  return *window;
}

// What is said where a slot that a menu item needs holds nothing; empty where nothing is said.
std::string NothingLoaded(int slot) {
  switch (slot) {
    case slots::frame:
      return "Hey, no Object (2-D) file has been loaded!";
    case slots::arc1:
      return "Hey, no Arc 1 file has been loaded!";
    case slots::arc2:
      return "Hey, no Arc 2 file has been loaded!";
    default:
      return {};
  }
}

}  // namespace

FileChooser& Actions::Chooser(const ChooserKind& kind) {
  std::unique_ptr<FileChooser>& chooser = choosers_[kind.name];
  if (!chooser)
    chooser = std::make_unique<FileChooser>(desk_, kind);
  return *chooser;
}

void Actions::LoadFrame() {
  session().currentSlot = slots::frame;
  session().daoFrame = false;
  Chooser(choosers::loadData)
      .Open({.what = "frame", .title = "Load 2-D Fits File", .pattern = 2, .name = {}});
}

void Actions::LoadDao() {
  session().currentSlot = slots::frame;
  session().daoFrame = true;
  Chooser(choosers::loadData)
      .Open({.what = "dao", .title = "Load DAO Non-standard 2-D Fits File", .pattern = 3, .name = {}});
}

void Actions::LoadArc(int arc) {
  session().currentSlot = arc;
  Chooser(choosers::loadData)
      .Open({.what = std::string(NameOfSlot(arc)), .title = "Load 1-D Fits File", .pattern = 0, .name = {}});
}

void Actions::LoadObject() {
  session().currentSlot = slots::object;
  Chooser(choosers::loadData)
      .Open({.what = "object", .title = "Load Program 1-D Fits File", .pattern = 0, .name = {}});
}

void Actions::LoadTable() {
  Chooser(choosers::loadTable).Open({.what = "table", .title = {}, .pattern = 0, .name = {}});
}

void Actions::LoadFrameFrom(const std::string& file) {
  const fs::path path(FullName(session(), file));
  desk_.Do(mainWindow_, StepsIn(session(), path.parent_path().lexically_normal().string(),
                                steps::Load{"frame", path.filename().string()}));
}

std::optional<QString> Actions::FixColumn(const QString& column) {
  int number = 0;
  if (!desk_.Try(mainWindow_, [&] { number = WholeNumber(Typed(column)); }) ||
      !desk_.Do(mainWindow_, steps::FixColumn{number}))
    return std::nullopt;
  return QString::number(ProposedStartRow(session()));
}

void Actions::Trim(const std::array<QString, 4>& corners) {
  if (session().frameTrimmed)
    return;
  std::array<int, 4> numbers{};
  if (desk_.Try(mainWindow_, [&] {
        for (size_t i = 0; i < numbers.size(); ++i)
          numbers[i] = WholeNumber(Typed(corners[i]));
      }))
    desk_.Do(mainWindow_, steps::Trim{numbers[0], numbers[1], numbers[2], numbers[3]});
}

void Actions::FixTrace(const QString& startRow) {
  Session& s = session();
  if (!desk_.Try(mainWindow_, [&] {
        s.startRow = WholeNumber(Typed(startRow));
        OpenRowPlot(s, s.startRow);
      }))
    return;
  if (Made(rowPlot_, desk_).Open())
    return;
  desk_.Tell(mainWindow_, Columns(s) <= 1 ? "A frame of one column has no rows to plot."
                                          : RowNotShownMessage(std::max<int>(1, s.startRow)));
}

void Actions::PlotSlice() {
  OpenColumnPlot(session());
  Made(columnSlice_, desk_).Open();
}

void Actions::Crunch() { desk_.Do(mainWindow_, CrunchSteps(session())); }

void Actions::Normalize() { Made(continuum_, desk_).Open(); }

void Actions::SaveSpectrum() {
  session().currentSlot = slots::spectrum;
  Chooser(choosers::saveData)
      .Open({.what = "spectrum",
             .title = "Save 1-D Fits File",
             .pattern = 0,
             .name = ProposedFile(session(), slots::spectrum)});
}

void Actions::ChooseArcCount(int count) { desk_.Do(mainWindow_, steps::Arcs{count}); }

void Actions::PlotArc(int arc) {
  if (desk_.Try(mainWindow_, [&] { OpenArcPlot(session(), arc); }))
    ArcPlot(arc).Open();
}

ArcWindow& Actions::ArcPlot(int arc) {
  return Made(
      arcPlots_[arc], desk_, arc,
      ArcCompanions{.identifyLine = [this](QWidget* over, const QRect& free) { IdentifyLine(over, free); },
                    .showDeviations = [this, arc] { ShowDeviations(arc); },
                    .loadMask = [this, arc] { LoadMask(arc); },
                    .saveMask = [this, arc] { SaveMask(arc); },
                    .showHelp = [this, arc] { ShowHelp(arc == 1 ? HelpTopic::arc1 : HelpTopic::arc2); }});
}

void Actions::IdentifyLine(QWidget* over, const QRect& free) { Made(line_, desk_).Open(over, free); }

void Actions::ShowDeviations(int arc) { Made(deviations_[arc], desk_, arc).Open(); }

void Actions::LoadMask(int arc) {
  session().currentSlot = arc;
  Chooser(choosers::loadMask)
      .Open(
          {.what = "mask", .title = {}, .pattern = 1, .name = {}, .slot = arc, .over = arcPlots_[arc].get()});
}

void Actions::SaveMask(int arc) {
  session().currentSlot = arc;
  Chooser(choosers::saveMask)
      .Open({.what = std::string(NameOfSlot(arc)),
             .title = {},
             .pattern = 0,
             .name = BaseName(DataName(session().slot[arc])) + "_mask.dat",
             .over = arcPlots_[arc].get()});
}

void Actions::Correct() { desk_.Do(mainWindow_, CorrectSteps(session())); }

void Actions::SaveCalibrated() {
  session().currentSlot = slots::object;
  Chooser(choosers::saveData)
      .Open({.what = "object",
             .title = "Save Calibrated 1-D Program File",
             .pattern = 0,
             .name = ProposedFile(session(), slots::object)});
}

bool Actions::HasFrame() {
  if (!session().slot[slots::frame].fileName.empty())
    return true;
  desk_.Tell(mainWindow_, noFrameMessage);
  return false;
}

void Actions::Save() {
  if (!HasFrame())
    return;
  const fs::path file(ProposedFile(session(), slots::frame));
  desk_.Do(mainWindow_, StepsIn(session(), file.parent_path().string(),
                                steps::Save{"frame", file.filename().string(), -32}));
}

void Actions::SaveAs() {
  if (!HasFrame())
    return;
  session().currentSlot = slots::frame;
  Chooser(choosers::saveData)
      .Open({.what = "frame",
             .title = "Save 2-D Program File",
             .pattern = 0,
             .name = ProposedFile(session(), slots::frame)});
}

void Actions::SaveFrameText() {
  if (HasFrame())
    Chooser(choosers::saveFrameText)
        .Open({.what = "frame",
               .title = {},
               .pattern = 0,
               .name = BaseName(DataName(session().slot[slots::frame])) + "_2D.txt"});
}

void Actions::SaveSpectrumText() {
  const int slot = session().currentSlot;
  if (!session().slot[slot].fileName.empty())
    Chooser(choosers::saveSpectrumText)
        .Open({.what = {}, .title = {}, .pattern = 0, .name = SpectrumTextName(session(), slot)});
  else if (const std::string message = NothingLoaded(slot); !message.empty())
    desk_.Tell(mainWindow_, message);
}

void Actions::SaveSpectrumFile() {
  const int slot = session().currentSlot;
  if (!session().slot[slot].fileName.empty())
    desk_.Tell(mainWindow_, "Sorry; this feature has not been implemented yet.");
  else if (const std::string message = NothingLoaded(slot); !message.empty())
    desk_.Tell(mainWindow_, message);
}

void Actions::ShowHeader(int slot) {
  session().currentSlot = slot;
  if (session().slot[slot].fileName.empty())
    return desk_.Tell(mainWindow_, "Hey, no file has been loaded.");
  Made(header_, desk_).Open();
}

void Actions::ShowRecipe() { Made(recipe_, desk_).Open(); }

void Actions::SaveRecipe() {
  const std::string frame = DataName(session().slot[slots::frame]);
  const auto output =
      desk_.FileToSave(mainWindow_,
                       {.title = "Save Recipe As",
                        .folder = session().dataFolder,
                        .name = (frame.empty() ? std::string("halmek") : BaseName(frame)) + ".recipe",
                        .patterns = {recipePattern}},
                       [](const std::string&) { return FileKind::recipe; });
  if (output)
    desk_.TryWith(output->file, mainWindow_,
                  [&] { WriteOutput(session(), *output, SavedRecipe(session(), output->file)); });
}

void Actions::RunRecipe() {
  const auto file = desk_.platform().FileToOpen(
      mainWindow_,
      {.title = "Run Recipe", .folder = session().dataFolder, .name = {}, .patterns = {recipePattern}});
  if (file && desk_.MayLose(mainWindow_, UnsavedWork(session()), "Run the Recipe"))
    Run(*file, fs::path(*file).parent_path().string());
}

bool Actions::Run(const std::string& recipe, const std::string& folder) {
  RecipeReport report;
  {
    const BusyPointer busy(desk_);
    report = RunRecipeFile(session(), recipe, folder);
  }
  desk_.RefreshViews();
  showSettings_();
  desk_.Tell(mainWindow_, report.text, report.warnings);
  return report.isDone;
}

void Actions::OfferReplay(const LeftJournal& left) {
  constexpr size_t replay = 0, discard = 1;
  const size_t answer =
      desk_.platform().Ask(mainWindow_, {"An earlier session was ended in the midst of its work.  Do its " +
                                             Count(left.steps, "step") + " again?",
                                         "they are kept in " + left.path + "; the last is: " + left.lastStep,
                                         {"Do Them Again", "Discard Them", "Not Now"}});
  // What stopped on its way stays to be looked at, under a name that is not offered again.
  std::error_code ignored;
  if (answer == discard || (answer == replay && Run(left.path, {})))
    fs::remove(left.path, ignored);
  else if (answer == replay)
    fs::rename(left.path, fs::path(left.path).replace_extension(".stopped"), ignored);
}

void Actions::ShowHelp(HelpTopic topic) { Made(help_, desk_).Open(topic); }

void Actions::ShowManual() {
  const QString page = ManualPage();
  if (!QDesktopServices::openUrl(QUrl::fromLocalFile(page)))
    desk_.Tell(mainWindow_,
               "Sorry, no program that shows web pages was found.  The manual is " + Typed(page) + ".");
}

void Actions::ShowAbout() { Made(about_, desk_).Open(); }

}  // namespace halmek
