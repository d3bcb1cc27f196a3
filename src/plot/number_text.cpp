// Numbers as text, by way of their rounded decimal digits.
#include "plot/number_text.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <string_view>

namespace halmek {
namespace {

// A number other than 0 as +-0.DIGITS x 10^exponent, the digits without trailing zeros.
struct Decimal {
  bool negative = false;
  std::string_view digits;
  int exponent = 0;
  std::array<char, 32> storage{};
};

template <class Real>
void ToDecimal(Real value, int significant, Decimal& decimal) {
  decimal.negative = value < 0;
  std::array<char, 40> text;
  const char* const end = std::to_chars(text.data(), text.data() + text.size(), std::fabs(value),
                                        std::chars_format::scientific, significant - 1)
                              .ptr;
  const char* const e = std::find<const char*>(text.data(), end, 'e');
  int exponent = 0;
  std::from_chars(e[1] == '+' ? e + 2 : e + 1, end, exponent);
  decimal.exponent = exponent + 1;

  char* out = decimal.storage.data();
  for (const char* c = text.data(); c != e; ++c)
    if (*c != '.')
      *out++ = *c;
  while (out[-1] == '0')
    --out;
  decimal.digits =
      std::string_view(decimal.storage.data(), static_cast<size_t>(out - decimal.storage.data()));
}

// The digits as a plain decimal number, however long.
void AppendPlain(std::string& text, const Decimal& d) {
  if (d.negative)
    text += '-';
  const int count = static_cast<int>(d.digits.size());
  if (d.exponent <= 0) {
    text += "0.";
    text.append(static_cast<size_t>(-d.exponent), '0');
    text += d.digits;
  } else if (count <= d.exponent) {
    text += d.digits;
    text.append(static_cast<size_t>(d.exponent - count), '0');
  } else {
    text += d.digits.substr(0, static_cast<size_t>(d.exponent));
    text += '.';
    text += d.digits.substr(static_cast<size_t>(d.exponent));
  }
}

void AppendWithExponent(std::string& text, const Decimal& d) {
  if (d.negative)
    text += '-';
  text += d.digits[0];
  if (d.digits.size() > 1) {
    text += '.';
    text += d.digits.substr(1);
  }
  const int exponent = d.exponent - 1;
  text += exponent < 0 ? "E-" : "E+";
  text += PadInteger(std::abs(exponent), 2, "0");
}

template <class Real>
void AppendGeneral(std::string& text, Real value, int significant) {
  if (value == 0) {
    text += '0';
    return;
  }
  if (!std::isfinite(value)) {
    text += std::isnan(value) ? "nan" : value < 0 ? "-inf" : "inf";
    return;
  }
  Decimal d;
  ToDecimal(value, significant, d);
  if (d.exponent > significant || d.exponent < -3)
    AppendWithExponent(text, d);
  else
    AppendPlain(text, d);
}

// The number without an exponent at any magnitude, so that its decimals can be counted.
std::string PlainText(double value) {
  std::string text;
  if (value == 0 || !std::isfinite(value)) {
    AppendGeneralText(text, value);
  } else {
    Decimal d;
    ToDecimal(value, 15, d);
    AppendPlain(text, d);
  }
  return text;
}

}  // namespace

void AppendGeneralText(std::string& text, double value) {
  // Counts are the commonest values by far.
  constexpr double exact = 1e15;
  if (value > -exact && value < exact && value == std::trunc(value)) {
    std::array<char, 24> digits;
    const auto end =
        std::to_chars(digits.data(), digits.data() + digits.size(), static_cast<int64_t>(value)).ptr;
    text.append(digits.data(), end);
    return;
  }
  AppendGeneral(text, value, 15);
}

std::string GeneralText(double value) {
  std::string text;
  AppendGeneralText(text, value);
  return text;
}

std::string GeneralText(float value) {
  std::string text;
  AppendGeneral(text, value, 7);
  return text;
}

std::string ShortText(double value) {
  std::string text;
  AppendGeneral(text, value, 7);
  return text;
}

std::string FormatFixed(double value, int width, int decimals) {
  std::string s = PlainText(value);
  size_t point = s.find('.');
  if (point == std::string::npos) {
    point = s.size();
    s += '.';
  }
  const int present = static_cast<int>(s.size() - point) - 1;
  if (present < decimals) {
    s.append(static_cast<size_t>(decimals - present), '0');
  } else {
    const double scale = std::pow(10.0, decimals);
    s = PlainText(std::floor(value * scale + 0.5) / scale);
  }

  const int missing = width - static_cast<int>(s.size());
  if (missing >= 0)
    return std::string(static_cast<size_t>(missing), ' ') + s;
  if (-missing >= decimals + 1) {
    int exponentDecimals = width - 6;
    return FormatExponent(value, width, exponentDecimals);
  }
  return s.substr(0, static_cast<size_t>(width));
}

std::string FormatExponent(double value, int width, int& decimals) {
  decimals = std::max(0, std::min(decimals, width - 6));
  std::string s;
  if (std::fabs(value) <= 1e-16) {
    s = '.';
    s.append(static_cast<size_t>(decimals), '0');
    s += "D+00";
  } else if (!std::isfinite(value)) {
    s = GeneralText(value);
  } else {
    const int e = static_cast<int>(std::floor(std::log(std::fabs(value)) / std::log(10.0))) + 1;
    const double decade = std::pow(10.0, e);
    // At the ends of the range, where 10^e is not a normal number, in two steps.
    const double mantissa =
        std::isnormal(decade) ? value / decade : value / std::pow(10.0, e / 2) / std::pow(10.0, e - e / 2);
    s = FormatFixed(mantissa, decimals + 2, decimals) + (e < 0 ? "D-" : "D+") +
        PadInteger(std::abs(e), 2, "0");
  }
  return std::string(static_cast<size_t>(std::max(0, width - static_cast<int>(s.size()))), ' ') + s;
}

std::string FixedText(double value, int decimals) {
  std::array<char, 64> text;
  const auto result =
      std::to_chars(text.data(), text.data() + text.size(), value, std::chars_format::fixed, decimals);
  return result.ec == std::errc() ? std::string(text.data(), result.ptr) : GeneralText(value);
}

std::string PadInteger(int value, int width, const std::string& padText) {
  const std::string digits = std::to_string(value);
  std::string s;
  for (int i = static_cast<int>(digits.size()); i < width; ++i)
    s += padText;
  return s + digits;
}

}  // namespace halmek
