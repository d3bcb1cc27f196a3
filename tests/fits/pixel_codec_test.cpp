// Pixels as bytes.
#include "fits/pixel_codec.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <limits>
#include <span>
#include <tuple>
#include <utility>

#include "support/test_session.h"

namespace halmek::test {
namespace {

using namespace pixel_types;

constexpr double largest = std::numeric_limits<double>::max();

// The bytes, and how many values read back changed.
std::pair<uint64_t, int> Encode(int type, double value) {
  std::string bytes(BytesPerPixel(type), '\0');
  const int changed = EncodePixels(type, std::span(&value, 1), std::as_writable_bytes(std::span(bytes)));
  uint64_t number = 0;
  for (const char byte : bytes)
    number = number << 8 | static_cast<unsigned char>(byte);
  return {number, changed};
}

TEST(DecodePixels, GivesTheValuesOfTheBytesAndTheirRangeForAnyNumberOfPixels) {
  // Reals are also given with infinities and not-a-numbers, which are taken as ordinary numbers.
  const double sqrt2 = 1.41421353816986083984375;
  const std::pair<int, std::vector<std::pair<uint64_t, double>>> cases[] = {
      {dao, {{0x0000, 0}, {0x1234, 4660}, {0x8001, 32769}, {0xFFFE, 65534}}},
      {signed16, {{0x8000, -32768}, {0xFFFF, -1}, {0x0102, 258}, {0x7FFF, 32767}}},
      {unsigned16, {{0x8000, 0}, {0xFFFF, 32767}, {0x0102, 33026}, {0x7FFF, 65535}}},
      {integer32, {{0x80000000, -2147483648.0}, {0xFFFFFFFE, -2}, {0x01020304, 16909060}}},
      {real32, {{0x3FB504F3, sqrt2}, {0xC2F6E979, -123.45600128173828125}, {0x80000000, 0}, {1, 0x1p-149}}},
      {real32, {{0x42280000, 42}, {0x7F800000, 0x1p128}, {0xFFC00000, -0x1.8p128}, {0xC0490000, -3.140625}}},
      {real64, {{0x3FF8000000000000, 1.5}, {0xC08F400000000001, -0x1.f400000000001p9}, {1, 0x1p-1074}}},
      {real64, {{0x4045000000000000, 42}, {0x7FF8000000000000, largest}, {0xFFF0000000000000, -largest}}}};
  for (const auto& [type, pixels] : cases)
    for (size_t n = 1; n <= 40; ++n) {
      std::string bytes;
      std::vector<double> expected, values(n);
      for (size_t i = 0; i < n; ++i) {
        const auto& [stored, value] = pixels[(i + n + i / 5) % pixels.size()];
        for (int shift = 8 * BytesPerPixel(type) - 8; shift >= 0; shift -= 8)
          bytes += static_cast<char>(stored >> shift);
        expected.push_back(value);
      }
      PixelRange range;
      DecodePixels(type, std::as_bytes(std::span(bytes)), values, range);
      ASSERT_EQ(values, expected) << "type " << type << ", " << n << " pixels";
      const auto [least, most] = std::minmax_element(expected.begin(), expected.end());
      EXPECT_EQ(range.min, std::min(99999.0, *least)) << type;
      EXPECT_EQ(range.max, std::max(-99999.0, *most)) << type;
    }
}

TEST(EncodePixels, RoundsHalvesToEvenWrapsSignsAndCountsThem) {
  const std::tuple<int, double, uint64_t, int> cases[] = {
      // The type, the value, its bytes, and how many values read back changed.
      {signed16, 2.5, 2, 0},          {signed16, -2.5, 0xFFFE, 0},      {signed16, 40000, 0x9C40, 1},
      {signed16, -32769, 0x7FFF, 1},  {unsigned16, 0, 0x8000, 0},       {unsigned16, 65535, 0x7FFF, 0},
      {unsigned16, 32770.5, 2, 0},    {unsigned16, 32765.5, 0xFFFE, 0}, {unsigned16, -1, 0x7FFF, 1},
      {unsigned16, 65536, 0x8000, 1}, {integer32, -2.5, 0xFFFFFFFE, 0}, {integer32, -2.6, 0xFFFFFFFD, 0}};
  for (const auto& [type, value, bytes, changed] : cases)
    EXPECT_EQ(Encode(type, value), std::pair(bytes, changed)) << type << " of " << value;
  // Beyond the range of singles, a mantissa of 23 bits over 2^128.
  for (const auto& [mantissa, bits] :
       {std::pair{2.5, 0x7F800002u}, {1.5, 0x7F800002u}, {2.75, 0x7F800003u}}) {
    const double value = 0x1p128 + mantissa * 0x1p105;
    EXPECT_EQ(Encode(real32, value).first, bits) << mantissa;
    EXPECT_EQ(Encode(real32, -value).first, bits | 0x80000000u) << mantissa;
  }
  EXPECT_EQ(Encode(real32, std::ldexp(2 - 1e-8, 127)).first, 0x7F800000u);
  EXPECT_EQ(Encode(real32, -std::ldexp(2 - 1e-8, 127)).first, 0xFF800000u);
}

TEST(EncodePixels, RefusesValuesThatDoNotFitTheirBytes) {
  const std::pair<int, double> cases[] = {
      {signed16, 65536},         {signed16, -65537},         {unsigned16, 98304},
      {integer32, 2147483647.5}, {integer32, -2147483649.0}, {real32, std::ldexp(1, 129)},
      {real32, -largest},        {signed16, std::nan("")},   {integer32, std::nan("")}};
  for (const auto& [type, value] : cases)
    EXPECT_EQ(RefusalOf([t = type, v = value] { Encode(t, v); }), "Error: 6  Error: Overflow.") << value;
}

}  // namespace
}  // namespace halmek::test
