// Arithmetic with twice the digits of a double: about 32.
#pragma once

#include <cmath>

namespace halmek {

// The sum of two doubles, `low` being what the rounding of `high` leaves.
struct DoubleDouble {
  double high = 0, low = 0;

  DoubleDouble() = default;
  DoubleDouble(double value) : high(value) {}  // NOLINT: converts as a double does

  // The exact sum and the exact product of two doubles.
  static DoubleDouble Sum(double a, double b) {
    const double sum = a + b, fromB = sum - a;
    return {sum, (a - (sum - fromB)) + (b - fromB)};
  }
  static DoubleDouble Product(double a, double b) {
    const double product = a * b;
    return {product, std::fma(a, b, -product)};
  }

  explicit operator double() const { return high + low; }
  DoubleDouble operator-() const { return {-high, -low}; }
  DoubleDouble& operator+=(const DoubleDouble& b);

 private:
  DoubleDouble(double h, double l) : high(h), low(l) {}
};

inline DoubleDouble operator+(const DoubleDouble& a, const DoubleDouble& b) {
  const DoubleDouble highs = DoubleDouble::Sum(a.high, b.high), lows = DoubleDouble::Sum(a.low, b.low);
  const DoubleDouble sum = DoubleDouble::Sum(highs.high, highs.low + lows.high);
  return DoubleDouble::Sum(sum.high, sum.low + lows.low);
}

inline DoubleDouble operator-(const DoubleDouble& a, const DoubleDouble& b) { return a + -b; }

inline DoubleDouble operator*(const DoubleDouble& a, const DoubleDouble& b) {
  const DoubleDouble product = DoubleDouble::Product(a.high, b.high);
  return DoubleDouble::Sum(product.high, product.low + (a.high * b.low + a.low * b.high));
}

// By long division, each digit of which is a double.
inline DoubleDouble operator/(const DoubleDouble& a, const DoubleDouble& b) {
  const double first = a.high / b.high;
  const DoubleDouble rest = a - b * first;
  const double second = rest.high / b.high;
  return DoubleDouble::Sum(first, second) + (rest - b * second).high / b.high;
}

inline DoubleDouble& DoubleDouble::operator+=(const DoubleDouble& b) { return *this = *this + b; }

}  // namespace halmek
