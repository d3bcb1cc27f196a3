// An observer at 3 a.m.: every button of every window, in every order.
#include <QAction>
#include <QComboBox>
#include <QLineEdit>
#include <QListWidget>
#include <QMainWindow>
#include <QPushButton>
#include <QRadioButton>
#include <QScrollBar>
#include <QWheelEvent>
#include <random>

#include "app/main_window.h"
#include "fits/fits_writer.h"
#include "platform/twips.h"
#include "window_test.h"

namespace halmek::test {
namespace {

class RandomWalk : public WindowTest {
 protected:
  RandomWalk() {
    WriteFrame("plain.fts", 60, 30,
               [](int c, int r) { return 200 + 900.0 / (1 + (r - 15) * (r - 15)) + c % 7; });
    WriteFrame("large.fts", 300, 80, [](int c, int r) { return 150 + (c * 31 + r * 17) % 400; });
    WriteFrame("dot.fts", 1, 1, [](int, int) { return 300; });
    WriteFrame("row.fts", 50, 1, [](int c, int) { return 300 + c; });
    WriteFrame("column.fts", 1, 50, [](int, int r) { return 300 + r; });
    WriteFrame("zero.fts", 20, 20, [](int, int) { return 0; });
    WriteFrame("constant.fts", 20, 20, [](int, int) { return 500; });
    WriteFrame("wild.fts", 40, 20, [](int c, int r) { return (c % 3 - 1) * 1e37 * r; });
    WriteFile(folder.File("junk.fts"), "SIMPLE  = T");
    WriteFile(folder.File("walk.recipe"),
              "load frame plain.fts\naperture 10 20\nbackground 2 6 24 28 1\ncrunch\nzap 900 1 2\n");
    platform.fileToOpen = folder.File("walk.recipe");
    platform.fileToSave = folder.File("saved.recipe");
    session->settingsPath = folder.File("Halmek8.ini");
    main.Open();
  }

  void WriteFrame(const std::string& name, int columns, int rows,
                  const std::function<double(int, int)>& value) {
    const auto s = SessionIn(folder.path());
    SetFrame(*s, columns, rows, value);
    s->slot[slots::frame].savePixelType = -32;
    SaveFits2D(*s, name);
  }

  int Any(int n) { return std::uniform_int_distribution<int>(0, n - 1)(random); }

  template <class T>
  T* AnyOf(const QList<T*>& all) {
    return all.isEmpty() ? nullptr : all[Any(static_cast<int>(all.size()))];
  }

  template <class T>
  T* AnyShown(QWidget* window) {
    QList<T*> shown;
    for (T* control : window->findChildren<T*>())
      if (control->isVisible() && control->isEnabled())
        shown.push_back(control);
    return AnyOf(shown);
  }

  QWidget* AnyWindow() {
    QList<QWidget*> windows;
    for (QWidget* window : QApplication::topLevelWidgets())
      if (window->isVisible() && window->objectName().startsWith("frm"))
        windows.push_back(window);
    if (windows.isEmpty()) {
      main.Open();
      return &main;
    }
    return AnyOf(windows);
  }

  void PressButton(QWidget* window) {
    if (auto* const button = AnyShown<QPushButton>(window))
      button->click();
  }

  void PressRadio(QWidget* window) {
    if (auto* const radio = AnyShown<QRadioButton>(window))
      radio->click();
  }

  void ChooseFromCombo(QWidget* window) {
    QComboBox* const combo = AnyShown<QComboBox>(window);
    // Drives lead out of the folder.
    if (combo == nullptr || combo->count() == 0 || combo->objectName() == "Drive1")
      return;
    combo->setCurrentIndex(Any(combo->count()));
    Q_EMIT combo->activated(combo->currentIndex());
  }

  void ChooseFile(QWidget* window) {
    auto* const files = window->findChild<QListWidget*>("File1");
    if (files != nullptr && files->count() > 0)
      files->setCurrentRow(Any(files->count()));
  }

  void Type(QWidget* window) {
    static const QStringList texts{"0",     "",    "3",         "12.5", "-4", "60", "99999",
                                   "1e400", "abc", "plain.fts", "1",    "20", "7"};
    if (auto* const box = AnyShown<QLineEdit>(window))
      box->setText(texts[Any(static_cast<int>(texts.size()))]);
  }

  void Scroll(QWidget* window) {
    if (auto* const bar = AnyShown<QScrollBar>(window))
      bar->setValue(bar->minimum() + Any(std::max(1, bar->maximum() - bar->minimum() + 1)));
  }

  void UseMouse(QWidget* window) {
    auto* const surface = window->findChild<QWidget*>("surface");
    if (surface == nullptr)
      return;
    const QPoint at(Any(surface->width() + 20) - 10, Any(surface->height() + 20) - 10);
    switch (Any(4)) {
      case 0:
        QTest::mouseClick(surface, Qt::RightButton, {}, at);
        break;
      case 1:
        QTest::mouseMove(surface, at);
        break;
      default:
        QTest::mouseClick(surface, Qt::LeftButton, {}, at);
    }
  }

  void TurnWheel(QWidget* window) {
    auto* const surface = window->findChild<QWidget*>("surface");
    if (surface == nullptr)
      return;
    QWheelEvent event({10, 10}, surface->mapToGlobal(QPointF(10, 10)), {}, {0, 120 * (Any(7) - 3)}, {},
                      Any(2) == 0 ? Qt::ShiftModifier : Qt::NoModifier, Qt::NoScrollPhase, false);
    QApplication::sendEvent(surface, &event);
  }

  void ChooseFromMenu(QWidget* window) {
    if (auto* const action = AnyOf(window->findChildren<QAction*>());
        action != nullptr && action->isEnabled())
      action->trigger();
  }

  void Resize(QWidget* window) {
    static const QList<QSize> sizes{{100, 100}, {1, 1}, {933, 400}, {1900, 1000}, {300, 900}};
    window->resize(sizes[Any(static_cast<int>(sizes.size()))]);
  }

  void LoadAny() {
    static const std::vector<std::string> files{"plain.fts", "plain.fts",  "large.fts", "dot.fts",
                                                "row.fts",   "column.fts", "zero.fts",  "constant.fts",
                                                "wild.fts",  "junk.fts",   "none.fts"};
    main.actions().LoadFrameFrom(files[static_cast<size_t>(Any(static_cast<int>(files.size())))]);
  }

  void Step() {
    QWidget* const window = AnyWindow();
    switch (Any(20)) {
      case 0:
        return LoadAny();
      case 1:
        return Resize(window);
      case 2:
        return ChooseFromMenu(window);
      case 3:
        return PressRadio(window);
      case 4:
        return ChooseFromCombo(window);
      case 5:
        return Type(window);
      case 6:
        return TurnWheel(window);
      case 7:
      case 8:
        return Scroll(window);
      case 9:
        return ChooseFile(window);
      case 10:
        if (Any(10) == 0)
          window->close();
        return;
      case 11:
      case 12:
      case 13:
      case 14:
        return UseMouse(window);
      default:
        return PressButton(window);
    }
  }

  // What a window shows lies within the frame.
  void ExpectSound(int event) {
    const Session& s = *session;
    const auto isShown = [](const char* name) {
      for (const QWidget* window : QApplication::topLevelWidgets())
        if (window->objectName() == name && window->isVisible())
          return true;
      return false;
    };
    if (isShown("frmPlot_Row")) {
      const PlotFrame& f = s.rowPlot.rowFrame;
      ASSERT_TRUE(f.firstColumn >= 1 && f.firstColumn <= f.lastColumn && f.lastColumn <= Columns(s)) << event;
      ASSERT_TRUE(s.rowPlot.plotRow >= 1 && s.rowPlot.plotRow <= Rows(s)) << event;
    }
    if (isShown("frmPlot_Column")) {
      ASSERT_TRUE(s.slice.sliceColumn >= 1 && s.slice.sliceColumn <= Columns(s)) << event;
    }
    ASSERT_FALSE(platform.isBusy) << event;
    ASSERT_LE(s.continuum.continuumPointCount, Continuum::lastPoint) << event;
  }

  size_t WidgetCount() {
    size_t count = 0;
    for (const QWidget* window : QApplication::topLevelWidgets())
      count += 1 + static_cast<size_t>(window->findChildren<QWidget*>().size());
    return count;
  }

  std::mt19937 random{20260711};
  MainWindow main{desk};
};

TEST_F(RandomWalk, AHundredThousandEventsLeaveNoDamage) {
  constexpr int events = 100'000, warmUp = 20'000;
  size_t widgets = 0;
  for (int event = 0; event < events; ++event) {
    Step();
    if (event % 100 == 0) {
      QApplication::processEvents();
      QApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }
    if (event == warmUp)
      widgets = WidgetCount();
    ExpectSound(event);
    if (HasFatalFailure())
      return;
    platform.messages.clear();
  }
  EXPECT_LE(WidgetCount(), widgets + widgets / 10);
}

}  // namespace
}  // namespace halmek::test
