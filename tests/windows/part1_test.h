// The main window on a session that has just been started, with frames to load and its other windows by name.
#pragma once

#include <QAction>
#include <QComboBox>
#include <QScrollBar>
#include <array>
#include <cmath>
#include <span>

#include "app/main_window.h"
#include "platform/plot_surface.h"
#include "platform/twips.h"
#include "steps/start_up.h"
#include "windows/window_test.h"

namespace halmek::test {

using Range = std::pair<int, int>;
using PixelValue = std::function<double(int column, int row)>;

// A trace on row 30 over a sky that grows with the row. Whole numbers, which 32-bit reals hold exactly.
inline double Star(int column, int row) {
  const double distance = row - 30;
  return std::round(400 + row + (5000 + 20 * column) * std::exp(-distance * distance / 8));
}

inline std::vector<double> Values(std::span<const double> values) { return {values.begin(), values.end()}; }
class Part1Test : public WindowTest {
 protected:
  std::unique_ptr<MainWindow> main;

  Part1Test() {
    Start();
    platform.TakeMessages();
    // On a screen that may be small.
    session->plotRow = session->plotColumn = session->plotContinuum = {300, 300, 11000, 6000};
  }

  // For the first time, or again.
  void Start() {
    main.reset();
    for (const std::string& message : StartUp(*session, folder.path()))
      desk.Tell(nullptr, message);
    main = std::make_unique<MainWindow>(desk);
    main->Open();
  }

  void Load(const std::string& name, const std::string& what = "frame") {
    desk.Do(main.get(), steps::Load{what, name});
  }
  void LoadFrame(int columns, int rows, const PixelValue& value = Star) {
    WriteFrame("star.fts", columns, rows, value);
    Load("star.fts");
    ASSERT_EQ(platform.TakeMessages(), Texts{});
  }

  using WindowTest::Press, WindowTest::Type;
  template <class... Names>
  void Press(const char* name, Names... more) {
    Press(main.get(), name, more...);
  }
  static void Trigger(QWidget* window, const char* item) { Find<QAction>(window, item)->trigger(); }

  void Type(const char* box, const QString& text) { Type(main.get(), box, text); }

  // Step 3.
  void Snip(const char* col1, const char* row1, const char* col2, const char* row2) {
    Type("Text1", col1);
    Type("Text2", row1);
    Type("Text3", col2);
    Type("Text4", row2);
    Press("Command1");
  }

  // Chooses an entry with the arrow keys.
  static void Choose(QWidget* window, const char* box, int index) {
    auto* const combo = Find<QComboBox>(window, box);
    while (combo->currentIndex() != index)
      QTest::keyClick(combo, combo->currentIndex() < index ? Qt::Key_Down : Qt::Key_Up);
  }

  // The numbers of the main window's buttons that can be pressed, of those that are not always enabled.
  std::string Enabled() {
    std::string enabled;
    for (int number : {1, 2, 3, 4, 5, 6, 7, 9, 10, 13, 14, 15})
      if (Find<QAbstractButton>(main.get(), ("Command" + std::to_string(number)).c_str())->isEnabled())
        enabled += (enabled.empty() ? "" : " ") + std::to_string(number);
    return enabled;
  }
  // A letter for each of these labels: D where it says that its step is done, - where it is empty, . where
  // its window is not open.
  static std::string Done(QWidget* window, std::initializer_list<const char*> labels) {
    std::string letters;
    for (const char* label : labels) {
      const std::string text = window && window->isVisible() ? LabelText(window, label) : ".";
      letters += text == "DONE!" ? 'D' : text.empty() ? '-' : text == "." ? '.' : '?';
    }
    return letters;
  }

  // What happens, and after it: the buttons enabled, what is done by `status`, what was told.
  struct Event {
    const char* what;
    std::function<void()> event;
    const char *enabled, *status;
    const char* message = nullptr;
  };
  void Follow(const std::vector<Event>& events, const std::function<std::string()>& status) {
    for (const Event& e : events) {
      e.event();
      EXPECT_EQ(Enabled(), e.enabled) << e.what;
      EXPECT_EQ(status(), e.status) << e.what;
      EXPECT_EQ(platform.TakeMessages(), Told(e.message)) << e.what;
      EXPECT_FALSE(platform.isBusy) << e.what;
    }
  }

  using WindowTest::BoxText;
  std::string BoxText(const char* name) { return BoxText(main.get(), name); }

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

  static void Wheel(QWidget* window, int notches, Qt::KeyboardModifiers modifiers = {}) {
    SendWheel(&SurfaceOf(window), notches, modifiers);
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
    const PlotFrame& f = session->slice.colFrame;
    ClickAt(Window("frmPlot_Column"), f, button, ScreenX(f, row - 0.75));
  }
  void MarkRows(const std::vector<int>& aperture, const std::vector<int>& background) {
    for (int row : aperture)
      ClickRow(Qt::LeftButton, row);
    for (int row : background)
      ClickRow(Qt::RightButton, row);
  }
  void FitSlice() {
    QWidget* const slice = OpenSlice();
    MarkRows({26, 34}, {5, 15, 45, 55});
    Press(slice, "Command2", "Command4");
  }

  // Steps 5 to 7, up to the window of the continuum.
  QWidget* OpenContinuum() {
    FitSlice();
    Press("Command5", "Command6");
    return Window("frmPlot_Continuum");
  }
};

}  // namespace halmek::test
