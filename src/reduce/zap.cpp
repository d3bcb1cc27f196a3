// Cosmic-ray removal.
#include "reduce/zap.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace halmek {

void SelectForZap(RowPlot& plot, int column) {
  plot.zapSelected = true;
  plot.zapFirst = std::min(plot.zapFirst, column);
  plot.zapLast = std::max(plot.zapLast, column);
}

void ClearZapSelection(RowPlot& plot) {
  plot.zapSelected = false;
  plot.zapFirst = RowPlot::noFirst;
  plot.zapLast = RowPlot::noLast;
}

int NeighboursFor(int typed) { return typed > 0 ? typed : 3; }

std::optional<double> Zap(Session& s) {
  RowPlot& plot = s.rowPlot;
  if (!plot.zapSelected)
    return std::nullopt;
  const int n = plot.zapNeighbours;
  const int low = std::max(1, plot.zapFirst - n - 1);
  const int high = std::min(Columns(s), plot.zapLast + n + 1);

  // The pixel right beside either end of the selection may hold a part of the hit and is left out.
  double sum = 0;
  int count = 0;
  const auto add = [&](int first, int last) {
    for (int column = first; column <= last; ++column, ++count)
      sum += s.image(plot.plotRow, column);
  };
  add(low, plot.zapFirst - 2);
  add(plot.zapLast + 2, high);
  if (count == 0)
    throw Refusal("There are no pixels to average next to this selection.");
  const double mean = sum / count;
  if (!std::isfinite(mean))
    throw RunTimeError(run_time_error::overflow, "the mean of the pixels beside the selection");

  for (int column = plot.zapFirst; column <= plot.zapLast; ++column) {
    plot.zapBackup(column) = s.image(plot.plotRow, column);
    s.image(plot.plotRow, column) = mean;
  }
  plot.undoFirst = plot.zapFirst;
  plot.undoLast = plot.zapLast;
  plot.undoRow = plot.plotRow;
  ClearZapSelection(plot);
  return mean;
}

bool UndoZap(Session& s) {
  RowPlot& plot = s.rowPlot;
  ClearZapSelection(plot);
  if (plot.undoRow == 0)
    return false;
  for (int column = plot.undoFirst; column <= plot.undoLast; ++column)
    s.image(plot.undoRow, column) = plot.zapBackup(column);
  plot.plotRow = plot.rowScroll.value = std::exchange(plot.undoRow, 0);
  return true;
}

}  // namespace halmek
