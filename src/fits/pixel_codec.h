// Pixels as bytes: every pixel type, most significant byte first.
#pragma once

#include <cstddef>
#include <span>

namespace halmek {

// The pixel types. Those above 8 are values of BITPIX, but for dao (16 bits, unsigned, without offset) and
// unsigned16 (16 bits, stored with an offset of 32768).
namespace pixel_types {
inline constexpr int dao = 15;
inline constexpr int signed16 = 16;
inline constexpr int unsigned16 = 17;
inline constexpr int integer32 = 32;
inline constexpr int real32 = -32;
inline constexpr int real64 = -64;
}  // namespace pixel_types

// Bytes per pixel; 0 for a type that is not supported.
int BytesPerPixel(int pixelType);

// The smallest and largest value seen; grows with each row decoded.
struct PixelRange {
  double min = 99999, max = -99999;
};

// Decodes values.size() pixels and widens `range` by them. Real numbers are IEEE; infinity and not-a-number,
// which are not treated specially, come out as the large finite numbers that their bits give as an exponent
// and a fraction, and as the largest finite double where that overflows. `bytes` must hold them all.
void DecodePixels(int pixelType, std::span<const std::byte> bytes, std::span<double> values,
                  PixelRange& range);

// Encodes `values` into `bytes`, which must have room for them. Whole numbers are rounded half to even;
// 16-bit types wrap a value that does not fit the sign, as long as its bytes hold it; magnitudes below 1e-8
// become 0 in real32. Returns how many pixels will read back as another whole number. Throws RunTimeError 6
// where a value does not fit its bytes.
int EncodePixels(int pixelType, std::span<const double> values, std::span<std::byte> bytes);

}  // namespace halmek
