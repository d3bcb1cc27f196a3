// Pixels as bytes, against decoders and encoders that go byte by byte.
#include "fits/pixel_codec.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <random>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "fits/fits_bytes.h"
#include "support/test_session.h"

namespace halmek::test {
namespace {

using namespace pixel_types;

constexpr double largest = std::numeric_limits<double>::max();

double DecodeByHand(int type, const unsigned char* b) {
  const double sign = b[0] >= 128 ? -1 : 1;
  const int b1 = b[0] % 128;
  switch (type) {
    case dao:
      return 256 * b[0] + b[1];
    case signed16:
      return 256 * b[0] + b[1] - (b[0] >= 128 ? 65536 : 0);
    case unsigned16:
      return 256 * (b[0] < 128 ? b[0] + 128 : b[0] - 128) + b[1];
    case integer32:
      return ((b[0] * 256.0 + b[1]) * 256 + b[2]) * 256 + b[3] - (b[0] >= 128 ? 4294967296.0 : 0);
    case real32: {
      const int e = 2 * b1 + b[1] / 128;
      const double f = (b[1] % 128 * 65536 + b[2] * 256 + b[3]) / 8388608.0;
      return sign * (e < 1 ? std::ldexp(f, -126) : std::ldexp(f + 1, e - 127));
    }
    default: {
      const int e = b1 * 16 + b[1] / 16;
      double f = b[1] % 16 / 16.0;
      for (int k = 2; k < 8; ++k)
        f += b[k] / 16.0 / std::pow(256.0, k - 1);
      return sign * std::min(largest, e < 1 ? std::ldexp(f, -1022) : std::ldexp(f + 1, e - 1023));
    }
  }
}

std::string EncodeReal32ByHand(double v) {
  double x = std::fabs(v);
  if (x < 1e-8)
    return Bytes({0, 0, 0, 0});
  int e = 0;
  for (; x >= 2; ++e)
    x /= 2;
  for (; x < 1; --e)
    x *= 2;
  int mantissa = static_cast<int>(std::nearbyint((x - 1) * 8388608));
  if (mantissa == 8388608) {
    mantissa = 0;
    ++e;
  }
  const int exponent = e + 127;
  return Bytes({exponent / 2 + (v < 0 ? 128 : 0), exponent % 2 * 128 + mantissa / 65536, mantissa / 256 % 256,
                mantissa % 256});
}

// The bytes, and how many values read back changed.
std::pair<std::string, int> Encode(int type, double value) {
  std::string bytes(BytesPerPixel(type), '\0');
  const int changed = EncodePixels(type, std::span(&value, 1), std::as_writable_bytes(std::span(bytes)));
  return {bytes, changed};
}

TEST(DecodePixels, InBulkGivesTheValuesAndTheRangeOfDecodingByteByByte) {
  std::mt19937 random(20);
  for (int type : {dao, signed16, unsigned16, integer32, real32, real64}) {
    for (size_t n : {1u, 7u, 8u, 9u, 61u, 1000u}) {
      for (bool special : {false, true}) {
        const size_t size = BytesPerPixel(type);
        std::string bytes;
        for (size_t i = 0; i < n * size; ++i)
          bytes += static_cast<char>(random());
        // Without infinities and not-a-numbers, or with some of them, denormals and zeros.
        for (size_t i = 0; i < n; ++i) {
          char& first = bytes[i * size];
          if (!special)
            first = static_cast<char>(first & 0xBF);
          else if (i % 5 < 2)
            bytes.replace(i * size, 2, Bytes(i % 5 == 0 ? std::vector{0x7F, 0xF3} : std::vector{0x80, 0}));
        }
        PixelRange range, expected;
        std::vector<double> values(n);
        DecodePixels(type, std::as_bytes(std::span(bytes)), values, range);
        for (size_t i = 0; i < n; ++i) {
          const double value =
              DecodeByHand(type, reinterpret_cast<const unsigned char*>(bytes.data()) + i * size);
          ASSERT_EQ(values[i], value) << "type " << type << ", pixel " << i << " of " << n;
          expected.min = std::min(expected.min, value);
          expected.max = std::max(expected.max, value);
        }
        EXPECT_EQ(range.min, expected.min) << type;
        EXPECT_EQ(range.max, expected.max) << type;
      }
    }
  }
}

TEST(EncodePixels, RoundsHalvesToEvenWrapsSignsAndCountsThem) {
  const struct {
    int type;
    double value;
    std::vector<int> bytes;
    int changed;
  } cases[] = {
      {signed16, 2.5, {0, 2}, 0},
      {signed16, -1, {0xFF, 0xFF}, 0},
      {signed16, 40000, {0x9C, 0x40}, 1},
      {signed16, -32769, {0x7F, 0xFF}, 1},
      {unsigned16, 0, {0x80, 0}, 0},
      {unsigned16, 65535, {0x7F, 0xFF}, 0},
      {unsigned16, -1, {0x7F, 0xFF}, 1},
      {unsigned16, 65536, {0x80, 0}, 1},
      {integer32, -2.5, {0xFF, 0xFF, 0xFF, 0xFE}, 0},
      {real32, 1, {0x3F, 0x80, 0, 0}, 0},
      {real32, -2, {0xC0, 0, 0, 0}, 0},
      {real32, 5e-9, {0, 0, 0, 0}, 0},
      {real32, 2 - 1e-12, {0x40, 0, 0, 0}, 0},
      {real32, std::ldexp(1, 128) * (1 - 1e-12), {0x7F, 0x80, 0, 0}, 0},
  };
  for (const auto& c : cases)
    EXPECT_EQ(Encode(c.type, c.value), std::pair(Bytes(c.bytes), c.changed)) << c.type << " of " << c.value;
}

TEST(EncodePixels, RefusesValuesThatDoNotFitTheirBytes) {
  const struct {
    int type;
    double value;
  } cases[] = {{signed16, 65536},         {signed16, -65537},         {unsigned16, 98304},
               {integer32, 2147483647.5}, {integer32, -2147483649.0}, {real32, std::ldexp(1, 129)},
               {real32, -largest},        {signed16, std::nan("")},   {integer32, std::nan("")}};
  for (const auto& c : cases)
    EXPECT_EQ(RefusalOf([&] { Encode(c.type, c.value); }), "Error: 6  Error: Overflow.")
        << c.type << " of " << c.value;
}

TEST(EncodePixels, WritesRealsAsTheEncodingByHandDoes) {
  std::mt19937 random(21);
  std::uniform_real_distribution<double> mantissa(1, 2), nearTwo(2 - 1e-7, 2);
  for (int i = 0; i < 20000; ++i) {
    const int exponent = static_cast<int>(random() % 155) - 27;
    const double value = std::ldexp(i % 4 == 0 ? nearTwo(random) : mantissa(random), exponent);
    const double v = i % 2 == 0 ? value : -value;
    ASSERT_EQ(Encode(real32, v).first, EncodeReal32ByHand(v)) << v;
  }
}

}  // namespace
}  // namespace halmek::test
