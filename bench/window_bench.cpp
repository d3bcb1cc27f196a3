// Redrawing plots of 3000 pixels on a 3840 x 2160 screen, beside what Qt's own polyline takes for the curve
// alone.
#include <benchmark/benchmark.h>
#include <unistd.h>

#include <QApplication>
#include <QImage>
#include <QPainter>
#include <QScrollBar>
#include <filesystem>
#include <fstream>
#include <memory>
#include <random>

#include "app/main_window.h"
#include "app/session.h"
#include "fits/header.h"
#include "platform/painting.h"
#include "reduce/continuum.h"
#include "reduce/row_plot.h"

namespace halmek {
namespace {

constexpr int columns = 3000, screenWidth = 3840, screenHeight = 2160;

// Noise as rough as it gets, so that the steps' risers cross the plot.
double Rough(std::mt19937& random) { return std::uniform_real_distribution<double>(100, 60000)(random); }

std::unique_ptr<Session> RoughSession() {
  auto session = std::make_unique<Session>();
  std::mt19937 random(7);
  Slot& frame = session->slot[slots::frame];
  frame.naxis1 = columns;
  frame.naxis2 = 1;
  Slot& spectrum = session->slot[slots::spectrum];
  spectrum.naxis1 = columns;
  for (int i = 1; i <= columns; ++i)
    session->image(1, i) = spectrum.spectrum(i) = Rough(random);
  return session;
}

// At one or two pixels of the screen to a logical one.
struct Screen {
  explicit Screen(double ratio)
      : image(screenWidth, screenHeight, QImage::Format_RGB32),
        size{static_cast<int>(screenWidth / ratio * 15), static_cast<int>(screenHeight / ratio * 15)} {
    image.setDevicePixelRatio(ratio);
  }
  QImage image;
  WindowSize size;
};

void Paint(Screen& screen, const Drawing& drawing) {
  QPainter painter(&screen.image);
  painter.fillRect(QRect(0, 0, screenWidth, screenHeight), Qt::white);
  PaintDrawing(painter, drawing, 1.0 / 15);
}

void RedrawRow(benchmark::State& state) {
  const auto session = RoughSession();
  Screen screen(static_cast<double>(state.range(0)));
  OpenRowPlot(*session, 1);
  for (auto _ : state)
    Paint(screen, *DrawRowPlot(*session, screen.size));
}
BENCHMARK(RedrawRow)->Arg(1)->Arg(2)->Unit(benchmark::kMillisecond);

void RedrawContinuumWithFit(benchmark::State& state) {
  const auto session = RoughSession();
  Screen screen(static_cast<double>(state.range(0)));
  FitContinuum(*session);
  for (auto _ : state)
    Paint(screen, PlotContinuum(*session, screen.size));
}
BENCHMARK(RedrawContinuumWithFit)->Arg(1)->Arg(2)->Unit(benchmark::kMillisecond);

void QtPolylineOfTheSameCurve(benchmark::State& state) {
  const auto session = RoughSession();
  Screen screen(static_cast<double>(state.range(0)));
  OpenRowPlot(*session, 1);
  const auto drawing = DrawRowPlot(*session, screen.size);
  QPolygonF curve;
  for (const DrawingItem& item : drawing->items)
    if (const auto* const line = std::get_if<Polyline>(&item))
      for (const Point& p : line->points)
        curve.push_back(QPointF(p.x, p.y) / 15);
  for (auto _ : state) {
    QPainter painter(&screen.image);
    painter.fillRect(QRect(0, 0, screenWidth, screenHeight), Qt::white);
    painter.setPen(QPen(Qt::red, 1));
    painter.drawPolyline(curve);
  }
}
BENCHMARK(QtPolylineOfTheSameCurve)->Arg(1)->Arg(2)->Unit(benchmark::kMillisecond);

class NoPlatform : public Platform {
 public:
  void Show(QWidget*, const Message&) override {}
  size_t Ask(QWidget*, const Question&) override { return 0; }
  void SetBusy(QWidget*, bool) override {}
  std::optional<std::string> FileToOpen(QWidget*, const FileQuestion&) override { return {}; }
  std::optional<std::string> FileToSave(QWidget*, const FileQuestion&) override { return {}; }
  bool SetUpPrinter(QWidget*, QPrinter&) override { return false; }
};

// The program's windows in a folder of their own, which holds large.fts, 3000 x 500 pixels of 16 bits.
class Windows {
 public:
  Windows() {
    std::filesystem::create_directories(folder_);
    session_->dataFolder = folder_.string();
    session_->settingsPath = (folder_ / "Halmek8.ini").string();
    WriteFrame();
    main_.Open();
    Load();
  }
  ~Windows() { std::filesystem::remove_all(folder_); }

  // Loads the frame, and paints what has changed.
  void Load() {
    main_.actions().LoadFrameFrom("large.fts");
    QApplication::processEvents();
  }

  // The row plot, over a screen of that size.
  QWidget* OpenRowPlot(QSize size = {screenWidth, screenHeight}) {
    main_.actions().FixTrace("250");
    for (QWidget* window : QApplication::topLevelWidgets())
      if (window->objectName() == "frmPlot_Row") {
        window->resize(size);
        QApplication::processEvents();
        return window;
      }
    return nullptr;
  }

 private:
  void WriteFrame() {
    FitsHeader header;
    for (const std::string& card :
         {NumberCard("SIMPLE", "T", " /"), NumberCard("BITPIX", "16", " /"), NumberCard("NAXIS", "2", " /"),
          NumberCard("NAXIS1", std::to_string(columns), " /"), NumberCard("NAXIS2", "500", " /")})
      AppendCard(header, card);
    std::string bytes = HeaderBytes(header);
    std::mt19937 random(7);
    for (int i = 0; i < 500 * columns; ++i) {
      const int value = static_cast<int>(Rough(random) / 2) + 100;
      bytes += static_cast<char>(value >> 8);
      bytes += static_cast<char>(value);
    }
    std::ofstream(folder_ / "large.fts", std::ios::binary) << bytes;
  }

  std::filesystem::path folder_ =
      std::filesystem::temp_directory_path() / ("halmek-bench-" + std::to_string(getpid()));
  std::unique_ptr<Session> session_ = std::make_unique<Session>();
  NoPlatform platform_;
  Desk desk_{*session_, platform_};
  MainWindow main_{desk_};
};

void LoadAtTheScreen(benchmark::State& state) {
  Windows windows;
  for (auto _ : state)
    windows.Load();
}
BENCHMARK(LoadAtTheScreen)->Unit(benchmark::kMillisecond);

void LoadUnderAnOpenPlot(benchmark::State& state) {
  Windows windows;
  windows.OpenRowPlot();
  for (auto _ : state)
    windows.Load();
}
BENCHMARK(LoadUnderAnOpenPlot)->Unit(benchmark::kMillisecond);

void ScrollByARow(benchmark::State& state) {
  Windows windows;
  const QSize size(static_cast<int>(state.range(0)), static_cast<int>(state.range(1)));
  auto* const rows = windows.OpenRowPlot(size)->findChild<QScrollBar*>("VScroll1");
  for (auto _ : state) {
    rows->setValue(rows->value() % 400 + 1);
    QApplication::processEvents();
  }
}
BENCHMARK(ScrollByARow)->Args({1920, 1080})->Args({screenWidth, screenHeight})->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace halmek

int main(int argc, char** argv) {
  qputenv("QT_QPA_PLATFORM", "offscreen");
  const QApplication application(argc, argv);
  benchmark::Initialize(&argc, argv);
  benchmark::RunSpecifiedBenchmarks();
}
