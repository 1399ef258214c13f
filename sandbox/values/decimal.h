// SPDX-License-Identifier: MIT
// Exact decimal numbers with the range of Oracle's NUMBER: up to 40 significant digits, magnitudes
// from 1e-130 to below 1e126. The canonical text (".5", "-12.75", "0") is what the database stores:
// equal numbers have equal texts. Plain values, usable on any thread.
#pragma once

#include <gmpxx.h>

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "sandbox/base/status.h"

namespace quillmere::sandbox {

class Decimal {
 public:
  Decimal() = default;
  explicit Decimal(std::int64_t value);

  // Accepts sign, digits, point and exponent, with blanks around; nothing on anything else, or
  // when the number is out of range.
  static std::optional<Decimal> Parse(std::string_view text);

  std::string Text() const;
  bool IsZero() const { return sgn(digits_) == 0; }
  bool IsNegative() const { return sgn(digits_) < 0; }
  // The value when it is a whole number that fits.
  std::optional<std::int64_t> ToInt64() const;
  // Digits that stand before the point of the value times 10^scale.
  int DigitsAtScale(int scale) const;

  Decimal Negated() const;
  Decimal Rounded(int scale) const;
  Decimal Truncated(int scale) const;

  // Arithmetic; ORA-01426 on overflow, ORA-01476 on division by zero. `out` may be an operand, and
  // is untouched on failure.
  static Status Add(const Decimal& a, const Decimal& b, Decimal* out);
  static Status Multiply(const Decimal& a, const Decimal& b, Decimal* out);
  static Status Divide(const Decimal& a, const Decimal& b, Decimal* out);

 private:
  Decimal(mpz_class digits, int exponent) : digits_(std::move(digits)), exponent_(exponent) {}
  std::string Magnitude() const { return mpz_class(abs(digits_)).get_str(); }
  void DropDigits(int count, bool round);
  bool FitRange();
  static Status Fit(Decimal value, Decimal* out);

  // digits_ x 10^exponent_; the last digit is no zero, and zero has the exponent 0.
  mpz_class digits_;
  int exponent_ = 0;
};

// Order of two canonical texts by value: negative, zero or positive like memcmp.
int CompareDecimalTexts(std::string_view a, std::string_view b);

}  // namespace quillmere::sandbox
