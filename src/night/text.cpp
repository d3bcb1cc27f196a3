// Numbers in the texts of a sample night.
#include "night/text.h"

#include "plot/number_text.h"

namespace halmek::night {

std::string Fixed(double value, int decimals) {
  std::string text = FormatFixed(value, 30, decimals);
  text.erase(0, text.find_first_not_of(' '));
  // Rounding drops zeros at the end, which columns of numbers want.
  if (decimals > 0 && text.find('.') == std::string::npos)
    text += '.';
  if (decimals > 0)
    text.resize(text.find('.') + 1 + static_cast<size_t>(decimals), '0');
  return text;
}

std::string Signed(double value, int decimals) {
  const std::string text = Fixed(value, decimals);
  return text.starts_with('-') ? text : "+" + text;
}

}  // namespace halmek::night
