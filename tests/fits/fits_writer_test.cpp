// Saving of FITS files, which our reader and CFITSIO read back, those of random pixels and headers too.
#include "fits/fits_writer.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cfloat>
#include <cmath>
#include <random>
#include <sstream>
#include <tuple>

#include "fits/fits_bytes.h"
#include "fits/fits_reader.h"
#include "fits/header.h"
#include "reduce/background.h"
#include "reduce/column_slice.h"
#include "reduce/crunch.h"
#include "reduce/trim.h"
#include "support/test_session.h"

namespace halmek::test {
namespace {

class SaveFits : public testing::Test {
 protected:
  Warnings Save(int slot, int type) {
    s.slot[slot].savePixelType = type;
    return slot == 0 ? SaveFits2D(s, "out.fts", true) : SaveFits1D(s, slot, "out.fts", true);
  }

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
  const std::tuple<int, int, std::string, std::string> cases[] = {{-32, 16, "16", "16 bit integer"},
                                                                  {-32, 17, "16", "16 bit unsigned"},
                                                                  {-32, 32, "32", "32 bit integer"},
                                                                  {17, -32, "-32", "32 bit real"}};
  const std::string offset = NumberCard("BZERO", "32768.", " / Actual = BSCALE*file + BZERO");
  for (const auto& [from, to, bitpix, name] : cases)
    for (const int slot : {0, 4}) {
      SCOPED_TRACE(name);
      slot == 0 ? SetFrame(s, 2, 1, [](int, int) { return 1; }) : SetSpectrum(s, slot, {1, 2});
      s.slot[slot].pixelType = from;
      const std::string history =
          Padded("HISTORY  Halmek changed " + std::string(slot == 0 ? "" : "1-D ") + "data type to " + name);
      for (const char* time : {"first", "second"}) {
        Save(slot, to);
        const Cards cards = CardsOf(s.slot[slot]);
        EXPECT_TRUE(cards[1].starts_with(NumberCard("BITPIX", bitpix, " /"))) << time;
        EXPECT_EQ(std::ranges::count(cards, Padded(offset)), to == 17) << time;
        EXPECT_EQ(cards.back(), history) << time;
        EXPECT_EQ(std::ranges::count(cards, history), 1) << time;
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
  // The columns of one row, their type, the cards, where the data start and what the file has in all.
  const std::tuple<int, int, int, size_t, size_t> cases[] = {{1000, -32, 7, 2880, 8640},
                                                             {720, -32, 7, 2880, 5760},
                                                             {719, -32, 35, 2880, 5760},
                                                             {1440, 16, 36, 5760, 8640}};
  for (const auto& [columns, type, cards, dataStart, size] : cases) {
    SetFrame(s, columns, 1, [](int, int) { return 1; });
    s.slot[0].pixelType = type;
    while (s.slot[0].cardCount < cards - 1)
      AppendCard(s.slot[0], "COMMENT");
    Save(0, type);
    const std::string bytes = ReadFile(folder.File("out.fts"));
    ASSERT_EQ(bytes.size(), size) << columns;
    const size_t end = cards * 80, dataEnd = dataStart + columns * std::abs(type) / 8;
    EXPECT_EQ(bytes.substr(end, dataStart - end), "END" + std::string(dataStart - end - 3, ' '));
    EXPECT_EQ(bytes.find_first_not_of('\0', dataEnd), std::string::npos);
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
  const std::tuple<int, int, int, bool> cases[] = {
      {0, 16, 200, false}, {0, -32, 200, true}, {0, 17, 199, false}, {0, 17, 198, true},
      {3, 16, 199, true},  {3, 17, 199, false}, {3, 17, 198, true}};
  for (const auto& [number, type, cards, fits] : cases) {
    SCOPED_TRACE(testing::Message() << number << " " << type << " " << cards);
    Extract();
    Slot& slot = s.slot[number];
    FitsHeader& source = number == 3 ? s.crunchHeader : slot;
    while (source.cardCount < cards)
      AppendCard(source, "COMMENT");
    const auto state = [&] { return std::tuple(slot.cardCount, slot.naxis2, slot.pixelType, slot.fileName); };
    const auto before = state();
    EXPECT_EQ(RefusalOf([&, n = number, to = type] { Save(n, to); }),
              fits ? "" : "Error: 9  Subscript out of range.");
    EXPECT_EQ(state() == before, !fits);
  }
}

// Cards as cameras and other programs leave them: of other data, twice, in another form, or of what no longer
// holds when the frame is cut or summed.
const char* const strangeCards =
    "NAXIS1  = 999;NAXIS2  = 1;NAXIS3  = 2;NAXIS4  =                    2;NAXIS   = 4;BITPIX  = 8;"
    "BSCALE  = 1.;BSCALE  = 0.5;BZERO   = 32768.;BZERO   = -12.5;BLANK   = 7;BLANK   = -32768;"
    "CHECKSUM= 'hcHjjc9ghc';DATASUM = '2503531142';GROUPS  =                    T;"
    "PCOUNT  =                    3;GCOUNT  =                    2;EXTEND  =                    T;"
    "XTENSION= 'IMAGE   ';CRPIX1  = 100;CRVAL1  = 4000.;CD1_1   = 0.5;CTYPE1  = 'RA---TAN';"
    "CTYPE2  = 'DEC--TAN';CRPIX2  = 1.5E2;CDELT1  = 2;LTV1    = -3.;LTM1_1  = 1.0;"
    "DATASEC = '[1:60,1:12]';TRIMSEC = '[3:8,1:5]';CCDSEC  = '[1:2048,1:512]';WCSDIM  = 2;"
    "DATAMAX = 1000.;OBJECT  = 'again';ENDING  = 'O''Hara / x' / y";

class RandomFrames : public SaveFits {
 protected:
  int Below(int end) { return static_cast<int>(random() % static_cast<unsigned>(end)); }
  double Uniform() { return std::ldexp(static_cast<double>(random()), -32); }
  template <class List>
  auto OneOf(const List& list) {
    return list[static_cast<size_t>(Below(static_cast<int>(std::size(list))))];
  }

  // Takes a whole number of columns or rows in one of the forms in which it is read.
  std::string Form(int number) {
    const std::string text = std::to_string(number);
    const std::string forms[] = {std::string(20 - text.size(), ' ') + text, text, text + ".7", text + ".0E0",
                                 std::to_string(number / 10) + "." + std::to_string(number % 10) + "D1"};
    return OneOf(forms);
  }

  void WriteStrange(const std::string& name, int columns, int rows) {
    const int bitpix = OneOf(std::array{16, 32, -32, -64}), size = bitpix < 0 ? -bitpix / 8 : 2;
    Cards strange, others;
    std::istringstream list(strangeCards);
    for (std::string card; std::getline(list, card, ';');)
      strange.push_back(card);
    for (int k = Below(40); k > 0; --k)
      others.push_back(OneOf(strange));
    others.push_back("BITPIX  = " + std::to_string(bitpix));
    std::string data;
    for (int i = 0; i < columns * rows * std::abs(bitpix) / 8; ++i)
      data += static_cast<char>(i % size == 0 ? 0x40 : Below(256));
    WriteFile(folder.File(name), FitsBytes(ImageCards("16", Form(columns), Form(rows), others), data));
  }

  // A value that the type holds after rounding.
  double Value(int type) {
    const double low = type == 17 ? 0 : type == 16 ? -32768 : -2147483648.0;
    const double high = low + (type == 32 ? 4294967295.0 : 65535.0), any = low + (high - low) * Uniform();
    const double wholes[] = {any, std::floor(any), std::floor(any) + 0.5, low - 0.5, high + 0.49};
    const double mantissa = Below(4) == 0 ? 2 - 1e-7 * Uniform() : 1 + Uniform();
    const double anySize = std::ldexp(mantissa, Below(277) - 150), nearLimit = 1e-8 * (0.5 + Uniform());
    const double largest = FLT_MAX * (1 + 0x1p-26), smallest = 0x1p-149;
    const double reals[] = {anySize, 1e5 * Uniform(), nearLimit, 1e-8, 0, largest, FLT_MIN, smallest};
    return type == -32 ? OneOf(reals) * (1 - 2 * Below(2)) : OneOf(wholes);
  }
  static double Stored(int type, double value) {
    const double real = std::fabs(value) < 1e-8 ? 0 : static_cast<float>(value);
    return type == -32 ? real : std::nearbyint(value);
  }

  // Gives the slot values of the type and saves it. CFITSIO finds them in the file, and the cards of the
  // slot, each mandatory one once; our reader finds what CFITSIO does.
  void ExpectReadAsSaved(int slot, int type, const std::string& name) {
    const bool isFrame = slot == slots::frame;
    const int columns = Columns(s), rows = isFrame ? Rows(s) : 1, readTo = isFrame ? slot : slots::object;
    const auto pixel = [&](int of, int r, int c) -> double& {
      return isFrame ? s.image(r, c) : s.slot[of].spectrum(c);
    };
    Image expected{{}, {columns, rows}, {}};
    for (int r = 1; r <= rows; ++r)
      for (int c = 1; c <= columns; ++c)
        expected.pixels.push_back(Stored(type, pixel(slot, r, c) = Value(type)));
    s.slot[slot].savePixelType = type;
    EXPECT_EQ(isFrame ? SaveFits2D(s, name) : SaveFits1D(s, slot, name), Warnings{});
    for (const std::string& card : CardsOf(s.slot[slot]))
      expected.cards.push_back(card.substr(0, card.find_last_not_of(' ') + 1));
    for (const char* keyword : {"SIMPLE  =", "BITPIX  =", "NAXIS   =", "NAXIS1  =", "NAXIS2  ="}) {
      const auto isOfKeyword = [&](const std::string& card) { return card.starts_with(keyword); };
      EXPECT_EQ(std::ranges::count_if(expected.cards, isOfKeyword), 1) << keyword;
    }
    EXPECT_EQ(std::filesystem::file_size(folder.File(name)) % 2880, 0u);
    EXPECT_TRUE(ReadByCfitsio(folder.File(name)) == expected);
    isFrame ? LoadFits2D(s, name) : LoadFits1D(s, readTo, name);
    EXPECT_EQ(s.slot[readTo].pixelType, type);
    for (int i = 0; i < columns * rows; ++i)
      ASSERT_EQ(pixel(readTo, 1 + i / columns, 1 + i % columns), expected.pixels[static_cast<size_t>(i)]);
    files += " " + folder.File(name);
  }

  std::mt19937 random{21};
  std::string files;
};

TEST_F(RandomFrames, AreReadByOtherProgramsAsTheyAreHereWhenTrimmedExtractedAndSaved) {
  for (int round = 1; round <= 800 && !HasFailure(); ++round) {
    SCOPED_TRACE(round);
    const int columns = 10 + Below(round % 50 == 0 ? 1500 : 60), rows = 5 + Below(12);
    WriteStrange("in.fts", columns, rows);
    LoadFits2D(s, "in.fts");
    ASSERT_EQ(std::pair(Columns(s), Rows(s)), std::pair(columns, rows));
    const int col1 = 1 + Below(3), row1 = 1 + Below(2);
    if (!s.frameTrimmed && Below(4) > 0)
      TrimTo(s, col1, row1, columns - Below(3), rows - Below(2));
    ExpectReadAsSaved(slots::frame, OneOf(std::array{16, 17, 32, -32}), "frame" + std::to_string(round));
    SetAperture(s, 3, 3);
    SetBackgroundRanges(s, 1, 2, 2, 3);
    FitBackground(s);
    CrunchFrame(s);
    ExpectReadAsSaved(slots::spectrum, OneOf(std::array{16, 17, 32, -32}), "1d" + std::to_string(round));
  }
  if (std::system("command -v fitsverify >/dev/null") != 0)
    GTEST_SKIP() << "fitsverify is not installed";
  const std::string verify = "fitsverify -e -q" + files + " | grep -v 'verification OK'";
  EXPECT_NE(std::system(verify.c_str()), 0) << "fitsverify complains of the files named above";
}

}  // namespace
}  // namespace halmek::test
