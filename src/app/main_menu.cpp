// The main menu.
#include "app/main_menu.h"

#include <QAction>
#include <QKeySequence>
#include <QMenu>
#include <QMenuBar>
#include <functional>

#include "platform/installed.h"

namespace halmek {
namespace {

class MenuBuilder {
 public:
  MenuBuilder(QMainWindow& window, const char* name, const char* title)
      : menu_(window.menuBar()->addMenu(title)) {
    menu_->setObjectName(name);
  }

  void Item(const char* name, const QString& text, const std::function<void()>& action,
            const QKeySequence& shortcut = {}) {
    QAction* const item = menu_->addAction(text);
    item->setObjectName(name);
    item->setShortcut(shortcut);
    QObject::connect(item, &QAction::triggered, menu_, [action] { action(); });
  }

  void Separator() { menu_->addSeparator(); }

 private:
  QMenu* menu_;
};

void AddFileMenu(QMainWindow& window, Actions& actions) {
  MenuBuilder file(window, "mFile", "File");
  file.Item("mLoadDAO", "Load DAO Non-standard 2-D File", [&] { actions.LoadDao(); });
  file.Item("mLoadWLtable", "Load Wavelength Table", [&] { actions.LoadTable(); });
  file.Item(
      "mLoad2DFitsFile", "Load 2-D Fits File", [&] { actions.LoadFrame(); }, QKeySequence::Open);
  file.Separator();
  // "Save" may replace the file that was loaded, so that it has no key.
  file.Item("mSave", "Save", [&] { actions.Save(); });
  file.Item(
      "mSaveAs", "Save 2-D File", [&] { actions.SaveAs(); }, QKeySequence::Save);
  file.Item("mSave2D_Text", "Save 2-D Data to Text File", [&] { actions.SaveFrameText(); });
  file.Item("mySave1D", "Save 1-D File", [&] { actions.SaveSpectrumFile(); });
  file.Item("mSave1D_Text", "Save 1-D Data to Text File", [&] { actions.SaveSpectrumText(); });
  file.Separator();
  file.Item(
      "mExit", "Exit", [&] { window.close(); }, QKeySequence::Quit);
}

void AddViewMenu(QMainWindow& window, Actions& actions) {
  MenuBuilder view(window, "mView", "View");
  view.Item("mHeader0", "Header - Part I Object", [&] { actions.ShowHeader(slots::frame); });
  view.Item("mHeader1", "Header - Arc 1", [&] { actions.ShowHeader(slots::arc1); });
  view.Item("mHeader2", "Header - Arc2", [&] { actions.ShowHeader(slots::arc2); });
  view.Item("mHeader4", "Header - Part II Object", [&] { actions.ShowHeader(slots::object); });
}

void AddHelpMenu(QMainWindow& window, Actions& actions) {
  MenuBuilder help(window, "mHelp", "Help");
  const auto show = [&](HelpTopic topic) { return [&actions, topic] { actions.ShowHelp(topic); }; };
  help.Item("mIntro", "Introduction", show(HelpTopic::introduction), QKeySequence::HelpContents);
  help.Item("mHelpMenuFile", "[menu] File Functions", show(HelpTopic::fileMenu));
  help.Item("mPartIHelp", "Part I Help", show(HelpTopic::part1));
  help.Item("mPartIIHelp", "Part II Help", show(HelpTopic::part2));
  help.Separator();
  help.Item("mAbout", "About", [&] { actions.ShowAbout(); });
  if (!ManualPage().isEmpty())
    help.Item("mManual", "Manual", [&] { actions.ShowManual(); });
}

void AddRecipeMenu(QMainWindow& window, Actions& actions) {
  MenuBuilder recipe(window, "mRecipe", "Recipe");
  recipe.Item(
      "mShowRecipe", "Show Recipe", [&] { actions.ShowRecipe(); }, QKeySequence("Ctrl+R"));
  recipe.Item("mSaveRecipe", "Save Recipe As ...", [&] { actions.SaveRecipe(); });
  recipe.Item("mRunRecipe", "Run Recipe ...", [&] { actions.RunRecipe(); });
}

}  // namespace

void AddMainMenu(QMainWindow& window, Actions& actions) {
  AddFileMenu(window, actions);
  AddViewMenu(window, actions);
  AddHelpMenu(window, actions);
  AddRecipeMenu(window, actions);
}

}  // namespace halmek
