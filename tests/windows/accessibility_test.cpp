// The windows without eyes or mouse: what a screen reader is told, and what the keys reach and do.
#include <gtest/gtest.h>

#include <QAbstractScrollArea>
#include <QAccessible>
#include <QMenuBar>
#include <QRadioButton>
#include <QRegularExpression>
#include <QScreen>
#include <QScrollArea>
#include <set>

#include "app/help_pages.h"
#include "steps/recipe.h"
#include "windows/part2_test.h"

namespace halmek::test {
namespace {

// Not the panels that hold controls, nor the insides of Qt's lists.
bool IsControl(const QWidget& w) {
  const bool isPanel =
      w.metaObject()->className() == std::string_view("QWidget") && w.focusPolicy() == Qt::NoFocus;
  return w.isVisible() && !isPanel && !qobject_cast<const QMenuBar*>(&w) && !w.objectName().startsWith("qt_");
}
bool TakesKeys(const QWidget& w) {
  if (qobject_cast<const QScrollArea*>(&w) && w.focusPolicy() == Qt::NoFocus)
    return false;  // it follows its controls
  const bool isOfArea =
      qobject_cast<const QScrollBar*>(&w) && w.parentWidget()->objectName().startsWith("qt_");
  return IsControl(w) && w.isEnabled() && !isOfArea && !qobject_cast<const QLabel*>(&w) &&
         w.metaObject()->className() != std::string_view("QFrame");
}

class AccessibilityTest : public Part2Test {
 protected:
  // Lines of a lamp, and columns of a star that stand out, so that a click finds the same pixel from nearby.
  void LoadAll() {
    LoadFrame(120, 60, [](int column, int row) { return Star(column, row) + (column % 10 ? 0 : 900); });
    LoadValues("arc1", ArcOf(1000, {100, 200, 300, 400, 500, 600}));
    LoadValues("arc2", ArcOf(1000, {100, 200, 300, 400, 500, 600}));
  }
  void OpenAll() {
    LoadAll();
    OpenRowPlot("20");
    OpenContinuum();
    OpenSlice();
    for (int a : {1, 2}) {
      PlotArc(a);
      IdentifyLines(a, 1, 5);
      Fit(a);
    }
    ClickColumn(1, 600);
    Press("Command11");
    Press(ArcPlot(1), "Command5", "Command4");
    for (const char* item : {"mLoadWLtable", "mSaveAs", "mSave2D_Text", "mSave1D_Text", "mHeader0", "mIntro",
                             "mAbout", "mShowRecipe"})
      Trigger(main.get(), item);
    ASSERT_EQ(platform.messages, Texts{});
  }
  static void Key(int key, Qt::KeyboardModifiers modifiers = {}) {
    ASSERT_NE(QApplication::focusWidget(), nullptr);
    QTest::keyClick(QApplication::focusWidget(), static_cast<Qt::Key>(key), modifiers);
  }
  static void TabTo(QWidget* window, const char* name) {
    Activate(window);
    for (int i = 0; i < 40 && window->focusWidget()->objectName() != name; ++i)
      Key(Qt::Key_Tab);
    ASSERT_EQ(window->focusWidget()->objectName(), name);
  }
  static void KeyPress(QWidget* window, const char* button) {
    TabTo(window, button);
    Key(Qt::Key_Space);
  }
  // Clicks at columns of a plot, with Return or Shift+Return.
  static void KeyClicks(QWidget* window, const std::vector<int>& columns,
                        Qt::KeyboardModifiers modifiers = {}) {
    TabTo(window, "surface");
    for (int column : columns) {
      Key(Qt::Key_Home);
      for (int left = column - SurfaceOf(window).track().first; left > 0; left -= left < 10 ? 1 : 10)
        Key(Qt::Key_Right, left < 10 ? Qt::NoModifier : Qt::ShiftModifier);
      Key(Qt::Key_Return, modifiers);
    }
  }
};

TEST_F(AccessibilityTest, EveryControlHasARoleAndANameOfItsOwn) {
  OpenAll();
  ASSERT_EQ(OpenWindows().size(), 20);
  for (QWidget* window : OpenWindows()) {
    std::set<std::pair<int, QString>> seen;
    for (QWidget* w : window->findChildren<QWidget*>()) {
      if (!IsControl(*w))
        continue;
      QAccessibleInterface* const control = QAccessible::queryAccessibleInterface(w);
      const QString name = control->text(QAccessible::Name);
      const std::string what =
          (window->objectName() + " " + w->objectName() + " '" + name + "'").toStdString();
      EXPECT_NE(name, "") << what;
      EXPECT_TRUE(control->role() != QAccessible::NoRole && control->role() != QAccessible::Client) << what;
      EXPECT_TRUE(seen.emplace(control->role(), name).second) << what;
    }
  }
}

TEST_F(AccessibilityTest, TabAndTheArrowsOfOptionsReachEveryControl) {
  OpenAll();
  for (QWidget* window : OpenWindows()) {
    std::set<QWidget*> left;
    for (QWidget* w : window->findChildren<QWidget*>())
      if (TakesKeys(*w))
        left.insert(w);
    if (left.empty())
      continue;
    Activate(window);
    for (size_t i = 0, most = 2 * left.size(); i < most; ++i) {
      Key(Qt::Key_Tab);
      left.erase(window->focusWidget());
      // One option of a group is reached by Tab, the others from there.
      for (const int arrow : {Qt::Key_Down, Qt::Key_Down, Qt::Key_Right, Qt::Key_Up})
        if (qobject_cast<QRadioButton*>(window->focusWidget())) {
          Key(arrow);
          left.erase(window->focusWidget());
        }
    }
    for (const QWidget* w : left)
      ADD_FAILURE() << window->objectName().toStdString() << ' ' << w->objectName().toStdString();
  }
}

TEST_F(AccessibilityTest, ReadOutsAreReadWithTheirMeaning) {
  LoadAll();
  const auto nameOf = [&](const char* label) {
    return QAccessible::queryAccessibleInterface(Find<QLabel>(main.get(), label))->text(QAccessible::Name);
  };
  EXPECT_EQ(nameOf("Label43"), "Filename: star.fts");
  EXPECT_EQ(nameOf("Label26"), "Status of step 6: none");
  FitSlice();
  Press("Command5");
  EXPECT_EQ(nameOf("Label26"), "Status of step 6: DONE!");
}

TEST_F(AccessibilityTest, AnEveningByKeysAndItsRecipeGiveTheBytesOfOneByMouse) {
  Texts recipes, spectra;
  for (const bool byMouse : {true, false}) {
    session->journal.clear();
    fs::remove(folder.File("star_1D.fts"));
    LoadAll();
    const auto press = [&](QWidget* window, auto... names) {
      ((byMouse ? Press(window, names) : KeyPress(window, names)), ...);
    };
    // Clicks at the numbers of an axis; those of the mouse are so far off the columns.
    const auto click = [&](QWidget* window, const PlotFrame& f, const std::vector<int>& columns, double off,
                           Qt::MouseButton button) {
      if (!byMouse)
        return KeyClicks(window, columns, button == Qt::RightButton ? Qt::ShiftModifier : Qt::NoModifier);
      for (int column : columns)
        PressAt(window, button, ScreenX(f, column + off), (f.plotTop + f.plotBottom) / 2.0);
    };

    Type("Text6", "60");
    press(main.get(), "Command2");
    for (const auto& [box, corner] :
         {std::pair("Text1", "0.6"), {"Text2", "1"}, {"Text3", "120"}, {"Text4", "58"}})
      Type(box, corner);
    press(main.get(), "Command1", "Command4");
    QWidget* const row = Window("frmPlot_Row");
    const PlotFrame& rowFrame = session->rowPlot.rowFrame;
    click(row, rowFrame, {60, 40}, 0, Qt::LeftButton);
    EXPECT_EQ(Range(rowFrame.firstColumn, rowFrame.lastColumn), Range(40, 60));
    click(row, rowFrame, {52, 50}, -0.5, Qt::RightButton);
    if (!byMouse) {
      EXPECT_EQ(std::stoi(LabelText(row, "Label13")), 50);
      EXPECT_NEAR(std::stod(LabelText(row, "Label10")), session->image(session->rowPlot.plotRow, 50), 0.02);
    }
    press(row, "Command4");
    click(row, rowFrame, {55}, -0.5, Qt::RightButton);
    press(row, "Command4", "Command6", "Command7");

    press(main.get(), "Command3");
    QWidget* const slice = Window("frmPlot_Column");
    const PlotFrame& sliceFrame = session->slice.colFrame;
    click(slice, sliceFrame, {34, 26}, -0.5, Qt::LeftButton);
    click(slice, sliceFrame, {15, 5, 45, 55}, -0.75, Qt::RightButton);
    for (int power : {2, 1}) {
      Choose(slice, "Combo1", power);
      press(slice, "Command2");
    }
    press(slice, "Command4");

    press(main.get(), "Command5", "Command6");
    QWidget* const continuum = Window("frmPlot_Continuum");
    if (session->manualFit == 0 && byMouse)
      Press(continuum, "Option1(1)");
    const PlotFrame& f = session->continuum.contFrame;
    click(continuum, f, {62, 70, 80, 85, 90, 100, 110}, 0, Qt::LeftButton);
    click(continuum, f, {85}, 0, Qt::RightButton);
    press(continuum, "Command1", "Command4", "Command4", "Command5", "Command6");
    press(main.get(), "Command9");
    press(Window("frmSave_datafiles"), "Command1");

    press(main.get(), "Command7");
    for (const int column : {100, 300, 600}) {
      click(ArcPlot(1), session->arc[1].plotFrame, {column}, 0, Qt::LeftButton);
      ASSERT_TRUE(IsLineOpen());
      Type(Line(), "Text1", QString::number(5000 + column));
      QTest::keyClick(Find<QLineEdit>(Line(), "Text1"), Qt::Key_Return);
    }
    recipes.push_back(JournalText(*session));
    spectra.push_back(ReadFile(folder.File("star_1D.fts")));
  }
  EXPECT_EQ(recipes[0], recipes[1]);
  EXPECT_TRUE(spectra[0] == spectra[1]);

  // In a copy of the folder, the evening still in mind.
  const TemporaryFolder copy;
  for (const char* file : {"star.fts", "arc1.fts", "arc2.fts"})
    fs::copy(folder.File(file), copy.File(file));
  const std::string steps = std::to_string(session->journal.size());
  platform.fileToSave = folder.File("evening.recipe");
  Trigger(main.get(), "mSaveRecipe");
  EXPECT_EQ(platform.questions.back().name, "star.recipe");
  fs::copy(folder.File("evening.recipe"), copy.File("evening.recipe"));
  platform.fileToOpen = copy.File("evening.recipe");
  Trigger(main.get(), "mRunRecipe");
  EXPECT_EQ(platform.TakeMessages(), Texts{"evening.recipe: " + steps + " steps done."}) << recipes[0];
  EXPECT_TRUE(ReadFile(copy.File("star_1D.fts")) == spectra[0]) << recipes[0];
}

TEST_F(AccessibilityTest, LargerTextIsNotCutOffNorAreWindowsOutOfSight) {
  const QRect screen = main->screen()->availableGeometry();
  for (const double factor : {1.5, 2.0}) {
    const LargerText text(factor);
    Start();
    platform.TakeMessages();
    OpenAll();
    // Groups of controls are laid out in the first round, and among each other in the second.
    QApplication::processEvents();
    QApplication::processEvents();
    for (QWidget* window : OpenWindows()) {
      const std::string what = window->objectName().toStdString() + " " + std::to_string(factor) + " ";
      const QRect seen = window->frameGeometry().intersected(screen);
      EXPECT_EQ(seen.size(), window->frameGeometry().size().boundedTo(screen.size())) << what;
      for (QWidget* w : window->findChildren<QWidget*>()) {
        const auto* const label = qobject_cast<QLabel*>(w);
        const bool isWhole = qobject_cast<QAbstractButton*>(w) ||
                             (label && !label->wordWrap() && !dynamic_cast<ElidedLabel*>(w) &&
                              !dynamic_cast<PlotSurface*>(w->parentWidget()));
        if (isWhole && IsControl(*w)) {
          EXPECT_EQ(w->size().expandedTo(w->sizeHint()), w->size()) << what << w->objectName().toStdString();
        }
      }
    }
  }
}

TEST_F(AccessibilityTest, HelpNamesOnlyButtonsThatExist) {
  OpenAll();
  QStringList captions = {"Print"};  // of the desktop's own dialog
  for (const QWidget* window : QApplication::topLevelWidgets())
    for (const auto* button : window->findChildren<QAbstractButton*>())
      captions += button->text();
  for (const HelpTopic topic :
       {HelpTopic::introduction, HelpTopic::fileMenu, HelpTopic::part1, HelpTopic::part2, HelpTopic::arc1})
    for (const std::string& text : PageAbout(topic).paragraphs) {
      auto quoted = QRegularExpression("'(?:\\[Zoom\\] )?([^']+)'").globalMatch(QString::fromStdString(text));
      while (quoted.hasNext()) {
        const QString caption = quoted.next().captured(1);
        EXPECT_TRUE(captions.contains(caption)) << caption.toStdString();
      }
    }
}

}  // namespace
}  // namespace halmek::test
