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

#include "files/failure.h"
#include "numeric/rounding.h"

namespace halmek {
namespace {

static_assert(std::endian::native == std::endian::little, "the codec swaps every pixel's bytes");

constexpr uint16_t Swapped(uint16_t v) {
  return static_cast<uint16_t>((v >> 8) | (v << 8));
}
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

// Stored signed numbers of the word's size, each offset by a constant. `flip` turns unsigned into signed.
template <class Word, class Signed>
void DecodeIntegers(const std::byte* bytes, std::span<double> values, Word flip, double offset,
                    PixelRange& range) {
  Signed low = std::numeric_limits<Signed>::max(), high = std::numeric_limits<Signed>::min();
  double* out = values.data();
  for (size_t i = 0; i < values.size(); ++i) {
    const auto stored = static_cast<Signed>(static_cast<Word>(WordAt<Word>(bytes, i) ^ flip));
    low = std::min(low, stored);
    high = std::max(high, stored);
    out[i] = static_cast<double>(stored) + offset;
  }
  Widen(range, static_cast<double>(low) + offset, static_cast<double>(high) + offset);
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

template <class Word, class Real>
void DecodeReals(const std::byte* bytes, std::span<double> values, PixelRange& range) {
  constexpr Word signBit = Word{1} << (sizeof(Word) * 8 - 1);
  constexpr Word allOnes = std::bit_cast<Word>(std::numeric_limits<Real>::infinity());
  // Independent lanes, since compilers may not reorder comparisons of reals by themselves.
  constexpr size_t lanes = 8;
  std::array<Real, lanes> low, high;
  low.fill(std::numeric_limits<Real>::infinity());
  high.fill(-std::numeric_limits<Real>::infinity());
  std::array<Word, lanes> beyond{};

  double* out = values.data();
  const size_t n = values.size();
  const size_t whole = n - n % lanes;
  for (size_t i = 0; i < whole; i += lanes) {
    for (size_t lane = 0; lane < lanes; ++lane) {
      const Word word = WordAt<Word>(bytes, i + lane);
      const Real value = std::bit_cast<Real>(word);
      beyond[lane] |= static_cast<Word>((word & ~signBit) >= allOnes);
      low[lane] = value < low[lane] ? value : low[lane];
      high[lane] = value > high[lane] ? value : high[lane];
      out[i + lane] = static_cast<double>(value);
    }
  }
  for (size_t i = whole; i < n; ++i) {
    const Word word = WordAt<Word>(bytes, i);
    const Real value = std::bit_cast<Real>(word);
    beyond[0] |= static_cast<Word>((word & ~signBit) >= allOnes);
    low[0] = value < low[0] ? value : low[0];
    high[0] = value > high[0] ? value : high[0];
    out[i] = static_cast<double>(value);
  }

  if (std::any_of(beyond.begin(), beyond.end(), [](Word b) { return b != 0; })) {
    for (size_t i = 0; i < n; ++i) {
      const Word word = WordAt<Word>(bytes, i);
      if ((word & ~signBit) >= allOnes)
        out[i] = BeyondRange(word);
      Widen(range, out[i], out[i]);
    }
    return;
  }
  Widen(range, static_cast<double>(*std::min_element(low.begin(), low.end())),
        static_cast<double>(*std::max_element(high.begin(), high.end())));
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
      return DecodeIntegers<uint16_t, int16_t>(bytes.data(), values, 0x8000, 32768, range);
    case pixel_types::signed16:
      return DecodeIntegers<uint16_t, int16_t>(bytes.data(), values, 0, 0, range);
    case pixel_types::unsigned16:
      return DecodeIntegers<uint16_t, int16_t>(bytes.data(), values, 0, 32768, range);
    case pixel_types::integer32:
      return DecodeIntegers<uint32_t, int32_t>(bytes.data(), values, 0, 0, range);
    case pixel_types::real32:
      return DecodeReals<uint32_t, float>(bytes.data(), values, range);
    case pixel_types::real64:
      return DecodeReals<uint64_t, double>(bytes.data(), values, range);
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
