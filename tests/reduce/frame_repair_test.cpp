// Trim, bad-column repair and zap: the operations that change the frame in place.
#include <gtest/gtest.h>

#include <map>
#include <memory>
#include <string>
#include <vector>

#include "fits/header.h"
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
  const struct {
    int col1, row1, col2, row2;
    const char* message;
  } cases[] = {
      {0, 0, -1, -1, "Col 1 value must be > 0.  Please try again."},
      {9, 0, 8, -1, "Col 2 value must be > Col 1 value.  Please try again."},
      {9, 0, 21, -1, "Col 2 value must be <= NAXIS1.  Please try again."},
      {9, 0, 20, -1, "Row 1 value must be > 0.  Please try again."},
      {9, 5, 20, 4, "Row 2 value must be > Row 1 value.  Please try again."},
      {9, 5, 20, 11, "Row 2 value must be <= NAXIS2.  Please try again."},
  };
  for (const auto& c : cases) {
    Set(20, 10);
    EXPECT_EQ(RefusalOf([&] { TrimTo(s, c.col1, c.row1, c.col2, c.row2); }), c.message);
    EXPECT_EQ(s.trimCol1, c.col1);
    EXPECT_EQ(s.trimRow2, c.row2);
    EXPECT_EQ(s.slot[0].naxis1 * 100 + s.slot[0].naxis2 + s.slot[0].cardCount, 2016);
    EXPECT_FALSE(s.frameTrimmed);
  }
  EXPECT_EQ(RefusalOf([&] { TrimTo(s, 1, 1, 5, 32768); }), "Error: 6  Error: Overflow.");
  EXPECT_EQ(s.trimCol1, 9);
  while (s.slot[0].cardCount < 199)
    AppendCard(s.slot[0], "COMMENT");
  EXPECT_EQ(RefusalOf([&] { TrimTo(s, 2, 2, 5, 5); }), "Error: 9  Subscript out of range.");
  EXPECT_EQ(s.slot[0].naxis1 + s.image(1, 1), 10021);
}

TEST_F(FrameRepair, TrimMovesThePixelsAndSaysSoInTheHeader) {
  const struct {
    int columns, rows, col1, row1, col2, row2;
    const char *naxis1, *naxis2, *section;
  } cases[] = {
      {1800, 130, 21, 5, 1220, 120, "NAXIS1  =                 1200/ ", "NAXIS2  =                 116/ ",
       "snipped out section (21,5) to (1220,120) inclusive (col, row)"},
      {20, 10, 1, 1, 20, 10, "NAXIS1  =                 20/ ", "NAXIS2  =                 10/ ",
       "snipped out section (1,1) to (20,10) inclusive (col, row)"},
      {20, 10, 7, 8, 7, 8, "NAXIS1  =                 1/ ", "NAXIS2  =                 1/ ",
       "snipped out section (7,8) to (7,8) inclusive (col, row)"},
  };
  for (const auto& c : cases) {
    Set(c.columns, c.rows);
    s.frameTrimmed = false;
    s.slice.apertureFirstRow = s.slice.backgroundClicks = s.rowPlot.undoRow = 4;
    s.background.backgroundFitted = s.workflow.crunchEnabled = true;
    s.workflow.sliceStatus = doneText;
    TrimTo(s, c.col1, c.row1, c.col2, c.row2);

    const Slot& frame = s.slot[0];
    ASSERT_EQ(frame.naxis1, c.col2 - c.col1 + 1);
    ASSERT_EQ(frame.naxis2, c.row2 - c.row1 + 1);
    for (int row = 1; row <= frame.naxis2; ++row)
      for (int column = 1; column <= frame.naxis1; ++column)
        ASSERT_EQ(s.image(row, column), 10000.0 * (row + c.row1 - 1) + column + c.col1 - 1);
    EXPECT_EQ(frame.card(4), c.naxis1);
    EXPECT_EQ(frame.card(5), c.naxis2);
    EXPECT_EQ(frame.cardCount, 8);
    EXPECT_EQ(frame.card(7), std::string("HISTORY  Halmek ") + c.section);
    EXPECT_EQ(frame.card(8), std::string("OVERSCAN  Halmek ") + c.section);
    EXPECT_TRUE(s.frameTrimmed && !s.workflow.trimEnabled && !s.workflow.crunchEnabled);
    EXPECT_FALSE(s.background.backgroundFitted);
    EXPECT_EQ(s.slice.apertureFirstRow + s.slice.backgroundClicks + s.rowPlot.undoRow, 0);
    EXPECT_EQ(s.workflow.sliceStatus, "");
  }
}

TEST_F(FrameRepair, ABadColumnGetsTheMedianOfThreePixelsOnEitherSide) {
  const std::vector<double> row{20, 2, 10, 777, 3, 30, 1};
  SetFrame(s, 7, 2, [&](int c, int r) { return r == 1 ? row[c - 1] : 5; });
  FixColumn(s, 4);
  EXPECT_EQ(s.image(1, 4), 6.5);
  EXPECT_EQ(s.image(2, 4), 5);
  EXPECT_FALSE(s.workflow.fixColumnEnabled);
}

TEST_F(FrameRepair, ABadColumnWithinThreePixelsOfTheEdgeIsRefused) {
  const std::string refused = "Enter a valid column number, please - not within 3 pixels of the edge.";
  for (const auto& [column, accepted] :
       std::map<int, bool>{{-4, false}, {3, false}, {4, true}, {17, true}, {18, false}, {30000, false}}) {
    Set(20, 1);
    EXPECT_EQ(RefusalOf([&] { FixColumn(s, column); }), accepted ? "" : refused) << column;
    EXPECT_EQ(s.badColumn, column);
    EXPECT_EQ(s.workflow.fixColumnEnabled, !accepted);
  }
  EXPECT_EQ(RefusalOf([&] { FixColumn(s, 40000); }), "Error: 6  Error: Overflow.");
}

TEST_F(FrameRepair, TheBrightestRowIsLookedForTowardTheMiddle) {
  const struct {
    int columns, column, probe;
  } cases[] = {{1001, 500, 502}, {1001, 501, 499}, {1001, 502, 500}, {1000, 500, 502}, {1000, 501, 499}};
  for (const auto& c : cases) {
    // Rows 6 and 8 of the probe column are brightest, alike; row 2 is, everywhere else.
    SetFrame(s, c.columns, 9, [&](int column, int r) {
      return column == c.probe ? (r == 6 || r == 8 ? 50 : 1) : (r == 2 ? 90 : 3);
    });
    EXPECT_EQ(FixColumn(s, c.column), 2) << c.column << " of " << c.columns;
    EXPECT_EQ(s.traceRow, 6);
  }
  SetFrame(s, 20, 3, [](int, int) { return -99999; });
  FixColumn(s, 5);
  EXPECT_EQ(s.traceRow, 6);
}

TEST_F(FrameRepair, ZapAveragesUpToNPixelsOnEachSideOnePixelAwayFromTheSelection) {
  const struct {
    int columns, first, last, n;
    std::vector<int> used;
  } cases[] = {
      {100, 50, 52, 3, {46, 47, 48, 54, 55, 56}},
      {100, 55, 60, 1, {53, 62}},
      {100, 2, 3, 3, {5, 6, 7}},
      {100, 3, 3, 3, {1, 5, 6, 7}},
      {100, 98, 99, 2, {95, 96}},
      {6, 2, 4, 32767, {6}},
  };
  for (const auto& c : cases) {
    std::vector<double> row;
    for (int i = 1; i <= c.columns; ++i)
      row.push_back(i * i % 97);
    SetRow(row, c.first, c.last);
    s.rowPlot.zapNeighbours = c.n;
    double mean = 0;
    for (int i : c.used)
      mean += row[i - 1] / static_cast<double>(c.used.size());
    EXPECT_DOUBLE_EQ(Zap(s).value(), mean) << c.first;
    for (int i = 1; i <= c.columns; ++i)
      EXPECT_DOUBLE_EQ(s.image(1, i), i >= c.first && i <= c.last ? mean : row[i - 1]);
    EXPECT_FALSE(s.rowPlot.zapSelected);

    EXPECT_TRUE(UndoZap(s));
    for (int i = 1; i <= c.columns; ++i)
      EXPECT_EQ(s.image(1, i), row[i - 1]);
  }
  EXPECT_EQ(NeighboursFor(0), 3);
  EXPECT_EQ(NeighboursFor(-2), 3);
  EXPECT_EQ(NeighboursFor(1), 1);
}

TEST_F(FrameRepair, ZapWithNothingToAverageIsRefusedAndChangesNothing) {
  SetRow({1, 2, 3, 4, 5}, 2, 4);
  EXPECT_EQ(RefusalOf([&] { Zap(s); }), "There are no pixels to average next to this selection.");
  EXPECT_EQ(s.image(1, 3), 3);
  EXPECT_TRUE(s.rowPlot.zapSelected);
  EXPECT_FALSE(UndoZap(s));
}

TEST_F(FrameRepair, ZapWithoutASelectionDoesNothing) {
  SetRow({1, 2, 3, 4, 5, 6, 7}, 4, 4);
  ClearZapSelection(s.rowPlot);
  EXPECT_EQ(RefusalOf([&] { Zap(s); }), "");
  EXPECT_EQ(s.image(1, 4), 4);
  EXPECT_FALSE(UndoZap(s));
}

TEST_F(FrameRepair, UndoGoesBackToTheRowThatWasZapped) {
  Set(20, 3);
  s.rowPlot.plotRow = 2;
  SelectForZap(s.rowPlot, 10);
  Zap(s);
  s.rowPlot.plotRow = 3;
  SelectForZap(s.rowPlot, 1);
  for (int time : {1, 2}) {
    EXPECT_TRUE(UndoZap(s)) << time;
    EXPECT_EQ(s.image(2, 10), 20010);
    EXPECT_EQ(s.image(3, 10), 30010);
    EXPECT_EQ(s.rowPlot.plotRow, 2);
    EXPECT_FALSE(s.rowPlot.zapSelected);
  }
}

}  // namespace
}  // namespace halmek::test
