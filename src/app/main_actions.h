// What the buttons and menu items of the main window do.
#pragma once

#include <QString>
#include <array>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>

#include "app/about_window.h"
#include "app/help_window.h"
#include "app/recipe_window.h"
#include "calib/arc_window.h"
#include "calib/deviation_window.h"
#include "calib/line_window.h"
#include "dialogs/file_chooser.h"
#include "fits/header_window.h"
#include "platform/desk.h"
#include "reduce/column_slice_window.h"
#include "reduce/continuum_window.h"
#include "reduce/row_plot_window.h"
#include "steps/journal_file.h"

namespace halmek {

// Owns the windows that the main window opens. Each is made when it is first asked for. Refusals are shown as
// messages; texts are those of the text boxes.
class Actions {
 public:
  // Messages appear over `mainWindow`; `showSettings` puts its boxes to the session's parameters.
  Actions(Desk& desk, QWidget* mainWindow, std::function<void()> showSettings)
      : desk_(desk), mainWindow_(mainWindow), showSettings_(std::move(showSettings)) {}

  void LoadFrame();
  void LoadDao();
  void LoadArc(int arc);
  void LoadObject();
  void LoadTable();

  // Loads a frame by its name, as given when the program is started.
  void LoadFrameFrom(const std::string& file);

  // Returns what the box of the start row shows then; nothing where the column was refused.
  std::optional<QString> FixColumn(const QString& column);

  // Columns and rows of the upper left and the lower right corner, in the order of the boxes.
  void Trim(const std::array<QString, 4>& corners);
  void FixTrace(const QString& startRow);
  void PlotSlice();
  void Crunch();
  void Normalize();
  void SaveSpectrum();

  void ChooseArcCount(int count);
  void PlotArc(int arc);
  void Correct();
  void SaveCalibrated();

  void Save();
  void SaveAs();
  void SaveFrameText();
  void SaveSpectrumText();
  void SaveSpectrumFile();
  void ShowHeader(int slot);

  void ShowRecipe();
  void SaveRecipe();
  void RunRecipe();

  // Asks whether the steps of a session that did not end cleanly are to be performed again, and performs
  // them.
  void OfferReplay(const LeftJournal& left);

  void ShowHelp(HelpTopic topic);
  void ShowManual();
  void ShowAbout();

 private:
  Session& session() { return desk_.session(); }
  bool HasFrame();
  // Says how the recipe ended; true if all of it was performed.
  bool Run(const std::string& recipe, const std::string& folder);
  FileChooser& Chooser(const ChooserKind& kind);
  ArcWindow& ArcPlot(int arc);
  void IdentifyLine(QWidget* over, const QRect& free);
  void ShowDeviations(int arc);
  void LoadMask(int arc);
  void SaveMask(int arc);

  Desk& desk_;
  QWidget* mainWindow_;
  std::function<void()> showSettings_;
  std::map<std::string, std::unique_ptr<FileChooser>> choosers_;
  std::unique_ptr<RowPlotWindow> rowPlot_;
  std::unique_ptr<ColumnSliceWindow> columnSlice_;
  std::unique_ptr<ContinuumWindow> continuum_;
  std::array<std::unique_ptr<ArcWindow>, 3> arcPlots_;          // 1 and 2
  std::array<std::unique_ptr<DeviationWindow>, 3> deviations_;  //
  std::unique_ptr<LineWindow> line_;
  std::unique_ptr<RecipeWindow> recipe_;
  std::unique_ptr<HeaderWindow> header_;
  std::unique_ptr<HelpWindow> help_;
  std::unique_ptr<AboutWindow> about_;
};

}  // namespace halmek
