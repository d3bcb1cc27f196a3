// Saving of FITS files, read back by our reader and by CFITSIO.
#include "fits/fits_writer.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <tuple>
#include <vector>

#include "fits/fits_bytes.h"
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
    return slot == 0 ? SaveFits2D(s, "out.fts") : SaveFits1D(s, slot, "out.fts");
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

TEST_F(SaveFits, AChangeOfTypeIsWrittenIntoTheHeaderOnce) {
  const std::string noOffset = "                    0 / ";
  const std::string offset = "               32768. / Actual = BSCALE*file + BZERO";
  const struct {
    int from, to;
    std::string bitpix, bzero, history;
  } cases[] = {{-32, 16, "                   16", noOffset, "16 bit integer"},
               {-32, 17, "                   16", offset, "16 bit unsigned"},
               {-32, 32, "                   32", noOffset, "32 bit integer"},
               {17, -32, "                  -32", noOffset, "32 bit real"},
               {16, -64, "                  -64", noOffset, "64 bit real"}};
  for (const auto& c : cases) {
    for (int slot : {0, 4}) {
      SCOPED_TRACE(c.history);
      slot == 0 ? SetFrame(s, 2, 1, [](int, int) { return 1; }) : SetSpectrum(s, slot, {1, 2});
      Slot& header = s.slot[slot];
      header.pixelType = c.from;
      header.bzeroCard = AppendCard(header, "BZERO   = 5");
      const int cards = header.cardCount;
      EXPECT_EQ(RefusalOf([&] { Save(slot, c.to); }).empty(), c.to != -64);

      EXPECT_EQ(header.card(header.bitpixCard), Padded("BITPIX  =" + c.bitpix + " / bits per pixel"));
      EXPECT_EQ(header.card(header.bzeroCard), Padded("BZERO   =" + c.bzero));
      const std::string changed = slot == 0 ? "data type" : "1-D data type";
      EXPECT_EQ(header.card(cards + 1), Padded("HISTORY  Halmek changed " + changed + " to " + c.history));
      EXPECT_EQ(header.bitpix + header.bzero, c.to == 17 ? 32784 : c.to);
      RefusalOf([&] { Save(slot, c.to); });
      EXPECT_EQ(header.cardCount, cards + 1);
    }
  }
}

TEST_F(SaveFits, LeavesTheHeaderAsItIsForTheSameTypeButForCardLengthAndThirdAxis) {
  SetFrame(s, 2, 1, [](int, int) { return 1; });
  Slot& frame = s.slot[0];
  AppendCard(frame, "BZERO   = 5 kept");
  AppendCard(frame, std::string(79, '-') + "81 and more");
  frame.naxis3Card = AppendCard(frame, "NAXIS3  = 3");
  frame.naxis3 = 3;
  std::string cards;
  for (int k = 1; k <= frame.cardCount - 1; ++k)
    cards += Padded(frame.card(k));
  Save(0, -32);
  EXPECT_EQ(Written().substr(0, 2880), cards + Padded("NAXIS3  =                    1 /  ") + "END" +
                                           std::string(2880 - cards.size() - 83, ' '));
}

TEST_F(SaveFits, PadsHeaderAndDataWithBlanksByAWholeRecordWhereTheyAreFull) {
  const struct {
    int columns, type, cards;
    size_t dataStart, data, size;
  } cases[] = {{1000, -32, 6, 2880, 4000, 8640},
               {720, -32, 6, 2880, 2880, 8640},
               {719, -32, 35, 2880, 2876, 5760},
               {1440, 16, 36, 5760, 2880, 11520}};
  for (const auto& c : cases) {
    SetFrame(s, c.columns, 1, [](int, int) { return 1; });
    s.slot[0].pixelType = c.type;
    while (s.slot[0].cardCount < c.cards)
      AppendCard(s.slot[0], "COMMENT");
    Save(0, c.type);
    const std::string bytes = Written();
    ASSERT_EQ(bytes.size(), c.size) << c.columns;
    const auto end = static_cast<size_t>(c.cards) * 80;
    EXPECT_EQ(bytes.substr(end, c.dataStart - end), "END" + std::string(c.dataStart - end - 3, ' '));
    EXPECT_EQ(bytes.find_last_not_of(' '), c.dataStart + c.data - 1);
  }
}

TEST_F(SaveFits, TheExtractedSpectrumGetsTheFramesHeaderOfOneRowHoweverOftenItIsSaved) {
  Extract();
  const Slot& slot = s.slot[3];
  for (int type : {17, 17, -32, 16, -32}) {
    SCOPED_TRACE(type);
    Save(3, type);
    EXPECT_EQ(slot.card(slot.naxis2Card), Padded("NAXIS2  =                    1 /"));
    // A HISTORY card, and for 17 a BZERO card.
    EXPECT_EQ(slot.cardCount, 6 + (type != -32) + (type == 17));
    EXPECT_EQ(slot.card(7).starts_with("HISTORY  Halmek changed 1-D"), type != -32);
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

TEST_F(SaveFits, ARefusedSaveWritesNothing) {
  const std::tuple<int, double, const char*> cases[] = {
      {-64, 1, "Sorry; saving to 64-bit is not available at this time.  Try 32-bit real."},
      {16, 65535.25, "Pixel value > 65535.  Save as 32-bit int or 32-bit real."},
      {32, 1e10, "Error: 6  Error: Overflow."},
      {0, 1, "Sorry, this program does not save this pixel type.  Try 32-bit real."},
  };
  for (const auto& [type, value, message] : cases) {
    SetSpectrum(s, 4, {1, value});
    EXPECT_EQ(RefusalOf([&, to = type] { Save(4, to); }), message);
  }
  SetSpectrum(s, 4, {1});
  s.slot[4].bitpixCard = 0;
  EXPECT_EQ(RefusalOf([&] { Save(4, -32); }),
            "This header has no BITPIX card, so that it cannot be saved.  Please load the file again.");
  EXPECT_TRUE(FilesIn(folder.path()).empty() && s.writtenFiles.empty());
}

TEST_F(SaveFits, AFullHeaderIsRefusedBeforeAnythingChanges) {
  // Type 17 needs a card more where there is no BZERO.
  const struct {
    int slot, type, cards;
    bool fits;
  } cases[] = {{0, 16, 200, false}, {0, -32, 200, true}, {0, 17, 199, false}, {0, 17, 198, true},
               {3, 16, 199, true},  {3, 17, 199, false}, {3, 17, 198, true}};
  for (const auto& c : cases) {
    SCOPED_TRACE(testing::Message() << c.slot << " " << c.type << " " << c.cards);
    Extract();
    Slot& slot = s.slot[c.slot];
    // The spectrum has one card more than the header it is saved with.
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
