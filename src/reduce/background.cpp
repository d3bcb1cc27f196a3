// Fits of the background.
//
// The rows are the same for every column. So the sums over rows are formed for all columns at once, row by
// row, which reads the frame in the order in which it lies in memory; each column's sums grow in the same
// order as in a fit of that column alone, and have the same bits.
#include "reduce/background.h"

#include <algorithm>
#include <vector>

namespace halmek {
namespace {

// The limit of power 1 is where n squared exceeds 16 bits.
int MostRows(int power) { return power == 1 ? 181 : SortBuffer::last; }

void AppendRows(std::vector<double>& rows, int first, int last) {
  for (int row = std::min(first, last); row <= std::max(first, last); ++row)
    rows.push_back(row);
}

std::vector<double> ChosenRows(const Slice& slice) {
  std::vector<double> rows;
  AppendRows(rows, slice.background1FirstRow, slice.background1LastRow);
  AppendRows(rows, slice.background2FirstRow, slice.background2LastRow);
  return rows;
}

void CheckSelection(const Session& s, const std::vector<double>& rows) {
  const int power = s.background.backgroundPower;
  if (power < 0 || power > 2)
    throw Refusal("Sorry, power " + std::to_string(power) +
                  " has not been implemented yet.  Try 0, 1, or 2.");
  if (static_cast<int>(rows.size()) > MostRows(power))
    throw Refusal("The background ranges have " + std::to_string(rows.size()) + " rows.  For power " +
                  std::to_string(power) + " they can have " + std::to_string(MostRows(power)) +
                  " at most.  Please try again.");
  if (!HasDistinct(rows, power + 1))
    throw Refusal("Hey, for a fit of power " + std::to_string(power) + " you need " +
                  std::to_string(power + 1) + " points (and preferably more).  Please try again.");
}

void FitMedians(Session& s, const std::vector<double>& rows, int columns) {
  const int n = static_cast<int>(rows.size());
  for (int c = 1; c <= columns; ++c) {
    for (int k = 1; k <= n; ++k)
      s.SortBuffer.slot[k] = s.image(static_cast<int>(rows[k - 1]), c);
    s.background.backgroundMedian(c) = Median(s.SortBuffer, n);
  }
}

// Sums of values times powers of the row, for every column.
struct ColumnSums {
  explicit ColumnSums(size_t columns) : y(columns), xy(columns), x2y(columns) {}
  std::vector<double> y, xy, x2y;
};

ColumnSums SumColumns(const Session& s, const std::vector<double>& rows, int columns) {
  ColumnSums sums(static_cast<size_t>(columns));
  double* const y = sums.y.data();
  double* const xy = sums.xy.data();
  double* const x2y = sums.x2y.data();
  const bool isParabola = s.background.backgroundPower == 2;
  for (double x : rows) {
    const auto values = s.image.Row(static_cast<int>(x), 1, columns);
    const double* const v = values.data();
    for (size_t c = 0; c < values.size(); ++c) {
      y[c] += v[c];
      xy[c] += x * v[c];
    }
    if (isParabola)
      for (size_t c = 0; c < values.size(); ++c)
        x2y[c] += x * x * v[c];
  }
  return sums;
}

// A column whose pixels are too large to be summed has no fit.
[[noreturn]] void ThrowNoFit(Session& s, int column) {
  s.workflow.crunchEnabled = s.background.backgroundFitted = false;  // the columns before have new models
  throw RunTimeError(run_time_error::overflow, "the background of column " + std::to_string(column));
}

void FitLines(Session& s, const std::vector<double>& rows, int columns) {
  const LineSums x = SumsForLine(rows);
  const ColumnSums sums = SumColumns(s, rows, columns);
  for (int c = 1; c <= columns; ++c) {
    const auto line = SolveLine(x, sums.y[c - 1], sums.xy[c - 1]);
    if (!line)
      ThrowNoFit(s, c);
    s.background.backgroundA0(c) = line->a0;
    s.background.backgroundA1(c) = line->a1;
  }
}

void FitParabolas(Session& s, const std::vector<double>& rows, int columns) {
  const ParabolaSums x = SumsForParabola(rows);
  const ColumnSums sums = SumColumns(s, rows, columns);
  for (int c = 1; c <= columns; ++c) {
    const auto parabola = SolveParabola(x, sums.y[c - 1], sums.xy[c - 1], sums.x2y[c - 1]);
    if (!parabola)
      ThrowNoFit(s, c);
    s.background.parabolaA0(c) = parabola->a0;
    s.background.parabolaA1(c) = parabola->a1;
    s.background.parabolaA2(c) = parabola->a2;
  }
}

}  // namespace

void RequireCompleteSelection(const Session& s) {
  if (s.slice.backgroundClicks != 4 || s.slice.apertureState != Slice::complete)
    throw Refusal("Hey, you need to set the aperture(s).");
}

void FitBackground(Session& s) {
  Background& background = s.background;
  RequireCompleteSelection(s);
  const std::vector<double> rows = ChosenRows(s.slice);
  CheckSelection(s, rows);
  const int columns = Columns(s);
  if (columns == 0)
    throw Refusal("Hey, no 2-D file has been loaded!");

  background.BackgroundCount = static_cast<int>(rows.size());
  std::copy(rows.begin(), rows.end(), background.BackgroundRows.Range(1, background.BackgroundCount).begin());
  switch (background.backgroundPower) {
    case 0:
      FitMedians(s, rows, columns);
      break;
    case 1:
      FitLines(s, rows, columns);
      break;
    default:
      FitParabolas(s, rows, columns);
  }
  background.fittedPower = background.backgroundPower;
  background.backgroundFitted = true;
}

double BackgroundAt(const Background& b, int column, double row) {
  switch (b.fittedPower) {
    case 0:
      return b.backgroundMedian(column);
    case 1:
      return b.backgroundA0(column) + b.backgroundA1(column) * row;
    default:
      return b.parabolaA0(column) + b.parabolaA1(column) * row + b.parabolaA2(column) * (row * row);
  }
}

}  // namespace halmek
