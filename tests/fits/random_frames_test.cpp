// Random frames and spectra under random headers, saved in every pixel type: CFITSIO finds in the files what
// was to be saved, and our reader what CFITSIO finds.
#include <gtest/gtest.h>

#include <cfloat>
#include <cmath>
#include <filesystem>
#include <random>

#include "fits/fits_bytes.h"
#include "fits/fits_reader.h"
#include "fits/fits_writer.h"
#include "fits/header.h"
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
    EXPECT_EQ(slot == 0 ? SaveFits2D(s, "out.fts") : SaveFits1D(s, slot, "out.fts"), Warnings{});
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

INSTANTIATE_TEST_SUITE_P(Types, RandomFrames, testing::Values(16, 17, 32, -32));

}  // namespace
}  // namespace halmek::test
