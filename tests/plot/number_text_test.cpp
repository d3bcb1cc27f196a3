// Tests of numbers as text.
#include "plot/number_text.h"

#include <gtest/gtest.h>

#include <tuple>
#include <utility>

#include "numeric/number_prefix.h"

namespace halmek {
namespace {

TEST(GeneralText, IsTheShortestTextOfFifteenDigits) {
  // The later ones stand where the exponent form begins, some of them only by rounding.
  const std::pair<double, const char*> cases[] = {{-0.0, "0"},
                                                  {-0.25, "-0.25"},
                                                  {2.0 / 3, "0.666666666666667"},
                                                  {0.1 + 0.2, "0.3"},
                                                  {0.000099, "9.9E-05"},
                                                  {999999999999999.4, "999999999999999"},
                                                  {999999999999999.9, "1E+15"},
                                                  {0.00009999999999999999, "0.0001"}};
  for (const auto& [value, text] : cases)
    EXPECT_EQ(GeneralText(value), text);
  for (const char* text : {"6562.81712345678", "-0.000123456789012345", "9.87654321098765E+25",
                           "123456789012345", "1.00000000000001E-09", "1.79769313486231E+308"})
    EXPECT_EQ(GeneralText(NumericPrefix(text)), text);
}

TEST(GeneralText, HasSevenDigitsAtSinglePrecision) {
  const std::pair<float, const char*> cases[] = {{3 * 0.1f, "0.3"},    {1.0f / 3, "0.3333333"},
                                                 {9999999, "9999999"}, {1e7f, "1E+07"},
                                                 {0.0001f, "0.0001"},  {5e-5f, "5E-05"}};
  for (const auto& [value, text] : cases)
    EXPECT_EQ(GeneralText(value), text);
}

TEST(FormatFixed, AlignsPadsRoundsAndCuts) {
  const std::tuple<double, int, int, const char*> cases[] = {
      {2, 6, 2, "  2.00"},       {2.5, 6, 0, "     3"},   {0.125, 6, 2, "  0.13"},
      {-0.125, 6, 2, " -0.12"},  {1.999, 6, 2, "     2"}, {-0.04, 6, 1, "     0"},
      {-0.12345, 5, 3, "-0.12"}, {12345, 6, 1, "12345."}, {123456789, 8, 0, "0.12D+09"},
      {1234567, 6, 0, " 0D+07"}, {1e-20, 6, 2, "     0"}, {1e16, 20, 1, " 10000000000000000.0"}};
  for (const auto& [value, width, decimals, text] : cases)
    EXPECT_EQ(FormatFixed(value, width, decimals), text) << value;
}

TEST(FormatExponent, WritesMantissaAndPaddedPowerOfTen) {
  // Decimals are lowered to what the width leaves room for.
  const std::tuple<double, int, int, int, const char*> cases[] = {
      {12345, 10, 3, 3, " 0.123D+05"},  {0.00042, 10, 3, 3, " 0.420D-03"},
      {0, 10, 4, 4, " .0000D+00"},      {-1e-16, 9, 2, 2, "  .00D+00"},
      {1.1e-16, 9, 2, 2, " 0.11D-15"},  {-0.00042, 11, 3, 3, "  -0.42D-03"},
      {0.9996, 10, 3, 3, "     1D+00"}, {12340, 10, 9, 4, "0.1234D+05"},
      {2.5e120, 9, 5, 3, "0.250D+121"}, {0, 3, 2, 0, ".D+00"}};
  for (auto [value, width, decimals, decimalsLeft, text] : cases) {
    EXPECT_EQ(FormatExponent(value, width, decimals), text);
    EXPECT_EQ(decimals, decimalsLeft) << text;
  }
  EXPECT_EQ(PadInteger(123, 2, "0"), "123");
  EXPECT_EQ(PadInteger(-7, 4, "ab"), "abab-7");
}

}  // namespace
}  // namespace halmek
