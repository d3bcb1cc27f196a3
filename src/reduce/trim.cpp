// Trimming of the frame.
#include "reduce/trim.h"

#include <algorithm>
#include <array>
#include <utility>

#include "files/whole_number.h"
#include "fits/header.h"
#include "fits/world_coordinates.h"

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
  FitsHeader header = frame;
  FollowTrim(header, s.trimCol1, s.trimRow1);
  RequireRoomForCards(header, 2);
  const int columns = s.trimCol2 - s.trimCol1 + 1;
  const int rows = s.trimRow2 - s.trimRow1 + 1;

  // In place: both offsets are 0 or more, so that no pixel is overwritten before it is read.
  for (int r = 1; r <= rows; ++r) {
    const auto source = s.image.Row(r + s.trimRow1 - 1, s.trimCol1, s.trimCol2);
    std::copy(source.begin(), source.end(), s.image.Row(r, 1, columns).begin());
  }

  header.card(header.naxis1Card) = NumberCard("NAXIS1", std::to_string(columns), " / ");
  header.card(header.naxis2Card) = NumberCard("NAXIS2", std::to_string(rows), " / ");
  const std::string section = "Halmek snipped out section " + CornerText(s.trimCol1, s.trimRow1) + " to " +
                              CornerText(s.trimCol2, s.trimRow2);
  AppendCard(header, "HISTORY  " + section + " inclusive (col, row)");
  AppendCard(header, "OVERSCAN= '" + section + "'");
  static_cast<FitsHeader&>(frame) = std::move(header);
  frame.naxis1 = columns;
  frame.naxis2 = rows;

  s.frameTrimmed = true;
  s.workflow.trimEnabled = false;
  DropFrameState(s);
  ClearFrameStatus(s.workflow);
}

}  // namespace halmek
