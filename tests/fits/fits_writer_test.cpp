// Saving of FITS files, read back by our reader and by CFITSIO.
#include "fits/fits_writer.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

#include "fits/fits_bytes.h"
#include "fits/fits_reader.h"
#include "fits/header.h"
#include "reduce/background.h"
#include "reduce/column_slice.h"
#include "reduce/crunch.h"
#include "support/test_session.h"

namespace halmek::test {
namespace {

class SaveFits : public testing::Test {
 protected:
  Warnings Save(int slot, int type) {
    s.slot[slot].savePixelType = type;
    return slot == 0 ? SaveFits2D(s, "out.fts", true) : SaveFits1D(s, slot, "out.fts", true);
  }
  std::string Written() const { return ReadFile(folder.File("out.fts")); }

  // A frame of 7 x 5 pixels from 100 on, and the spectrum of its third row in slot 3.
  void Extract() {
    SetFrame(s, 7, 5, [](int c, int r) { return r == 3 ? 100 + c : 0; });
    SetAperture(s, 3, 3);
    SetBackgroundRanges(s, 1, 2, 4, 5);
    FitBackground(s);
    CrunchFrame(s);
  }

  TemporaryFolder folder;
  std::unique_ptr<Session> session = SessionIn(folder.path());
  Session& s = *session;
};

TEST_F(SaveFits, AChangeOfTypeIsToldOnceByTheHeader) {
  const struct {
    int from, to;
    std::string bitpix, name;
  } cases[] = {{-32, 16, "16", "16 bit integer"},
               {-32, 17, "16", "16 bit unsigned"},
               {-32, 32, "32", "32 bit integer"},
               {17, -32, "-32", "32 bit real"}};
  for (const auto& c : cases) {
    for (int slot : {0, 4}) {
      SCOPED_TRACE(c.name);
      slot == 0 ? SetFrame(s, 2, 1, [](int, int) { return 1; }) : SetSpectrum(s, slot, {1, 2});
      Slot& header = s.slot[slot];
      header.pixelType = c.from;
      Save(slot, c.to);
      const std::string history = Padded("HISTORY  Halmek changed " + std::string(slot == 0 ? "" : "1-D ") +
                                         "data type to " + c.name);
      const std::string offset = NumberCard("BZERO", "32768.", " / Actual = BSCALE*file + BZERO");
      for (int times = 1; times <= 2; ++times, Save(slot, c.to)) {
        const Cards cards = CardsOf(header);
        EXPECT_TRUE(cards[1].starts_with(NumberCard("BITPIX", c.bitpix, " /")));
        EXPECT_EQ(std::ranges::count(cards, Padded(offset)), c.to == 17);
        EXPECT_EQ(cards.back(), history);
        EXPECT_EQ(std::ranges::count(cards, history), 1);
      }
    }
  }
}

// What other programs left in a header, and what of it a file of ours has.
TEST_F(SaveFits, DescribesTheDataByCardsThatStandFirstOnceAndInTheFixedFormat) {
  const Cards kept{"OBJECT  = 'M 31'", "NAXISX  = 7", "COMMENT NAXIS1 = 9", "BLANKED = 1"};
  const Cards dropped{"NAXIS1  = 99", "NAXIS3  = 3", "NAXIS4  = 2",     "BSCALE  = 2",   "BZERO   = 5",
                      "BLANK   = -1", "GROUPS  = T", "CHECKSUM= 'abc'", "DATASUM = '1'", "PCOUNT  = 0"};
  Cards cards{"SIMPLE  =                    T / kept", "BITPIX  = -32", "NAXIS   = 4", "NAXIS2  = 1.2D0",
              "NAXIS1  = 2.9"};
  for (size_t i = 0; i < dropped.size(); ++i) {
    cards.push_back(dropped[i]);
    if (i < kept.size())
      cards.push_back(kept[i]);
  }
  WriteFile(folder.File("in.fts"), FitsBytes(cards, std::string(64, '\0')));
  LoadFits2D(s, "in.fts");
  Save(0, -32);
  Cards expected{"SIMPLE  =                    T / kept", "BITPIX  =                  -32 / bits per pixel",
                 "NAXIS   =                    2 / number of axes",
                 "NAXIS1  =                    2 / length of axis 1",
                 "NAXIS2  =                    1 / length of axis 2"};
  expected.insert(expected.end(), kept.begin(), kept.end());
  expected.emplace_back("HISTORY  Halmek saved this file");
  EXPECT_EQ(ReadByCfitsio(folder.File("out.fts")).cards, expected);
}

TEST_F(SaveFits, EndsHeaderAndDataWithWholeRecords) {
  const struct {
    int columns, type, cards;
    size_t dataStart, data, size;
  } cases[] = {{1000, -32, 7, 2880, 4000, 8640},
               {720, -32, 7, 2880, 2880, 5760},
               {719, -32, 35, 2880, 2876, 5760},
               {1440, 16, 36, 5760, 2880, 8640}};
  for (const auto& c : cases) {
    SetFrame(s, c.columns, 1, [](int, int) { return 1; });
    s.slot[0].pixelType = c.type;
    while (s.slot[0].cardCount < c.cards - 1)
      AppendCard(s.slot[0], "COMMENT");
    Save(0, c.type);
    const std::string bytes = Written();
    ASSERT_EQ(bytes.size(), c.size) << c.columns;
    const auto end = static_cast<size_t>(c.cards) * 80;
    EXPECT_EQ(bytes.substr(end, c.dataStart - end), "END" + std::string(c.dataStart - end - 3, ' '));
    EXPECT_EQ(bytes.find_first_not_of('\0', c.dataStart + c.data), std::string::npos);
  }
}

TEST_F(SaveFits, TheExtractedSpectrumGetsTheFramesHeaderOfOneRowHoweverOftenItIsSaved) {
  Extract();
  const Slot& slot = s.slot[3];
  for (int type : {17, 17, -32, 16, -32}) {
    SCOPED_TRACE(type);
    Save(3, type);
    // The extraction's HISTORY card, one for the type, and for 17 a BZERO card.
    EXPECT_EQ(slot.cardCount, 7 + (type != -32) + (type == 17));
    EXPECT_EQ(slot.card(slot.cardCount).starts_with("HISTORY  Halmek changed 1-D"), type != -32);
    const Image image = ReadByCfitsio(folder.File("out.fts"));
    ASSERT_EQ(image.axes, (std::vector<long>{7, 1}));
    EXPECT_EQ(image.pixels, (std::vector<double>{101, 102, 103, 104, 105, 106, 107}));
    // Another frame, or another type of the frame, does not change what the spectrum came from.
    SetFrame(s, 3, 3, [](int, int) { return 1; });
    Save(0, type);
  }
}

TEST_F(SaveFits, WarnsOfPixelsThatReadBackChanged) {
  const std::string reason = " will read back changed, because 16 bits of this kind do not hold the values ";
  SetSpectrum(s, 4, {1, 32767, -32768});
  EXPECT_EQ(Save(4, 16), Warnings{});
  SetSpectrum(s, 4, {1, 40000});
  EXPECT_EQ(Save(4, 16), Warnings{"1 pixel" + reason + "1 to 40000.  Save as 16-bit unsigned or 32-bit."});
  SetSpectrum(s, 4, {-1, -2, 5});
  EXPECT_EQ(Save(4, 17), Warnings{"2 pixels" + reason + "-2 to 5.  Save as 32-bit."});
}

TEST_F(SaveFits, ARefusedSaveWritesAndChangesNothing) {
  const std::tuple<int, double, const char*> cases[] = {
      {-64, 1, "Sorry; saving to 64-bit is not available at this time.  Try 32-bit real."},
      {16, 65535.25, "Pixel value > 65535.  Save as 32-bit int or 32-bit real."},
      {32, 1e10, "Error: 6  Error: Overflow."},
      {0, 1, "Sorry, this program does not save this pixel type.  Try 32-bit real."},
  };
  for (const auto& [type, value, message] : cases) {
    SetSpectrum(s, 4, {1, value});
    const Cards cards = CardsOf(s.slot[4]);
    EXPECT_EQ(RefusalOf([&, to = type] { Save(4, to); }), message);
    EXPECT_EQ(CardsOf(s.slot[4]), cards);
    EXPECT_EQ(std::pair(s.slot[4].pixelType, s.slot[4].savedFile), std::pair(-32, std::string()));
  }
  SetSpectrum(s, 4, {1});
  s.slot[4].bitpixCard = 0;
  EXPECT_EQ(RefusalOf([&] { Save(4, -32); }),
            "This header has no BITPIX card, so that it cannot be saved.  Please load the file again.");
  EXPECT_TRUE(FilesIn(folder.path()).empty() && s.writtenFiles.empty());
}

TEST_F(SaveFits, AFullHeaderIsRefusedBeforeAnythingChanges) {
  // Type 17 needs a card more. A HISTORY card that says whose the file is goes where there is room for it.
  const struct {
    int slot, type, cards;
    bool fits;
  } cases[] = {{0, 16, 200, false}, {0, -32, 200, true}, {0, 17, 199, false}, {0, 17, 198, true},
               {3, 16, 199, true},  {3, 17, 199, false}, {3, 17, 198, true}};
  for (const auto& c : cases) {
    SCOPED_TRACE(testing::Message() << c.slot << " " << c.type << " " << c.cards);
    Extract();
    Slot& slot = s.slot[c.slot];
    FitsHeader& source = c.slot == 3 ? s.crunchHeader : slot;
    while (source.cardCount < c.cards)
      AppendCard(source, "COMMENT");
    const auto state = [&] { return std::tuple(slot.cardCount, slot.naxis2, slot.pixelType, slot.fileName); };
    const auto before = state();
    const std::string refusal = c.fits ? "" : "Error: 9  Subscript out of range.";
    EXPECT_EQ(RefusalOf([&] { Save(c.slot, c.type); }), refusal);
    EXPECT_EQ(state() == before, !c.fits);
  }
}

}  // namespace
}  // namespace halmek::test
