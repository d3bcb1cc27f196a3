// Pixels as bytes, against decoders and encoders that go byte by byte.
#include "fits/pixel_codec.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <limits>
#include <random>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "fits/fits_bytes.h"
#include "support/test_session.h"

namespace halmek::test {
namespace {

using namespace pixel_types;

constexpr double largest = std::numeric_limits<double>::max();

// The bytes as a number, the first the highest.
uint64_t Number(std::string_view bytes) {
  uint64_t number = 0;
  for (const char byte : bytes)
    number = number << 8 | static_cast<unsigned char>(byte);
  return number;
}

// The sign, exponent and fraction of an IEEE number without the special meaning of the largest exponent.
double RealByHand(uint64_t n, int signBit, int fractionBits, int bias) {
  const auto exponent = static_cast<int>(n >> fractionBits & (2ull * bias + 1));
  const double fraction = std::ldexp(n & ((1ull << fractionBits) - 1), -fractionBits);
  const double value =
      exponent == 0 ? std::ldexp(fraction, 1 - bias) : std::ldexp(1 + fraction, exponent - bias);
  return (n >> signBit ? -1 : 1) * std::min(largest, value);
}

double DecodeByHand(int type, uint64_t n) {
  const auto value = static_cast<double>(n);
  switch (type) {
    case real32:
      return RealByHand(n, 31, 23, 127);
    case real64:
      return RealByHand(n, 63, 52, 1023);
    case unsigned16:
      return value < 32768 ? value + 32768 : value - 32768;
    default:
      return value - (type == signed16 && n >> 15 ? 65536 : type == integer32 && n >> 31 ? 4294967296.0 : 0);
  }
}

// The bytes, and how many values read back changed.
std::pair<uint64_t, int> Encode(int type, double value) {
  std::string bytes(BytesPerPixel(type), '\0');
  const int changed = EncodePixels(type, std::span(&value, 1), std::as_writable_bytes(std::span(bytes)));
  return {Number(bytes), changed};
}

TEST(DecodePixels, InBulkGivesTheValuesAndTheRangeOfDecodingByteByByte) {
  std::mt19937 random(20);
  for (int type : {dao, signed16, unsigned16, integer32, real32, real64}) {
    for (size_t n : {1, 7, 8, 9, 61, 1000, 2000}) {
      const size_t size = BytesPerPixel(type);
      std::string bytes(n * size, ' ');
      std::generate(bytes.begin(), bytes.end(), [&] { return static_cast<char>(random()); });
      // Without infinities and not-a-numbers, or with some of them, denormals and zeros.
      for (size_t i = 0; i < n; ++i) {
        if (n % 2 == 0)
          bytes[i * size] = static_cast<char>(bytes[i * size] & 0xBF);
        else if (i % 5 < 2)
          bytes.replace(i * size, 2, i % 5 == 0 ? Bytes({0x7F, 0xF3}) : Bytes({0x80, 0}));
      }
      PixelRange range;
      std::vector<double> values(n), expected;
      DecodePixels(type, std::as_bytes(std::span(bytes)), values, range);
      for (size_t i = 0; i < n; ++i)
        expected.push_back(DecodeByHand(type, Number(bytes.substr(i * size, size))));
      ASSERT_EQ(values, expected) << "type " << type << ", " << n << " pixels";
      const auto [least, most] = std::minmax_element(expected.begin(), expected.end());
      EXPECT_EQ(range.min, std::min(99999.0, *least)) << type;
      EXPECT_EQ(range.max, std::max(-99999.0, *most)) << type;
    }
  }
}

TEST(EncodePixels, RoundsHalvesToEvenWrapsSignsAndCountsThem) {
  const struct {
    int type;
    double value;
    uint64_t bytes;
    int changed;
  } cases[] = {
      {signed16, 2.5, 2, 0},         {signed16, -1, 0xFFFF, 0},      {signed16, 40000, 0x9C40, 1},
      {signed16, -32769, 0x7FFF, 1}, {unsigned16, 0, 0x8000, 0},     {unsigned16, 65535, 0x7FFF, 0},
      {unsigned16, -1, 0x7FFF, 1},   {unsigned16, 65536, 0x8000, 1}, {integer32, -2.5, 0xFFFFFFFE, 0}};
  for (const auto& c : cases)
    EXPECT_EQ(Encode(c.type, c.value), std::pair(c.bytes, c.changed)) << c.type << " of " << c.value;
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
