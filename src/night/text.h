// Numbers in the texts of a sample night.
#pragma once

#include <string>

namespace halmek::night {

// With that many decimals and with its sign, also where it is positive.
std::string Signed(double value, int decimals);

}  // namespace halmek::night
