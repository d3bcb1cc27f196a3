// Whole numbers of 16 bits, the size of every count, index and typed parameter.
#pragma once

#include <cstdint>
#include <string_view>

namespace halmek {

// `value` rounded to the nearest whole number, halves to even. Throws RunTimeError 6 (overflow) where the
// result is outside -32768..32767.
int16_t WholeNumber(double value);

// The whole number of a text box: the number that `text` begins with (0 if none), rounded as above.
int16_t WholeNumber(std::string_view text);

}  // namespace halmek
