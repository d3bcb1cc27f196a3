// Trimming of the frame.
#include "reduce/trim.h"

#include <algorithm>

#include "files/whole_number.h"
#include "fits/header.h"

namespace halmek {
namespace {

void CheckCorners(const Session& s) {
  const double columns = s.slot[slots::frame].naxis1, rows = s.slot[slots::frame].naxis2;
  if (s.trimCol1 < 1)
    throw Refusal("Col 1 value must be > 0.  Please try again.");
  if (s.trimCol2 < s.trimCol1)
    throw Refusal("Col 2 value must be > Col 1 value.  Please try again.");
  if (s.trimCol2 > columns)
    throw Refusal("Col 2 value must be <= NAXIS1.  Please try again.");
  if (s.trimRow1 < 1)
    throw Refusal("Row 1 value must be > 0.  Please try again.");
  if (s.trimRow2 < s.trimRow1)
    throw Refusal("Row 2 value must be > Row 1 value.  Please try again.");
  if (s.trimRow2 > rows)
    throw Refusal("Row 2 value must be <= NAXIS2.  Please try again.");
}

// The value starts in column 27, whatever its length.
std::string SizeCard(const char* keyword, int size) {
  return std::string(keyword) + "  =" + std::string(17, ' ') + std::to_string(size) + "/ ";
}

std::string CornerText(int column, int row) {
  return "(" + std::to_string(column) + "," + std::to_string(row) + ")";
}

}  // namespace

void TrimTo(Session& s, int col1, int row1, int col2, int row2) {
  // All four or none, should one of them exceed 16 bits.
  const std::array corners{WholeNumber(col1), WholeNumber(row1), WholeNumber(col2), WholeNumber(row2)};
  s.trimCol1 = corners[0];
  s.trimRow1 = corners[1];
  s.trimCol2 = corners[2];
  s.trimRow2 = corners[3];
  CheckCorners(s);
  TrimFrame(s);
}

void TrimFrame(Session& s) {
  Slot& frame = s.slot[slots::frame];
  RequireRoomForCards(frame, 2);
  const int columns = s.trimCol2 - s.trimCol1 + 1;
  const int rows = s.trimRow2 - s.trimRow1 + 1;

  // In place: both offsets are 0 or more, so that no pixel is overwritten before it is read.
  for (int r = 1; r <= rows; ++r) {
    const auto source = s.image.Row(r + s.trimRow1 - 1, s.trimCol1, s.trimCol2);
    std::copy(source.begin(), source.end(), s.image.Row(r, 1, columns).begin());
  }

  frame.naxis1 = columns;
  frame.naxis2 = rows;
  frame.card(frame.naxis1Card) = SizeCard("NAXIS1", columns);
  frame.card(frame.naxis2Card) = SizeCard("NAXIS2", rows);
  const std::string section = "  Halmek snipped out section " + CornerText(s.trimCol1, s.trimRow1) + " to " +
                              CornerText(s.trimCol2, s.trimRow2) + " inclusive (col, row)";
  AppendCard(frame, "HISTORY" + section);
  AppendCard(frame, "OVERSCAN" + section);

  s.frameTrimmed = true;
  s.workflow.trimEnabled = false;
  DropFrameState(s);
  ClearFrameStatus(s.workflow);
}

}  // namespace halmek
