// Bad-column repair.
#include "reduce/bad_column.h"

#include "files/whole_number.h"

namespace halmek {
namespace {

// The column beside the bad one in which the spectrum is looked for. The half of an odd width is no whole
// number.
int ProbeColumn(int badColumn, double naxis1) {
  return badColumn > naxis1 / 2 ? badColumn - 2 : badColumn + 2;
}

double MedianOfSixAround(Session& s, int row, int column) {
  for (int i = 1; i <= 3; ++i) {
    s.NeighbourBuffer.slot[i] = s.image(row, column - i);
    s.NeighbourBuffer.slot[i + 3] = s.image(row, column + i);
  }
  return MedianOfNeighbours(s.NeighbourBuffer, s.SortBuffer, 6);
}

}  // namespace

void FixColumn(Session& s, int column) {
  s.badColumn = WholeNumber(column);
  if (s.badColumn <= 3 || s.badColumn > s.slot[slots::frame].naxis1 - 3)
    throw Refusal("Enter a valid column number, please - not within 3 pixels of the edge.");
  RepairBadColumn(s);
}

void RepairBadColumn(Session& s) {
  const int rows = Rows(s);
  const int probe = ProbeColumn(s.badColumn, s.slot[slots::frame].naxis1);
  double brightest = -99999;
  for (int row = 1; row <= rows; ++row) {
    if (s.image(row, probe) > brightest) {
      brightest = s.image(row, probe);
      s.traceRow = row;
    }
  }

  // The bad pixel itself is never among its neighbours, so rows can be repaired in any order.
  for (int row = 1; row <= rows; ++row)
    s.image(row, s.badColumn) = MedianOfSixAround(s, row, s.badColumn);

  s.workflow.fixColumnEnabled = false;
}

}  // namespace halmek
