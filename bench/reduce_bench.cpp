// Background fit and extraction of a 3000 x 500 frame, beside one pass over the rows that they use.
#include <benchmark/benchmark.h>

#include <memory>

#include "reduce/background.h"
#include "reduce/column_slice.h"
#include "reduce/crunch.h"

namespace halmek {
namespace {

constexpr int columns = 3000;
constexpr int rows = 500;

std::unique_ptr<Session> FrameWithSelection() {
  auto session = std::make_unique<Session>();
  Slot& frame = session->slot[slots::frame];
  frame.naxis1 = columns;
  frame.naxis2 = rows;
  frame.fileName = "frame.fts";
  for (int row = 1; row <= rows; ++row)
    for (int column = 1; column <= columns; ++column)
      session->image(row, column) = 400 + (row * 7 + column * 13) % 50;
  SetAperture(*session, 241, 260);
  SetBackgroundRanges(*session, 151, 200, 301, 350);
  session->background.backgroundPower = 1;
  return session;
}

// Power 1 through 100 rows, 20 rows summed.
void FitBackgroundAndCrunch(benchmark::State& state) {
  const auto session = FrameWithSelection();
  for (auto _ : state) {
    FitBackground(*session);
    CrunchFrame(*session);
    benchmark::DoNotOptimize(session->slot[slots::spectrum].spectrumPeak);
  }
}
BENCHMARK(FitBackgroundAndCrunch)->Unit(benchmark::kMicrosecond);

// Every pixel of the same 120 rows is read once.
void OnePassOverTheRows(benchmark::State& state) {
  const auto session = FrameWithSelection();
  for (auto _ : state) {
    double sum = 0;
    const auto add = [&](int first, int last) {
      for (int row = first; row <= last; ++row)
        for (double value : session->image.Row(row, 1, columns))
          sum += value;
    };
    add(241, 260);
    add(151, 200);
    add(301, 350);
    benchmark::DoNotOptimize(sum);
  }
}
BENCHMARK(OnePassOverTheRows)->Unit(benchmark::kMicrosecond);

}  // namespace
}  // namespace halmek
