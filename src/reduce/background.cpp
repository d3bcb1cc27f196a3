// Fits of the background.
//
// The rows are the same for every column. So the sums over rows are formed for all columns at once, row by
// row, which reads the frame in the order in which it lies in memory; each column's sums grow in the same
// order as in a fit of that column alone, and have the same bits.
#include "reduce/background.h"

#include <algorithm>
#include <array>
#include <cmath>
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

// The coefficients of power 1 or 2, each for every column: sums of the pixels times their rows' weights.
using ColumnSums = std::array<std::vector<double>, 3>;

ColumnSums SumColumns(const Session& s, const std::vector<double>& rows, const FitWeights& fit, int columns) {
  ColumnSums sums;
  for (std::vector<double>& sum : sums)
    sum.resize(static_cast<size_t>(columns));
  double* const a0 = sums[0].data();
  double* const a1 = sums[1].data();
  double* const a2 = sums[2].data();
  const bool isParabola = s.background.backgroundPower == 2;
  for (size_t i = 0; i < rows.size(); ++i) {
    const auto values = s.image.Row(static_cast<int>(rows[i]), 1, columns);
    const double* const v = values.data();
    const std::array<double, 6> weight = fit.weights[i];
    for (size_t c = 0; c < values.size(); ++c) {
      a0[c] += weight[0] * v[c];
      a1[c] += weight[1] * v[c];
    }
    if (isParabola)
      for (size_t c = 0; c < values.size(); ++c)
        a2[c] += weight[2] * v[c];
  }
  return sums;
}

// A column whose pixels are too large has no fit: the sums of its extraction could overflow.
bool IsUsable(double coefficient) { return std::fabs(coefficient) < 1e300; }

void FitCurves(Session& s, const std::vector<double>& rows, int columns) {
  Background& background = s.background;
  const FitWeights fit = WeightsOfFit(background.backgroundPower, rows);
  const ColumnSums sums = SumColumns(s, rows, fit, columns);
  for (const std::vector<double>& sum : sums)
    if (const auto bad = std::find_if_not(sum.begin(), sum.end(), IsUsable); bad != sum.end())
      throw RunTimeError(run_time_error::overflow,
                         "the background of column " + std::to_string(bad - sum.begin() + 1));

  background.backgroundCentre = fit.centre;
  std::copy(sums[0].begin(), sums[0].end(), background.backgroundA0.Range(1, columns).begin());
  std::copy(sums[1].begin(), sums[1].end(), background.backgroundA1.Range(1, columns).begin());
  std::copy(sums[2].begin(), sums[2].end(), background.backgroundA2.Range(1, columns).begin());
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

  if (background.backgroundPower == 0)
    FitMedians(s, rows, columns);
  else
    FitCurves(s, rows, columns);
  background.BackgroundCount = static_cast<int>(rows.size());
  std::copy(rows.begin(), rows.end(), background.BackgroundRows.Range(1, background.BackgroundCount).begin());
  background.fittedPower = background.backgroundPower;
  background.backgroundFitted = true;
}

double BackgroundAt(const Background& b, int column, double row) {
  if (b.fittedPower == 0)
    return b.backgroundMedian(column);
  const double t = row - b.backgroundCentre;
  return b.backgroundA0(column) + (b.backgroundA1(column) + b.backgroundA2(column) * t) * t;
}

}  // namespace halmek
