// An observer at 3 a.m.: every button of every window, in every order.
#include <QAction>
#include <QComboBox>
#include <QListWidget>
#include <QScrollBar>
#include <random>
#include <tuple>

#include "windows/part2_test.h"

namespace halmek::test {
namespace {

class RandomWalk : public Part2Test {
 protected:
  RandomWalk() {
    WriteFrame("plain.fts", 60, 40, Star);
    WriteFrame("large.fts", 300, 80, Star);
    WriteFrame("dot.fts", 1, 1, Star);
    WriteFrame("row.fts", 50, 1, Star);
    WriteFrame("column.fts", 1, 50, Star);
    WriteFrame("wild.fts", 40, 20, [](int c, int r) { return (c % 3 - 1) * 1e37 * r; });
    WriteSpectrum("lines.fts", ArcOf(400, test::Columns(10, 20)));
    WriteSpectrum("long.fts", ArcOf(3000, test::Columns(300, 20, 9)));
    WriteSpectrum("short.fts", {5000});
    WriteSpectrum("dark.fts", std::vector<double>(200, -70));
    WriteFile(folder.File("mask.txt"), "Mask\r\n20 5000\r\n60 5041\r\n140 5123\r\n220 5205\r\n300 5287\r\n");
    WriteFile(folder.File("table.txt"), "Table\r\n5020,\"Ne, I\"\r\n5061,Ar\r\n5102,Ne\r\n5390,He\r\n");
    WriteFile(folder.File("walk.recipe"),
              "load frame plain.fts\naperture 28 32\nbackground 2 6 36 40 1\ncrunch\nload arc1 lines.fts\n"
              "load mask mask.txt\nload table table.txt\napply-mask arc1\nfit-deviations arc1 3\n"
              "arcs 1\nload object lines.fts\ncorrect\nzap 900 1 2\n");
    platform.fileToOpen = folder.File("walk.recipe");
    platform.fileToSave = folder.File("saved.recipe");
  }

  int Any(int n) { return std::uniform_int_distribution<int>(0, n - 1)(random); }

  template <class T>
  T AnyOf(const QList<T>& all) {
    return all.isEmpty() ? T() : all[Any(static_cast<int>(all.size()))];
  }

  QWidget* AnyWindow() {
    if (QWidget* const window = AnyOf(OpenWindows()))
      return window;
    main->Open();
    return main.get();
  }

  // Any control that takes the keyboard, used by a hand that does not look.
  void UseControl(QWidget* window) {
    static const QStringList texts =
        QString("0,,3,12.5,-4,60,99999,1e400,abc,plain.fts,1,20,7,5020,5061.5,5102").split(',');
    QList<QWidget*> controls;
    for (QWidget* control : window->findChildren<QWidget*>())
      if (control->isVisible() && control->isEnabled() && control->focusPolicy() != Qt::NoFocus)
        controls.push_back(control);
    QWidget* const control = AnyOf(controls);
    if (auto* const button = qobject_cast<QAbstractButton*>(control)) {
      button->click();
    } else if (auto* const box = qobject_cast<QLineEdit*>(control)) {
      box->setText(AnyOf(texts));
    } else if (auto* const bar = qobject_cast<QScrollBar*>(control)) {
      bar->setValue(bar->minimum() + Any(std::max(1, bar->maximum() - bar->minimum() + 1)));
    } else if (auto* const list = qobject_cast<QListWidget*>(control);
               list && list->objectName() == "File1") {
      list->setCurrentRow(Any(list->count() + 1) - 1);
    } else if (auto* const combo = qobject_cast<QComboBox*>(control);
               combo && combo->objectName() != "Drive1") {
      // Drives lead out of the folder.
      combo->setCurrentIndex(Any(combo->count()));
      Q_EMIT combo->activated(combo->currentIndex());
    }
  }

  void UseMouse(QWidget* window) {
    auto* const surface = window->findChild<QWidget*>("surface");
    if (surface == nullptr)
      return UseControl(window);
    const QPoint at(Any(surface->width() + 20) - 10, Any(surface->height() + 20) - 10);
    const int what = Any(5);
    if (what == 0)
      SendWheel(surface, Any(7) - 3, Any(2) == 0 ? Qt::ShiftModifier : Qt::NoModifier);
    else if (what == 1)
      QTest::mouseMove(surface, at);
    else
      QTest::mouseClick(surface, what == 2 ? Qt::RightButton : Qt::LeftButton, {}, at);
  }

  void LoadAny() {
    static const QStringList files =
        QString("plain plain large dot row column wild lines lines long short dark none").split(' ');
    static const QList<std::string> slots{"frame", "frame", "object", "arc1",
                                          "arc1",  "arc2",  "table",  "mask"};
    const std::string slot = AnyOf(slots);
    Load(slot == "table" || slot == "mask" ? slot + ".txt" : AnyOf(files).toStdString() + ".fts", slot);
  }

  // Clicks at a line of an arc, which blind clicks seldom meet.
  void ClickArc() {
    const int a = 1 + Any(2), pixels = Pixels(session->slot[a]);
    if (pixels == 0 || ArcPlot(a) == nullptr || !ArcPlot(a)->isVisible())
      main->actions().PlotArc(a);
    else
      ClickColumn(a, 1 + Any(pixels));
  }

  void Step() {
    static const QList<QSize> sizes{{100, 100}, {1, 1}, {933, 400}, {1900, 1000}, {300, 900}};
    QWidget* const window = AnyWindow();
    QAction* const action = AnyOf(window->findChildren<QAction*>());
    const int what = Any(24);
    if (what == 0)
      LoadAny();
    else if (what == 1)
      window->resize(AnyOf(sizes));
    else if (what == 2 && Any(10) == 0)
      window->close();
    else if (what <= 5)
      ClickArc();
    else if (what <= 10)
      UseMouse(window);
    else if (what == 11 && action && action->isEnabled())
      action->trigger();
    else if (what == 12 && IsLineOpen())
      QTest::keyClick(Find<QLineEdit>(Line(), "Text1"), Any(3) == 0 ? Qt::Key_Down : Qt::Key_Return);
    else
      UseControl(window);
  }

  // What a window shows lies within the frame, and lines lie within their arc.
  void ExpectSound(int event) {
    const Session& s = *session;
    const auto isWithin = [](double first, double value, double last) {
      return first <= value && value <= last;
    };
    const PlotFrame& row = s.rowPlot.rowFrame;
    ASSERT_TRUE(!IsOpen("frmPlot_Row") ||
                (isWithin(1, s.rowPlot.plotRow, Rows(s)) && isWithin(1, row.firstColumn, row.lastColumn) &&
                 row.lastColumn <= halmek::Columns(s)))
        << event;
    ASSERT_TRUE(!IsOpen("frmPlot_Column") || isWithin(1, s.slice.sliceColumn, halmek::Columns(s))) << event;
    ASSERT_FALSE(platform.isBusy) << event;
    for (int a : {1, 2}) {
      const Arc& arc = s.arc[a];
      for (int k = 1; k <= arc.LineCount; ++k)
        ASSERT_TRUE(isWithin(1, arc.ArcLineColumn(k), Pixels(s.slot[a])) &&
                    isWithin(3000, arc.ArcLineWavelength(k), 9000))
            << event << ": line " << k << " of arc " << a;
      mostLines = std::max(mostLines, arc.LineCount);
      wasFitted = wasFitted || arc.fitDone;
    }
    wasCorrected = wasCorrected || !s.workflow.correctionStatus.empty();
  }

  // How far the walk came at its best: it must not merely wander among refusals.
  int mostLines = 0;
  bool wasFitted = false, wasCorrected = false;
  std::mt19937 random{20260711};
};

TEST_F(RandomWalk, ManyEventsLeaveNoDamage) {
  const int events = qEnvironmentVariableIntValue("HALMEK_WALK_EVENTS") + 40'000, warmUp = events / 5;
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
