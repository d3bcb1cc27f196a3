// An observer at 3 a.m.: every button of every window, in every order.
#include <QAction>
#include <QComboBox>
#include <QListWidget>
#include <QPushButton>
#include <QRadioButton>
#include <QScrollBar>
#include <random>

#include "app/main_window.h"
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
    const auto lines = [](int every) {
      return [every](int p) { return 20 + 5000.0 / (1 + std::pow(p % every - every / 2.0, 4)); };
    };
    WriteArc("lines.fts", 400, lines(40));
    WriteArc("dense.fts", 300, lines(9));
    WriteArc("long.fts", 3000, lines(25));
    WriteArc("short.fts", 1, lines(9));
    WriteArc("flat.fts", 200, [](int) { return 7; });
    WriteArc("dark.fts", 200, [](int p) { return -1.0 * p; });
    WriteArc("tops.fts", 200, [](int p) { return p % 30 < 8 ? 65535.0 : 100; });
    std::string mask = "Mask\r\n", table = "Table\r\n";
    for (int k = 0; k < 10; ++k)
      mask += std::to_string(40 * k + 20) + " " + std::to_string(5000 + 41 * k) + "\r\n";
    for (int k = 0; k < 50; ++k)
      table += std::to_string(5000 + 8 * k) + ",\"Ne, I\"\r\n";
    WriteFile(folder.File("lines.txt"), mask);
    WriteFile(folder.File("table.txt"), table);
    WriteFile(
        folder.File("walk.recipe"),
        "load frame plain.fts\naperture 10 20\nbackground 2 6 24 28 1\ncrunch\nload arc1 lines.fts\n"
        "load mask lines.txt\nload table table.txt\napply-mask arc1\nfit-deviations arc1 3\nzap 900 1 2\n");
    platform.fileToOpen = folder.File("walk.recipe");
    platform.fileToSave = folder.File("saved.recipe");
    session->settingsPath = folder.File("Halmek8.ini");
    main.Open();
  }

  void WriteArc(const std::string& name, int pixels, const std::function<double(int)>& value) {
    std::vector<double> values;
    for (int p = 1; p <= pixels; ++p)
      values.push_back(value(p));
    WriteSpectrum(name, values);
  }

  int Any(int n) { return std::uniform_int_distribution<int>(0, n - 1)(random); }

  template <class T>
  T AnyOf(const QList<T>& all) {
    return all.isEmpty() ? T() : all[Any(static_cast<int>(all.size()))];
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
    if (QWidget* const window = AnyOf(OpenWindows()))
      return window;
    main.Open();
    return &main;
  }

  template <class Button>
  void PressAny(QWidget* window) {
    if (auto* const button = AnyShown<Button>(window))
      button->click();
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
    static const QStringList texts{"0",   "",          "3", "12.5", "-4", "60",   "99999",  "1e400",
                                   "abc", "plain.fts", "1", "20",   "7",  "5020", "5061.5", "5102"};
    if (auto* const box = AnyShown<QLineEdit>(window))
      box->setText(AnyOf(texts));
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
    const int what = Any(4);
    if (what == 1)
      QTest::mouseMove(surface, at);
    else
      QTest::mouseClick(surface, what == 0 ? Qt::RightButton : Qt::LeftButton, {}, at);
  }

  void TurnWheel(QWidget* window) {
    auto* const surface = window->findChild<QWidget*>("surface");
    if (surface == nullptr)
      return;
    const int notches = Any(7) - 3;
    SendWheel(surface, notches, Any(2) == 0 ? Qt::ShiftModifier : Qt::NoModifier);
  }

  void ChooseFromMenu(QWidget* window) {
    if (auto* const action = AnyOf(window->findChildren<QAction*>());
        action != nullptr && action->isEnabled())
      action->trigger();
  }

  void Resize(QWidget* window) {
    static const QList<QSize> sizes{{100, 100}, {1, 1}, {933, 400}, {1900, 1000}, {300, 900}};
    window->resize(AnyOf(sizes));
  }

  void LoadAny(QWidget*) {
    static const QList<std::string> files{"plain.fts", "plain.fts",  "large.fts", "dot.fts",
                                          "row.fts",   "column.fts", "zero.fts",  "constant.fts",
                                          "wild.fts",  "junk.fts",   "none.fts"};
    static const QList<std::string> spectra{"lines.fts", "lines.fts", "dense.fts", "long.fts",
                                            "short.fts", "flat.fts",  "dark.fts",  "tops.fts",
                                            "junk.fts",  "none.fts",  "plain.fts"};
    const int what = Any(6);
    if (what < 2)
      main.actions().LoadFrameFrom(AnyOf(files));
    else if (what == 3)
      desk.Do(&main, Any(2) == 0 ? steps::Load{"table", "table.txt"} : steps::Load{"mask", "lines.txt"});
    else
      desk.Do(&main, steps::Load{what == 2 ? "object" : what == 4 ? "arc2" : "arc1", AnyOf(spectra)});
  }

  // Clicks at a line of an arc, which blind clicks seldom meet.
  void ClickArc(QWidget*) {
    const int a = 1 + Any(2);
    const char* const name = a == 1 ? "frmPlot_Arc1" : "frmPlot_Arc2";
    if (!IsOpen(name) || Pixels(session->slot[a]) == 0)
      return main.actions().PlotArc(a);
    const PlotFrame& f = session->arc[a].plotFrame;
    const double x = ScreenX(f, 1 + Any(Pixels(session->slot[a])));
    QTest::mouseClick(Window(name)->findChild<QWidget*>("surface"), Qt::LeftButton, {},
                      QPoint(PixelsOf(x), PixelsOf((f.plotTop + f.plotBottom) / 2.0)));
  }

  void Close(QWidget* window) {
    if (Any(10) == 0)
      window->close();
  }

  void UseKeys(QWidget* window) {
    if (window->objectName() == "frmClickMax")
      QTest::keyClick(window->findChild<QLineEdit*>(), Any(3) == 0 ? Qt::Key_Down : Qt::Key_Return);
  }

  void Step() {
    static constexpr struct {
      int weight;
      void (RandomWalk::*act)(QWidget* window);
    } actions[] = {{1, &RandomWalk::LoadAny},         {1, &RandomWalk::Resize},
                   {1, &RandomWalk::ChooseFromMenu},  {1, &RandomWalk::PressAny<QRadioButton>},
                   {1, &RandomWalk::ChooseFromCombo}, {1, &RandomWalk::Type},
                   {1, &RandomWalk::TurnWheel},       {2, &RandomWalk::Scroll},
                   {1, &RandomWalk::ChooseFile},      {1, &RandomWalk::Close},
                   {4, &RandomWalk::UseMouse},        {3, &RandomWalk::ClickArc},
                   {1, &RandomWalk::UseKeys},         {5, &RandomWalk::PressAny<QPushButton>}};
    QWidget* const window = AnyWindow();
    int chosen = Any(24);
    for (const auto& a : actions)
      if ((chosen -= a.weight) < 0)
        return (this->*a.act)(window);
  }

  // What a window shows lies within the frame.
  void ExpectSound(int event) {
    const Session& s = *session;
    if (IsOpen("frmPlot_Row")) {
      const PlotFrame& f = s.rowPlot.rowFrame;
      ASSERT_TRUE(f.firstColumn >= 1 && f.firstColumn <= f.lastColumn && f.lastColumn <= Columns(s)) << event;
      ASSERT_TRUE(s.rowPlot.plotRow >= 1 && s.rowPlot.plotRow <= Rows(s)) << event;
    }
    if (IsOpen("frmPlot_Column")) {
      ASSERT_TRUE(s.slice.sliceColumn >= 1 && s.slice.sliceColumn <= Columns(s)) << event;
    }
    ASSERT_FALSE(platform.isBusy) << event;
    for (int a : {1, 2}) {
      const Arc& arc = s.arc[a];
      ASSERT_TRUE(arc.LineCount >= 0 && arc.LineCount <= lastLine) << event;
      for (int k = 1; k <= arc.LineCount; ++k) {
        // The lines of an arc stay where another one stops loading halfway.
        ASSERT_TRUE(arc.ArcLineColumn(k) >= 1 && arc.ArcLineColumn(k) <= Pixels(s.slot[a]))
            << event << ": line " << k << " of arc " << a;
        ASSERT_TRUE(arc.ArcLineWavelength(k) >= 3000 && arc.ArcLineWavelength(k) <= 9000) << event;
      }
      mostLines = std::max(mostLines, arc.LineCount);
      wasFitted = wasFitted || arc.fitDone;
    }
    wasCorrected = wasCorrected || !s.workflow.correctionStatus.empty();
    ASSERT_LE(s.continuum.continuumPointCount, Continuum::lastPoint) << event;
  }

  // How far the walk came at its best: it must not merely wander among refusals.
  int mostLines = 0;
  bool wasFitted = false, wasCorrected = false;
  std::mt19937 random{20260711};
  MainWindow main{desk};
};

TEST_F(RandomWalk, AHundredThousandEventsLeaveNoDamage) {
  constexpr int events = 100'000, warmUp = 20'000;
  qsizetype widgets = 0;
  for (int event = 0; event < events; ++event) {
    Step();
    if (event % 100 == 0) {
      QApplication::processEvents();
      QApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }
    if (event == warmUp)
      widgets = QApplication::allWidgets().size();
    ExpectSound(event);
    if (HasFatalFailure())
      return;
    platform.messages.clear();
  }
  EXPECT_GT(mostLines, 5);
  EXPECT_TRUE(wasFitted);
  EXPECT_TRUE(wasCorrected);
  EXPECT_LE(QApplication::allWidgets().size(), widgets + widgets / 10);
}

}  // namespace
}  // namespace halmek::test
