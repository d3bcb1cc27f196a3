// Tables with fixed bounds, indexed from 0 although place 0 is never used, as pixels and cards count from 1.
#pragma once

#include <cstdlib>
#include <memory>
#include <new>
#include <span>
#include <string>
#include <vector>

#include "files/failure.h"

namespace halmek {

// Throws RunTimeError 9 unless low <= index <= high.
inline void CheckSubscript(int index, int low, int high) {
  if (index < low || index > high)
    throw RunTimeError(run_time_error::subscript,
                       "place " + std::to_string(index) + " of a table that ends at " + std::to_string(high));
}

// Places 0..last. Single access is checked; loops take a span.
template <class T>
class FixedTable {
 public:
  explicit FixedTable(int last) : values_(static_cast<size_t>(last) + 1) {}

  int last() const { return static_cast<int>(values_.size()) - 1; }

  T& operator()(int index) {
    CheckSubscript(index, 0, last());
    return values_[static_cast<size_t>(index)];
  }
  const T& operator()(int index) const {
    CheckSubscript(index, 0, last());
    return values_[static_cast<size_t>(index)];
  }

  // The places first..end, both included; empty where end < first.
  std::span<T> Range(int first, int end) { return Cut(std::span(values_), first, end); }
  std::span<const T> Range(int first, int end) const { return Cut(std::span(values_), first, end); }

  void Clear() { values_.assign(values_.size(), T{}); }

 private:
  template <class Span>
  Span Cut(Span all, int first, int end) const {
    CheckSubscript(first, 0, last() + 1);
    CheckSubscript(end, -1, last());
    return end < first ? Span{}
                       : all.subspan(static_cast<size_t>(first), static_cast<size_t>(end - first + 1));
  }

  std::vector<T> values_;
};

// The pixels of the 2-D frame: rows 0..500, columns 0..3000, row after row.
class FrameTable {
 public:
  static constexpr int lastRow = 500;
  static constexpr int lastColumn = 3000;

  // calloc leaves the pages of a large table untouched until they are used, so that a session without a frame
  // costs neither the time nor the memory of one.
  FrameTable() : values_(static_cast<double*>(std::calloc(size, sizeof(double))), &std::free) {
    if (!values_)
      throw std::bad_alloc();
  }

  double& operator()(int row, int column) { return values_.get()[Index(row, column)]; }
  double operator()(int row, int column) const { return values_.get()[Index(row, column)]; }

  // The columns first..end of a row, both included; empty where end < first.
  std::span<double> Row(int row, int first, int end) {
    return {values_.get() + Index(row, first), Count(first, end)};
  }
  std::span<const double> Row(int row, int first, int end) const {
    return {values_.get() + Index(row, first), Count(first, end)};
  }

 private:
  static constexpr size_t size = static_cast<size_t>(lastRow + 1) * (lastColumn + 1);

  static size_t Index(int row, int column) {
    CheckSubscript(row, 0, lastRow);
    CheckSubscript(column, 0, lastColumn);
    return static_cast<size_t>(row) * (lastColumn + 1) + static_cast<size_t>(column);
  }
  static size_t Count(int first, int end) {
    CheckSubscript(end, -1, lastColumn);
    return end < first ? 0 : static_cast<size_t>(end - first + 1);
  }

  std::unique_ptr<double, decltype(&std::free)> values_;
};

}  // namespace halmek
