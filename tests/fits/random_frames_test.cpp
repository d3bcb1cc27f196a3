// Random frames and spectra under random headers, saved in every pixel type: CFITSIO finds in the files what
// was to be saved, and our reader what CFITSIO finds.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cfloat>
#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include "fits/fits_bytes.h"
#include "fits/fits_reader.h"
#include "fits/fits_writer.h"
#include "fits/header.h"
#include "reduce/background.h"
#include "reduce/column_slice.h"
#include "reduce/crunch.h"
#include "reduce/trim.h"
#include "support/test_session.h"

namespace halmek::test {
namespace {

class RandomFrames : public testing::TestWithParam<int> {
 protected:
  int Below(int end) { return static_cast<int>(random() % static_cast<unsigned>(end)); }
  double Uniform() { return std::ldexp(static_cast<double>(random()), -32); }
  int MostlySmall(int largest) { return 1 + static_cast<int>(largest * std::pow(Uniform(), 6)); }
  std::string Text(int longest) {
    std::string text;
    for (int length = Below(longest); length > 0; --length)
      text += static_cast<char>(' ' + Below(95));
    return text;
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
    return type == -32 ? reals[Below(8)] * (1 - 2 * Below(2)) : wholes[Below(5)];
  }
  static double Stored(int type, double value) {
    const double real = std::fabs(value) < 1e-8 ? 0 : static_cast<float>(value);
    return type == -32 ? real : std::nearbyint(value);
  }

  void AddCards(FitsHeader& header) {
    for (int k = 2 + Below(59); k > 0; --k) {
      const char* stems[] = {"END", "BZ", "NAX", "A-_"};
      const std::string keyword = stems[Below(4)] + std::to_string(k);
      const std::string cards[] = {
          NumberCard(keyword, std::to_string((Uniform() - 0.5) * 1e9), " / " + Text(40)),
          NumberCard(keyword, "'" + Text(60) + "'", ""), "COMMENT " + Text(72)};
      AppendCard(header, cards[Below(3)]);
    }
  }

  void Save(int type) {
    s.slot[slot].savePixelType = type;
    EXPECT_EQ(slot == 0 ? SaveFits2D(s, "out.fts", true) : SaveFits1D(s, slot, "out.fts", true), Warnings{});
  }
  void Load() { slot == 0 ? LoadFits2D(s, "out.fts") : LoadFits1D(s, slot, "out.fts"); }
  double& Pixel(int i) {
    return slot == 0 ? s.image(1 + i / columns, 1 + i % columns) : s.slot[slot].spectrum(1 + i);
  }

  Image InSlot() {
    Image image{{}, {columns, rows}, {}};
    image.axes.resize(slot == 0 ? 2 : 1);
    const Slot& header = s.slot[slot];
    for (int k = 1; k <= header.cardCount; ++k)
      image.cards.push_back(header.card(k).substr(0, header.card(k).find_last_not_of(' ') + 1));
    for (int i = 0; i < columns * rows; ++i)
      image.pixels.push_back(Pixel(i));
    return image;
  }

  std::mt19937 random{20};
  TemporaryFolder folder;
  std::unique_ptr<Session> session = SessionIn(folder.path());
  Session& s = *session;
  int slot = 0, columns = 0, rows = 0;
};

TEST_P(RandomFrames, AreReadByCfitsioAndByOurReaderAsTheyWereSaved) {
  const int type = GetParam();
  for (int round = 0; round < 2000 && !HasFailure(); ++round) {
    SCOPED_TRACE(round);
    slot = Below(2) == 0 ? slots::frame : slots::object;
    columns = MostlySmall(500);
    rows = slot == slots::frame ? MostlySmall(200) : 1;
    slot == slots::frame ? SetFrame(s, columns, rows, [](int, int) { return 0; })
                         : SetSpectrum(s, slot, std::vector<double>(static_cast<size_t>(columns)));
    AddCards(s.slot[slot]);
    if (Below(4) == 0) {
      const int typesBefore[] = {16, 17, 32, -32};
      Save(typesBefore[Below(4)]);
      Load();
    }
    for (int i = 0; i < columns * rows; ++i)
      Pixel(i) = Value(type);
    Save(type);
    Image expected = InSlot();
    for (double& pixel : expected.pixels)
      pixel = Stored(type, pixel);
    EXPECT_EQ(std::filesystem::file_size(folder.File("out.fts")) % 2880, 0u);
    EXPECT_TRUE(ReadByCfitsio(folder.File("out.fts")) == expected);
    Load();
    EXPECT_EQ(s.slot[slot].pixelType, type);
    EXPECT_TRUE(InSlot() == expected);
  }
}

// Cards as cameras and other programs leave them: of other data, twice, in another form, or of what no longer
// holds when the frame is cut or summed.
const char* const strangeCards[] = {"NAXIS1  = 999",
                                    "NAXIS2  = 1",
                                    "NAXIS3  = 2",
                                    "NAXIS4  =                    2",
                                    "NAXIS   = 4",
                                    "BITPIX  = 8",
                                    "BSCALE  = 1.",
                                    "BSCALE  = 0.5",
                                    "BZERO   = 32768.",
                                    "BZERO   = -12.5",
                                    "BLANK   = 7",
                                    "BLANK   = -32768",
                                    "CHECKSUM= 'hcHjjc9ghc'",
                                    "DATASUM = '2503531142'",
                                    "GROUPS  =                    T",
                                    "PCOUNT  =                    3",
                                    "GCOUNT  =                    2",
                                    "EXTEND  =                    T",
                                    "XTENSION= 'IMAGE   '",
                                    "CRPIX1  = 100",
                                    "CRVAL1  = 4000.",
                                    "CD1_1   = 0.5",
                                    "CTYPE1  = 'RA---TAN'",
                                    "CTYPE2  = 'DEC--TAN'",
                                    "CRPIX2  = 1.5E2",
                                    "CDELT1  = 2",
                                    "LTV1    = -3.",
                                    "LTM1_1  = 1.0",
                                    "DATASEC = '[1:60,1:12]'",
                                    "TRIMSEC = '[3:8,1:5]'",
                                    "CCDSEC  = '[1:2048,1:512]'",
                                    "WCSDIM  = 2",
                                    "DATAMAX = 1000.",
                                    "OBJECT  = 'again'"};

class StrangeFrames : public testing::Test {
 protected:
  int Below(int end) { return static_cast<int>(random() % static_cast<unsigned>(end)); }
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
    const int bitpix = OneOf(std::array{16, 32, -32, -64});
    Cards others;
    for (int k = Below(12); k > 0; --k)
      others.emplace_back(OneOf(strangeCards));
    others.emplace_back("BITPIX  = " + std::to_string(bitpix));
    std::string data(static_cast<size_t>(columns * rows * std::abs(bitpix) / 8), '\0');
    for (size_t i = 0; i < data.size(); ++i)
      data[i] =
          static_cast<char>(i % (bitpix < 0 ? static_cast<size_t>(-bitpix) / 8 : 2) == 0 ? 0x40 : Below(256));
    WriteFile(folder.File(name), FitsBytes(ImageCards("16", Form(columns), Form(rows), others), data));
  }

  // What CFITSIO reads from the file, and each mandatory card once.
  Image Read(const std::string& name) {
    Image image = ReadByCfitsio(folder.File(name));
    for (const char* keyword : {"SIMPLE  =", "BITPIX  =", "NAXIS   =", "NAXIS1  =", "NAXIS2  ="})
      EXPECT_EQ(
          std::ranges::count_if(image.cards, [&](const std::string& c) { return c.starts_with(keyword); }), 1)
          << keyword;
    files += " " + folder.File(name);
    return image;
  }

  std::mt19937 random{21};
  TemporaryFolder folder;
  std::string files;
};

TEST_F(StrangeFrames, AreReadByOtherProgramsAsTheyAreHereWhenTrimmedExtractedAndSaved) {
  for (int round = 1; round <= 500 && !HasFailure(); ++round) {
    SCOPED_TRACE(round);
    const auto session = SessionIn(folder.path());
    Session& s = *session;
    const int columns = 10 + Below(60), rows = 5 + Below(12);
    WriteStrange("in.fts", columns, rows);
    LoadFits2D(s, "in.fts");
    ASSERT_EQ(std::pair(Columns(s), Rows(s)), std::pair(columns, rows));
    const int col1 = 1 + Below(3), row1 = 1 + Below(2);
    if (!s.frameTrimmed && Below(4) > 0)
      TrimTo(s, col1, row1, columns - Below(3), rows - Below(2));
    s.slot[slots::frame].savePixelType = s.slot[slots::spectrum].savePixelType = -32;
    const std::string number = std::to_string(round);
    SaveFits2D(s, "frame" + number + ".fts");
    const Image frame = Read("frame" + number + ".fts");
    ASSERT_EQ(frame.axes, (std::vector<long>{Columns(s), Rows(s)}));
    for (int r = 1; r <= Rows(s); ++r)
      for (int c = 1; c <= Columns(s); ++c)
        ASSERT_EQ(frame.pixels[static_cast<size_t>((r - 1) * Columns(s) + c - 1)],
                  static_cast<float>(s.image(r, c)));

    SetAperture(s, 3, 3);
    SetBackgroundRanges(s, 1, 2, 2, 3);
    FitBackground(s);
    CrunchFrame(s);
    SaveFits1D(s, slots::spectrum, "spectrum" + number + ".fts");
    const Image spectrum = Read("spectrum" + number + ".fts");
    ASSERT_EQ(spectrum.axes, (std::vector<long>{Columns(s), 1}));
    for (int c = 1; c <= Columns(s); ++c)
      ASSERT_EQ(spectrum.pixels[static_cast<size_t>(c - 1)],
                static_cast<float>(s.slot[slots::spectrum].spectrum(c)));
  }
  if (std::system("command -v fitsverify >/dev/null") != 0)
    GTEST_SKIP() << "fitsverify is not installed";
  const std::string verify = "fitsverify -e -q" + files + " | grep -v 'verification OK'";
  EXPECT_NE(std::system(verify.c_str()), 0) << "fitsverify complains of the files named above";
}

INSTANTIATE_TEST_SUITE_P(Types, RandomFrames, testing::Values(16, 17, 32, -32));

}  // namespace
}  // namespace halmek::test
