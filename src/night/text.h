// Numbers in the texts of a sample night.
#pragma once

#include <string>

namespace halmek::night {

// With that many decimals; never with an exponent for the sizes that occur here.
std::string Fixed(double value, int decimals);

// The same with its sign, also where it is positive.
std::string Signed(double value, int decimals);

}  // namespace halmek::night
