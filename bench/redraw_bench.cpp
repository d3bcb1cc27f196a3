// Redrawing plots of 3000 pixels on a 3840 x 2160 screen, beside what Qt's own polyline takes for the curve
// alone.
#include <benchmark/benchmark.h>

#include <QApplication>
#include <QImage>
#include <QPainter>
#include <memory>
#include <random>

#include "app/session.h"
#include "plot/painting.h"
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

}  // namespace
}  // namespace halmek

int main(int argc, char** argv) {
  qputenv("QT_QPA_PLATFORM", "offscreen");
  const QApplication application(argc, argv);
  benchmark::Initialize(&argc, argv);
  benchmark::RunSpecifiedBenchmarks();
}
