// Trim, bad-column repair and zap: the operations that change the frame in place.
#include <gtest/gtest.h>

#include <array>
#include <optional>
#include <tuple>
#include <utility>

#include "fits/header.h"
#include "plot/number_text.h"
#include "reduce/bad_column.h"
#include "reduce/trim.h"
#include "reduce/zap.h"
#include "support/test_session.h"

namespace halmek::test {
namespace {

class FrameRepair : public testing::Test {
 protected:
  void Set(int columns, int rows) {
    SetFrame(s, columns, rows, [](int c, int r) { return 10000.0 * r + c; });
  }
  // One row of the values given, with columns first..last selected.
  void SetRow(const std::vector<double>& values, int first, int last) {
    SetFrame(s, static_cast<int>(values.size()), 1, [&](int c, int) { return values[c - 1]; });
    s.rowPlot.plotRow = 1;
    SelectForZap(s.rowPlot, last);
    SelectForZap(s.rowPlot, first);
  }

  std::unique_ptr<Session> session = SessionIn(".");
  Session& s = *session;
};

TEST_F(FrameRepair, TrimNamesTheFirstFaultAndChangesNothingButTheCornersTyped) {
  const std::tuple<int, int, int, int, const char*> cases[] = {
      {0, 0, -1, -1, "Col 1 value must be > 0.  Please try again."},
      {9, 0, 8, -1, "Col 2 value must be > Col 1 value.  Please try again."},
      {9, 0, 21, -1, "Col 2 value must be <= NAXIS1.  Please try again."},
      {9, 0, 20, -1, "Row 1 value must be > 0.  Please try again."},
      {9, 5, 20, 4, "Row 2 value must be > Row 1 value.  Please try again."},
      {9, 5, 20, 11, "Row 2 value must be <= NAXIS2.  Please try again."},
  };
  for (const auto& [col1, row1, col2, row2, message] : cases) {
    Set(20, 10);
    EXPECT_EQ(
        RefusalOf([&, at = std::array{col1, row1, col2, row2}] { TrimTo(s, at[0], at[1], at[2], at[3]); }),
        message);
    EXPECT_EQ(s.trimCol1 * 100 + s.trimRow2, col1 * 100 + row2);
    EXPECT_EQ(s.slot[0].naxis1 * 100 + s.slot[0].naxis2 + s.slot[0].cardCount + s.frameTrimmed, 2016);
  }
  EXPECT_EQ(RefusalOf([&] { TrimTo(s, 1, 1, 5, 32768); }), "Error: 6  Error: Overflow.");
  EXPECT_EQ(s.trimCol1, 9);
  while (s.slot[0].cardCount < 199)
    AppendCard(s.slot[0], "COMMENT");
  EXPECT_EQ(RefusalOf([&] { TrimTo(s, 2, 2, 5, 5); }), "Error: 9  Subscript out of range.");
  EXPECT_EQ(s.slot[0].naxis1 + s.image(1, 1), 10021);
}

TEST_F(FrameRepair, TrimMovesThePixelsAndSaysSoInTheHeader) {
  const std::tuple<int, int, int, int, int, int, std::string> cases[] = {
      {1800, 130, 21, 5, 1220, 120, "(21,5) to (1220,120)"}, {20, 10, 7, 8, 7, 8, "(7,8) to (7,8)"}};
  for (const auto& [columns, rows, col1, row1, col2, row2, corners] : cases) {
    Set(columns, rows);
    s.frameTrimmed = false;
    TrimTo(s, col1, row1, col2, row2);

    const Slot& frame = s.slot[0];
    ASSERT_EQ(std::pair(frame.naxis1, frame.naxis2), std::pair(col2 - col1 + 1.0, row2 - row1 + 1.0));
    for (int row = 1; row <= frame.naxis2; ++row)
      for (int column = 1; column <= frame.naxis1; ++column)
        ASSERT_EQ(s.image(row, column), 10000.0 * (row + row1 - 1) + column + col1 - 1);
    const std::string section = "Halmek snipped out section " + corners;
    EXPECT_EQ(frame.card(4), NumberCard("NAXIS1", GeneralText(frame.naxis1), " / "));
    EXPECT_EQ(frame.card(5), NumberCard("NAXIS2", GeneralText(frame.naxis2), " / "));
    EXPECT_EQ(frame.card(7), "HISTORY  " + section + " inclusive (col, row)");
    EXPECT_EQ(frame.card(8), "OVERSCAN= '" + section + "'");
    EXPECT_EQ(frame.cardCount, 8);
    EXPECT_TRUE(s.frameTrimmed && !s.workflow.trimEnabled);
  }
}

TEST_F(FrameRepair, ABadColumnGetsTheMedianOfThreePixelsOnEitherSide) {
  const std::vector<double> row{20, 2, 10, 777, 3, 30, 1};
  SetFrame(s, 7, 2, [&](int c, int r) { return r == 1 ? row[c - 1] : 5; });
  FixColumn(s, 4);
  EXPECT_EQ(std::pair(s.image(1, 4), s.image(2, 4)), std::pair(6.5, 5.0));

  const std::string refused = "Enter a valid column number, please - not within 3 pixels of the edge.";
  for (const auto& [column, accepted] :
       {std::pair{-4, false}, {3, false}, {4, true}, {17, true}, {18, false}, {30000, false}}) {
    Set(20, 1);
    EXPECT_EQ(RefusalOf([&, c = column] { FixColumn(s, c); }), accepted ? "" : refused) << column;
    EXPECT_EQ(s.badColumn, column);
    EXPECT_EQ(s.workflow.fixColumnEnabled, !accepted);
  }
  EXPECT_EQ(RefusalOf([&] { FixColumn(s, 40000); }), "Error: 6  Error: Overflow.");
}

TEST_F(FrameRepair, TheBrightestRowIsLookedForTowardTheMiddle) {
  for (const auto& [columns, column, probe] :
       {std::array{1001, 500, 502}, {1001, 501, 499}, {1000, 500, 502}, {1000, 501, 499}}) {
    // Rows 6 and 8 of the probe column are brightest, alike; row 2 is, everywhere else.
    SetFrame(s, columns, 9, [probed = probe](int c, int r) {
      return c == probed ? (r == 6 || r == 8 ? 50 : 1) : (r == 2 ? 90 : 3);
    });
    FixColumn(s, column);
    EXPECT_EQ(ProposedStartRow(s), 2) << column << " of " << columns;
    EXPECT_EQ(s.traceRow, 6);
  }
  SetFrame(s, 20, 3, [](int, int) { return -99999; });
  FixColumn(s, 5);
  EXPECT_EQ(s.traceRow, 6);
}

TEST_F(FrameRepair, ZapAveragesUpToNPixelsOnEachSideOnePixelAwayFromTheSelection) {
  const std::tuple<int, int, int, int, std::vector<int>> cases[] = {
      {100, 50, 52, 3, {46, 47, 48, 54, 55, 56}},
      {100, 55, 60, 1, {53, 62}},
      {100, 3, 3, 3, {1, 5, 6, 7}},
      {100, 98, 99, 2, {95, 96}},
      {6, 2, 4, 32767, {6}}};
  for (const auto& [columns, first, last, neighbours, used] : cases) {
    std::vector<double> row;
    for (int i = 1; i <= columns; ++i)
      row.push_back(i * i % 97);
    SetRow(row, first, last);
    s.rowPlot.zapNeighbours = neighbours;
    double mean = 0;
    for (int i : used)
      mean += row[i - 1] / static_cast<double>(used.size());
    EXPECT_DOUBLE_EQ(Zap(s).value(), mean) << first;
    for (int i = 1; i <= columns; ++i)
      EXPECT_DOUBLE_EQ(s.image(1, i), i >= first && i <= last ? mean : row[i - 1]);
    EXPECT_TRUE(!s.rowPlot.zapSelected && UndoZap(s));
    const auto restored = s.image.Row(1, 1, columns);
    EXPECT_EQ(std::vector<double>(restored.begin(), restored.end()), row);
  }
  EXPECT_EQ(NeighboursFor(0) * 100 + NeighboursFor(-2) * 10 + NeighboursFor(1), 331);
}

TEST_F(FrameRepair, ZapWithNothingToAverageIsRefusedAndWithoutASelectionDoesNothing) {
  SetRow({1, 2, 3, 4, 5}, 2, 4);
  EXPECT_EQ(RefusalOf([&] { Zap(s); }), "There are no pixels to average next to this selection.");
  EXPECT_TRUE(s.rowPlot.zapSelected);
  ClearZapSelection(s.rowPlot);
  EXPECT_EQ(Zap(s), std::nullopt);
  EXPECT_EQ(s.image(1, 3), 3);
  EXPECT_FALSE(UndoZap(s));
}

}  // namespace
}  // namespace halmek::test
