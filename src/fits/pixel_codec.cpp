// Decoding and encoding of pixels in bulk.
//
// The loops convert and find the range in one pass over bytes that are still in the cache, and are plain
// enough for compilers to vectorise.
#include "fits/pixel_codec.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <limits>
#include <utility>

#include "files/failure.h"
#include "numeric/rounding.h"

namespace halmek {
namespace {

static_assert(std::endian::native == std::endian::little, "the codec swaps every pixel's bytes");

constexpr uint16_t Swapped(uint16_t v) { return static_cast<uint16_t>((v >> 8) | (v << 8)); }
constexpr uint32_t Swapped(uint32_t v) {
  return (v >> 24) | ((v >> 8) & 0xFF00u) | ((v << 8) & 0xFF0000u) | (v << 24);
}
constexpr uint64_t Swapped(uint64_t v) {
  return (static_cast<uint64_t>(Swapped(static_cast<uint32_t>(v))) << 32) |
         Swapped(static_cast<uint32_t>(v >> 32));
}

template <class Word>
Word WordAt(const std::byte* bytes, size_t i) {
  Word word;
  std::memcpy(&word, bytes + i * sizeof(Word), sizeof(Word));
  return Swapped(word);
}

template <class Word>
void PutWord(std::byte* bytes, size_t i, Word word) {
  word = Swapped(word);
  std::memcpy(bytes + i * sizeof(Word), &word, sizeof(Word));
}

void Widen(PixelRange& range, double low, double high) {
  range.min = std::min(range.min, low);
  range.max = std::max(range.max, high);
}

// Stored signed numbers of 16 bits, each offset by a constant. `flip` turns unsigned into signed.
void DecodeIntegers16(const std::byte* bytes, std::span<double> values, uint16_t flip, double offset,
                      PixelRange& range) {
  int16_t low = std::numeric_limits<int16_t>::max(), high = std::numeric_limits<int16_t>::min();
  double* out = values.data();
  for (size_t i = 0; i < values.size(); ++i) {
    const auto stored = static_cast<int16_t>(WordAt<uint16_t>(bytes, i) ^ flip);
    low = stored < low ? stored : low;
    high = stored > high ? stored : high;
    out[i] = stored + offset;
  }
  Widen(range, low + offset, high + offset);
}

// The bits of a real number as an integer that orders as the numbers do. The range is found on such keys,
// since compilers may reorder comparisons of integers, but not of reals.
template <class Signed>
constexpr Signed OrderKey(Signed bits) {
  return bits ^ ((bits >> (sizeof(bits) * 8 - 1)) & std::numeric_limits<Signed>::max());
}

// Four pixels of 32 bits at a time, in the vector types of g++ and clang: by themselves the compilers do not
// vectorise the swap of four bytes for every processor.
using Words4 = uint32_t __attribute__((vector_size(16)));
using Integers4 = int32_t __attribute__((vector_size(16)));
using Singles4 = float __attribute__((vector_size(16)));
using Doubles4 = double __attribute__((vector_size(32)));

template <bool isReal>
struct Decoder32 {
  Integers4 low = Integers4{} + std::numeric_limits<int32_t>::max();
  Integers4 high = Integers4{} + std::numeric_limits<int32_t>::min();

  void Decode4(const std::byte* in, double* out) {
    Words4 words;
    std::memcpy(&words, in, sizeof(words));
    words = ((words & 0x00FF00FFu) << 8) | ((words >> 8) & 0x00FF00FFu);
    words = (words << 16) | (words >> 16);

    Integers4 key = std::bit_cast<Integers4>(words);
    Doubles4 values;
    if constexpr (isReal) {
      values = __builtin_convertvector(std::bit_cast<Singles4>(words), Doubles4);
      key ^= (key >> 31) & std::numeric_limits<int32_t>::max();
    } else {
      values = __builtin_convertvector(key, Doubles4);
    }
    low = low > key ? key : low;
    high = key > high ? key : high;
    std::memcpy(out, &values, sizeof(values));
  }

  // The keys of the smallest and the largest pixel.
  std::pair<int32_t, int32_t> Decode(const std::byte* in, std::span<double> values) {
    const size_t whole = values.size() / 4 * 4;
    for (size_t i = 0; i < whole; i += 4)
      Decode4(in + 4 * i, values.data() + i);
    if (whole < values.size()) {
      // The last pixels, made up to four by repeating the first of them.
      std::array<std::byte, 16> bytes;
      std::array<double, 4> decoded;
      for (size_t i = 0; i < 4; ++i)
        std::memcpy(&bytes[4 * i], in + 4 * (whole + i < values.size() ? whole + i : whole), 4);
      Decode4(bytes.data(), decoded.data());
      std::copy_n(decoded.begin(), values.size() - whole,
                  values.begin() + static_cast<std::ptrdiff_t>(whole));
    }
    const auto lane = [](Integers4 v, int i) { return v[i]; };
    return {std::min({lane(low, 0), lane(low, 1), lane(low, 2), lane(low, 3)}),
            std::max({lane(high, 0), lane(high, 1), lane(high, 2), lane(high, 3)})};
  }
};

std::pair<int64_t, int64_t> DecodeDoubles(const std::byte* bytes, std::span<double> values) {
  int64_t low = std::numeric_limits<int64_t>::max(), high = std::numeric_limits<int64_t>::min();
  double* out = values.data();
  for (size_t i = 0; i < values.size(); ++i) {
    const uint64_t word = WordAt<uint64_t>(bytes, i);
    const int64_t key = OrderKey(static_cast<int64_t>(word));
    low = key < low ? key : low;
    high = key > high ? key : high;
    out[i] = std::bit_cast<double>(word);
  }
  return {low, high};
}

// A real number whose exponent is all ones, taken as if it were an ordinary one.
double BeyondRange(uint32_t bits) {
  const double magnitude = std::ldexp(1 + std::ldexp(static_cast<double>(bits & 0x7FFFFFu), -23), 128);
  return (bits >> 31) != 0 ? -magnitude : magnitude;
}
double BeyondRange(uint64_t bits) {
  const double largest = std::numeric_limits<double>::max();
  return (bits >> 63) != 0 ? -largest : largest;
}

// Widens the range by the keys of decoded reals. Where there are infinities or not-a-numbers, which order
// beyond all others at either end, they are decoded once more.
template <class Word, class Real, class Signed>
void FinishReals(const std::byte* bytes, std::span<double> values, std::pair<Signed, Signed> keys,
                 PixelRange& range) {
  constexpr auto infinity = std::bit_cast<Signed>(std::numeric_limits<Real>::infinity());
  const auto [low, high] = keys;
  if (low > ~infinity && high < infinity) {
    Widen(range, static_cast<double>(std::bit_cast<Real>(OrderKey(low))),
          static_cast<double>(std::bit_cast<Real>(OrderKey(high))));
    return;
  }
  for (size_t i = 0; i < values.size(); ++i) {
    const Word word = WordAt<Word>(bytes, i);
    if (static_cast<Signed>(word & std::numeric_limits<Signed>::max()) >= infinity)
      values[i] = BeyondRange(word);
    Widen(range, values[i], values[i]);
  }
}

[[noreturn]] void ThrowOverflow(double value, const char* type) {
  throw RunTimeError(run_time_error::overflow,
                     "the pixel value " + std::to_string(value) + " does not fit " + type);
}

// The two bytes of `n` + 65536 where `n` is negative, of `n` otherwise.
uint16_t Wrapped16(double n, double value) {
  if (n < 0)
    n += 65536;
  if (!(n >= 0 && n <= 65535))
    ThrowOverflow(value, "16 bits");
  return static_cast<uint16_t>(n);
}

int EncodeSigned16(std::span<const double> values, std::byte* bytes) {
  int changed = 0;
  for (size_t i = 0; i < values.size(); ++i) {
    const double n = RoundHalfEven(values[i]);
    const uint16_t word = Wrapped16(n, values[i]);
    PutWord(bytes, i, word);
    changed += static_cast<double>(static_cast<int16_t>(word)) != n;
  }
  return changed;
}

int EncodeUnsigned16(std::span<const double> values, std::byte* bytes) {
  int changed = 0;
  for (size_t i = 0; i < values.size(); ++i) {
    const double n = RoundHalfEven(values[i] - 32768);
    const uint16_t word = Wrapped16(n, values[i]);
    PutWord(bytes, i, word);
    changed += static_cast<double>(static_cast<int16_t>(word)) != n;
  }
  return changed;
}

void EncodeInteger32(std::span<const double> values, std::byte* bytes) {
  for (size_t i = 0; i < values.size(); ++i) {
    const double n = RoundHalfEven(values[i]);
    if (!(n >= std::numeric_limits<int32_t>::min() && n <= std::numeric_limits<int32_t>::max()))
      ThrowOverflow(values[i], "a 32 bit integer");
    PutWord(bytes, i, static_cast<uint32_t>(static_cast<int32_t>(n)));
  }
}

// The bits of a value whose exponent is the one above the range of singles, which the decoder takes as
// ordinary.
uint32_t BitsBeyondRange(double value) {
  const double fraction = std::fabs(value) * 0x1p-128 - 1;
  const double mantissa = RoundHalfEven(fraction * 8388608);
  // Rounding a value just below 2^128 up to it gives 0 here, too.
  if (!(mantissa < 8388608))
    ThrowOverflow(value, "a 32 bit real");
  const auto bits = 0x7F800000u | static_cast<uint32_t>(std::max(0.0, mantissa));
  return value < 0 ? bits | 0x80000000u : bits;
}

void EncodeReal32(std::span<const double> values, std::byte* bytes) {
  for (size_t i = 0; i < values.size(); ++i) {
    const double value = std::fabs(values[i]) < 1e-8 ? 0.0 : values[i];
    // The conversion rounds the mantissa half to even and carries into the exponent.
    const auto single = static_cast<float>(value);
    PutWord(bytes, i, std::isfinite(single) ? std::bit_cast<uint32_t>(single) : BitsBeyondRange(value));
  }
}

}  // namespace

int BytesPerPixel(int pixelType) {
  switch (pixelType) {
    case pixel_types::dao:
    case pixel_types::signed16:
    case pixel_types::unsigned16:
      return 2;
    case pixel_types::integer32:
    case pixel_types::real32:
      return 4;
    case pixel_types::real64:
      return 8;
    default:
      return 0;
  }
}

void DecodePixels(int pixelType, std::span<const std::byte> bytes, std::span<double> values,
                  PixelRange& range) {
  if (values.empty())
    return;
  switch (pixelType) {
    case pixel_types::dao:
      return DecodeIntegers16(bytes.data(), values, 0x8000, 32768, range);
    case pixel_types::signed16:
      return DecodeIntegers16(bytes.data(), values, 0, 0, range);
    case pixel_types::unsigned16:
      return DecodeIntegers16(bytes.data(), values, 0, 32768, range);
    case pixel_types::integer32: {
      const auto [low, high] = Decoder32<false>().Decode(bytes.data(), values);
      return Widen(range, low, high);
    }
    case pixel_types::real32:
      return FinishReals<uint32_t, float>(bytes.data(), values,
                                          Decoder32<true>().Decode(bytes.data(), values), range);
    case pixel_types::real64:
      return FinishReals<uint64_t, double>(bytes.data(), values, DecodeDoubles(bytes.data(), values), range);
    default:
      return;
  }
}

int EncodePixels(int pixelType, std::span<const double> values, std::span<std::byte> bytes) {
  switch (pixelType) {
    case pixel_types::signed16:
      return EncodeSigned16(values, bytes.data());
    case pixel_types::unsigned16:
      return EncodeUnsigned16(values, bytes.data());
    case pixel_types::integer32:
      EncodeInteger32(values, bytes.data());
      return 0;
    case pixel_types::real32:
      EncodeReal32(values, bytes.data());
      return 0;
    default:
      return 0;
  }
}

}  // namespace halmek
