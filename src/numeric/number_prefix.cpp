// The number that a text begins with: scanning it, and its conversion without regard to the locale.
#include "numeric/number_prefix.h"

#include <algorithm>
#include <charconv>
#include <limits>
#include <string>

namespace halmek {
namespace {

bool IsDigit(char c) { return c >= '0' && c <= '9'; }

size_t SkipDigits(std::string_view text, size_t at) {
  while (at < text.size() && IsDigit(text[at]))
    ++at;
  return at;
}

size_t SkipBlanks(std::string_view text) {
  const size_t at = text.find_first_not_of(" \t");
  return at == std::string_view::npos ? text.size() : at;
}

// The number at the start of `text`, which has no leading blanks; empty where there is none.
std::string_view Scan(std::string_view text) {
  size_t at = 0;
  if (at < text.size() && (text[at] == '+' || text[at] == '-'))
    ++at;

  const size_t wholeStart = at;
  at = SkipDigits(text, at);
  size_t digits = at - wholeStart;
  if (at < text.size() && text[at] == '.') {
    const size_t end = SkipDigits(text, at + 1);
    digits += end - at - 1;
    at = end;
  }
  if (digits == 0)
    return {};

  if (at < text.size() && std::string_view("EeDd").find(text[at]) != std::string_view::npos) {
    size_t exponent = at + 1;
    if (exponent < text.size() && (text[exponent] == '+' || text[exponent] == '-'))
      ++exponent;
    const size_t end = SkipDigits(text, exponent);
    if (end > exponent)
      at = end;
  }
  return text.substr(0, at);
}

// The power of ten of a number's first digit that is not 0; of a number that is out of range, so that one of
// its digits is not 0 and its exponent, where it has one, may itself be too long.
double LeadingPower(std::string_view number) {
  const size_t letter = std::min(number.find('e'), number.size());
  const std::string_view mantissa = number.substr(0, letter);
  double exponent = 0;
  if (letter < number.size()) {
    const bool negative = number[letter + 1] == '-';
    std::string_view digits = number.substr(letter + 1);
    digits.remove_prefix(digits[0] == '-' || digits[0] == '+' ? 1 : 0);
    for (char digit : digits)
      exponent = exponent * 10 + (digit - '0');
    exponent = negative ? -exponent : exponent;
  }
  const auto first = static_cast<double>(mantissa.find_first_of("123456789"));
  const auto point = static_cast<double>(std::min(mantissa.find('.'), mantissa.size()));
  return exponent + point - first;
}

double Convert(std::string_view number) {
  if (number.empty())
    return 0;
  // from_chars knows neither a leading plus nor the exponent letter D.
  std::string plain(number.front() == '+' ? number.substr(1) : number);
  const size_t letter = plain.find_first_of("EeDd");
  if (letter != std::string::npos)
    plain[letter] = 'e';

  double value = 0;
  const auto result = std::from_chars(plain.data(), plain.data() + plain.size(), value);
  if (result.ec != std::errc::result_out_of_range)
    return value;
  if (LeadingPower(plain) < 0)
    return 0;
  const double infinity = std::numeric_limits<double>::infinity();
  return plain.front() == '-' ? -infinity : infinity;
}

}  // namespace

double NumericPrefix(std::string_view text) { return Convert(Scan(text.substr(SkipBlanks(text)))); }

bool IsNumber(std::string_view text) {
  text.remove_prefix(SkipBlanks(text));
  const std::string_view number = Scan(text);
  return !number.empty() && SkipBlanks(text.substr(number.size())) == text.size() - number.size();
}

}  // namespace halmek
