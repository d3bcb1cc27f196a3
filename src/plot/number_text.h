// Numbers as text, the same in every locale: "." is the decimal point.
#pragma once

#include <string>

namespace halmek {

// The general text form: the shortest decimal text with at most 15 significant digits, without leading blank,
// trailing zeros or trailing decimal point. Magnitudes of 1E+15 and more or below 0.0001 have an exponent, as
// in 1.5E+20 or 1E-05. Infinities and not-a-number, which no computation here should produce, read "inf" and
// "nan".
std::string GeneralText(double value);

// The same for single precision: at most 7 significant digits, an exponent from 1E+07 on.
std::string GeneralText(float value);

// The same for a double at 7 digits, for lines of output.
std::string ShortText(double value);

// Appends GeneralText(value) to `text`; for bulk output.
void AppendGeneralText(std::string& text, double value);

// The number right-aligned in `width` characters, padded with zeros to `decimals` decimals or rounded half
// upward to them (rounding may drop trailing zeros and the point: 1.999 with 2 decimals is 2). Where it does
// not fit, decimals are cut off, or the exponent form is used when cutting them all would not suffice.
std::string FormatFixed(double value, int width, int decimals);

// The number as a mantissa in [0.1, 1) and a power of ten, as in 0.123D+05, right-aligned in `width`
// characters. `decimals` is lowered to width - 6 where it is larger.
std::string FormatExponent(double value, int width, int& decimals);

// The number with exactly that many decimals and without padding, for lines of output; in the general form
// where that would be longer than 64 characters.
std::string FixedText(double value, int decimals);

// The decimal text of `value`, prefixed (width - length) times with `padText`.
std::string PadInteger(int value, int width, const std::string& padText);

}  // namespace halmek
