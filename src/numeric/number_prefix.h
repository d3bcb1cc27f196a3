// The number that a text begins with.
#pragma once

#include <string_view>

namespace halmek {

// The longest number that `text` begins with after leading blanks: a sign, digits with at most one decimal
// point, and an exponent with E or D. A text that begins with no number gives 0, one beyond the range of a
// double gives infinity (or 0 where it is too small). The decimal point is "." in every locale.
double NumericPrefix(std::string_view text);

// True if the whole of `text`, but for blanks around it, is one number of that form.
bool IsNumber(std::string_view text);

}  // namespace halmek
