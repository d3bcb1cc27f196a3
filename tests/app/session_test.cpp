// Tests of the tables and of what is asked of the session.
#include "app/session.h"

#include <gtest/gtest.h>

#include <utility>

#include "support/test_session.h"

namespace halmek::test {
namespace {

constexpr const char* outOfRange = "Error: 9  Subscript out of range.";

TEST(FixedTable, RefusesPlacesBeyondItsBounds) {
  FixedTable<int> table(200);
  table(0) = 1;
  table(200) = 7;
  EXPECT_EQ(table.Range(200, 200)[0], 7);
  EXPECT_EQ(table.Range(0, 200).size(), 201u);
  EXPECT_TRUE(table.Range(201, 200).empty() && table.Range(1, -1).empty());
  for (const int index : {-1, 201, 32768})
    EXPECT_EQ(RefusalOf([&] { table(index) = 0; }), outOfRange) << index;
  for (const auto& [first, last] : {std::pair{1, 201}, {-1, 3}})
    EXPECT_EQ(RefusalOf([&, f = first, l = last] { table.Range(f, l); }), outOfRange) << first;
}

TEST(FrameTable, HoldsFiveHundredRowsOfThreeThousandColumns) {
  FrameTable image;
  image(500, 3000) = 7;
  EXPECT_EQ(image.Row(500, 1, 3000)[2999], 7);
  EXPECT_TRUE(image.Row(1, 5, 4).empty());
  for (const auto& [row, column] : {std::pair{501, 1}, {1, 3001}, {-1, 1}, {1, -1}})
    EXPECT_EQ(RefusalOf([&, r = row, c = column] { image(r, c) = 0; }), outOfRange) << row << ',' << column;
  EXPECT_EQ(RefusalOf([&] { image.Row(1, 1, 3001); }), outOfRange);
}

TEST(FileNames, OfTextsTellTheSpectraOfBothPartsApart) {
  const auto session = SessionIn("/data");
  session->baseName = "star1";
  for (const int slot : {slots::spectrum, slots::arc1, slots::object})
    session->slot[slot].fileName = "star1_1D.fts";
  EXPECT_EQ(SpectrumTextName(*session, slots::spectrum), "star1_1D.txt");
  EXPECT_EQ(SpectrumTextName(*session, slots::arc1), "star1_1D.txt");
  EXPECT_EQ(SpectrumTextName(*session, slots::arc2), "") << "holds none";
  for (const char* name : {"star1_1D.fts", "star1_1Dcal.fts"}) {
    session->slot[slots::object].fileName = name;
    EXPECT_EQ(SpectrumTextName(*session, slots::object), "star1_1Dcal.txt");
  }
}

TEST(FileNames, AreJoinedAndCut) {
  EXPECT_EQ(FullName(*SessionIn("/data/night 1"), "a.fts"), "/data/night 1/a.fts");
  EXPECT_EQ(FullName(*SessionIn("/data"), "/other/a.fts"), "/other/a.fts");
  EXPECT_EQ(BaseName("star.2.fts") + BaseName("star"), "star.2star");
  EXPECT_EQ(LeafName("a.b/star.fts") + LeafName("star.fts"), "star.ftsstar.fts");
}

}  // namespace
}  // namespace halmek::test
