// Numbers in the texts of a sample night.
#include "night/text.h"

#include "plot/number_text.h"

namespace halmek::night {

std::string Signed(double value, int decimals) {
  const std::string text = FixedText(value, decimals);
  return text.starts_with('-') ? text : "+" + text;
}

}  // namespace halmek::night
