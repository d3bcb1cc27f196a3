// The main window on a session that has just been started, with frames to load and its other windows by name.
#pragma once

#include <QAction>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QScrollBar>
#include <cmath>
#include <sstream>

#include "app/main_window.h"
#include "fits/fits_writer.h"
#include "platform/plot_surface.h"
#include "platform/twips.h"
#include "steps/start_up.h"
#include "windows/window_test.h"

namespace halmek::test {

using Texts = std::vector<std::string>;
using Range = std::pair<int, int>;
using PixelValue = std::function<double(int column, int row)>;

// A trace on row 30 over a sky that grows with the row. Whole numbers, which 32-bit reals hold exactly.
inline double Star(int column, int row) {
  const double distance = row - 30;
  return std::round(400 + row + (5000 + 20 * column) * std::exp(-distance * distance / 8));
}

// What a refusal must leave as it was: everything but the journal. Cards and pixels stand in it as a hash.
inline std::string StateOf(const Session& s) {
  std::string bulk;
  const auto add = [&](std::span<const double> values) {
    bulk.append(reinterpret_cast<const char*>(values.data()), values.size_bytes());
  };
  std::ostringstream out;
  for (const Slot& slot : s.slot) {
    out << slot.fileName << ' ' << slot.naxis1 << ' ' << slot.naxis2 << ' ' << slot.cardCount << '\n';
    for (int card = 1; card <= slot.cardCount; ++card)
      bulk += slot.card(card);
    add(slot.spectrum.Range(1, lastPixel));
  }
  for (int row = 1; row <= Rows(s); ++row)
    add(s.image.Row(row, 1, Columns(s)));
  const RowPlot& row = s.rowPlot;
  const Slice& slice = s.slice;
  const Continuum& c = s.continuum;
  const Workflow& w = s.workflow;
  for (int number : {int{s.badColumn},
                     int{s.trimCol1},
                     int{s.trimRow1},
                     int{s.trimCol2},
                     int{s.trimRow2},
                     int{s.startRow},
                     int{s.manualFit},
                     int{s.frameTrimmed},
                     int{row.zapSelected},
                     row.zapFirst,
                     row.zapLast,
                     row.undoRow,
                     slice.apertureState,
                     slice.backgroundClicks,
                     slice.apertureFirstRow,
                     slice.apertureLastRow,
                     slice.background1FirstRow,
                     slice.background1LastRow,
                     slice.background2FirstRow,
                     slice.background2LastRow,
                     int{s.background.backgroundFitted},
                     s.background.backgroundPower,
                     c.continuumPointCount,
                     int{c.continuumFitDone},
                     c.continuumPower,
                     int{c.normalized},
                     int{w.trimEnabled},
                     int{w.fixColumnEnabled},
                     int{w.crunchEnabled},
                     int{w.normalizeEnabled}})
    out << number << ' ';
  out << std::hash<std::string>()(bulk) << w.title << w.sliceStatus << w.crunchStatus << w.continuumStatus;
  return out.str();
}

class Part1Test : public WindowTest {
 protected:
  std::unique_ptr<MainWindow> main;

  Part1Test() {
    Start();
    platform.TakeMessages();
    // On a screen that may be small.
    session->plotRow = session->plotColumn = session->plotContinuum = {300, 300, 11000, 6000};
  }

  void Start() {
    for (const std::string& message : StartUp(*session, folder.path()))
      desk.Tell(nullptr, message);
    main = std::make_unique<MainWindow>(desk);
    main->Open();
  }

  // Files to load, of 32-bit reals.
  void WriteFrame(const std::string& name, int columns, int rows, const PixelValue& value) {
    const auto made = SessionIn(folder.path());
    SetFrame(*made, columns, rows, value);
    made->slot[slots::frame].savePixelType = -32;
    SaveFits2D(*made, name);
  }
  void WriteSpectrum(const std::string& name) {
    const auto made = SessionIn(folder.path());
    SetSpectrum(*made, slots::object, std::vector<double>(50, 300));
    made->slot[slots::object].savePixelType = -32;
    SaveFits1D(*made, slots::object, name);
  }
  void Load(const std::string& name, const std::string& what = "frame") {
    desk.Do(main.get(), steps::Load{what, name});
  }
  void LoadFrame(int columns, int rows, const PixelValue& value = Star) {
    WriteFrame("star.fts", columns, rows, value);
    Load("star.fts");
    ASSERT_EQ(platform.TakeMessages(), Texts{});
  }

  // A window that the main window has opened; a null pointer where it has not.
  static QWidget* Window(const char* name) {
    for (QWidget* window : QApplication::topLevelWidgets())
      if (window->objectName() == name)
        return window;
    return nullptr;
  }
  static bool IsOpen(const char* name) { return Window(name) != nullptr && Window(name)->isVisible(); }

  static void Press(QWidget* window, const char* button) {
    QTest::mouseClick(Find<QPushButton>(window, button), Qt::LeftButton);
  }
  void Press(const char* button) { Press(main.get(), button); }
  static void Trigger(QWidget* window, const char* item) { Find<QAction>(window, item)->trigger(); }

  static void Type(QWidget* window, const char* box, const QString& text) {
    auto* const edit = Find<QLineEdit>(window, box);
    edit->selectAll();
    QTest::keyClick(edit, Qt::Key_Delete);
    QTest::keyClicks(edit, text);
  }
  void Type(const char* box, const QString& text) { Type(main.get(), box, text); }

  // Chooses an entry with the arrow keys.
  static void Choose(QWidget* window, const char* box, int index) {
    auto* const combo = Find<QComboBox>(window, box);
    while (combo->currentIndex() != index)
      QTest::keyClick(combo, combo->currentIndex() < index ? Qt::Key_Down : Qt::Key_Up);
  }

  // Which of these buttons of the main window, "Command" and a number, can be pressed.
  std::string Enabled(std::initializer_list<int> numbers) {
    std::string enabled;
    for (int number : numbers)
      if (Find<QPushButton>(main.get(), ("Command" + std::to_string(number)).c_str())->isEnabled())
        enabled += (enabled.empty() ? "" : " ") + std::to_string(number);
    return enabled;
  }

  static std::string LabelText(QWidget* window, const char* name) {
    return Find<QLabel>(window, name)->text().toStdString();
  }
  std::string BoxText(const char* name) { return Find<QLineEdit>(main.get(), name)->text().toStdString(); }

  static PlotSurface& SurfaceOf(QWidget* window) {
    for (QWidget* child : window->findChildren<QWidget*>())
      if (auto* const surface = dynamic_cast<PlotSurface*>(child))
        return *surface;
    throw std::logic_error("the window has no plot");
  }

  // A click at a position in twips, half way up the plot area and a little inside its ends.
  static void ClickAt(QWidget* window, const PlotFrame& f, Qt::MouseButton button, double x) {
    constexpr double inside = 16;
    const double within = std::clamp(x, f.plotLeft + inside, f.plotRight - inside);
    ClickAnywhere(window, button, within, (f.plotTop + f.plotBottom) / 2.0);
  }
  static void ClickAnywhere(QWidget* window, Qt::MouseButton button, double x, double y) {
    QTest::mouseClick(&SurfaceOf(window), button, {}, QPoint(PixelsOf(x), PixelsOf(y)));
  }

  // The colours of the drawing's lines and curves that are neither grid nor frame; a letter each, small for
  // lines, capital for curves; o for circles.
  static std::string Marks(QWidget* window) {
    const auto letter = [](Colour c) { return c.red ? 'r' : c.green ? 'g' : 'b'; };
    std::string marks;
    for (const DrawingItem& item : SurfaceOf(window).drawing()->items) {
      if (const auto* line = std::get_if<Line>(&item);
          line && line->colour != colours::grey && line->colour != colours::black)
        marks += letter(line->colour);
      else if (const auto* curve = std::get_if<Polyline>(&item))
        marks += static_cast<char>(std::toupper(letter(curve->colour)));
      else if (std::holds_alternative<Circle>(item))
        marks += 'o';
    }
    return marks;
  }

  // Turns the wheel by one notch; positive is away from the user.
  static void Wheel(QWidget* window, int notches, Qt::KeyboardModifiers modifiers = {}) {
    PlotSurface& surface = SurfaceOf(window);
    const QPointF at(surface.rect().center());
    QWheelEvent event(at, surface.mapToGlobal(at), {}, {0, 120 * notches}, Qt::NoButton, modifiers,
                      Qt::NoScrollPhase, false);
    QApplication::sendEvent(&surface, &event);
  }

  // Step 4, on a row.
  QWidget* OpenRowPlot(const QString& row) {
    Type("Text5", row);
    Press("Command4");
    return Window("frmPlot_Row");
  }

  // Step 5: the window, clicks at rows in it, and all of it up to the fit.
  QWidget* OpenSlice() {
    Press("Command3");
    return Window("frmPlot_Column");
  }
  void ClickRow(Qt::MouseButton button, int row) {
    // A quarter into the row's step, where both buttons name this row.
    ClickAt(Window("frmPlot_Column"), session->slice.colFrame, button,
            ScreenX(session->slice.colFrame, row - 0.75));
  }
  void MarkRows(std::initializer_list<int> aperture, std::initializer_list<int> background) {
    for (int row : aperture)
      ClickRow(Qt::LeftButton, row);
    for (int row : background)
      ClickRow(Qt::RightButton, row);
  }
  void FitSlice() {
    QWidget* const slice = OpenSlice();
    MarkRows({26, 34}, {5, 15, 45, 55});
    Press(slice, "Command2");
    Press(slice, "Command4");
  }

  // Steps 5 to 7, up to the window of the continuum.
  QWidget* OpenContinuum() {
    FitSlice();
    Press("Command5");
    Press("Command6");
    return Window("frmPlot_Continuum");
  }
};

}  // namespace halmek::test
