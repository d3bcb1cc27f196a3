// Conversion to whole numbers of 16 bits.
#include "files/whole_number.h"

#include "files/failure.h"
#include "numeric/number_prefix.h"
#include "numeric/rounding.h"

namespace halmek {

int16_t WholeNumber(double value) {
  const double rounded = RoundHalfEven(value);
  if (!(rounded >= INT16_MIN && rounded <= INT16_MAX))
    throw RunTimeError(run_time_error::overflow, "a whole number must lie within -32768 to 32767");
  return static_cast<int16_t>(rounded);
}

int16_t WholeNumber(std::string_view text) { return WholeNumber(NumericPrefix(text)); }

}  // namespace halmek
