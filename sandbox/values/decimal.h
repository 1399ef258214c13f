// Exact decimal numbers with the range of Oracle's NUMBER: up to 40 significant digits, magnitudes
// from 1e-130 to below 1e126. The canonical text (".5", "-12.75", "0") is what the database stores:
// equal numbers have equal texts. Plain values, usable on any thread.
#pragma once

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
  bool IsZero() const { return digits_.empty(); }
  bool IsNegative() const { return negative_; }
  // The value when it is a whole number that fits.
  std::optional<std::int64_t> ToInt64() const;
  // Significant digits that stand before the point once rounded to `scale` places.
  int DigitsAtScale(int scale) const;

  Decimal Negated() const;
  Decimal Rounded(int scale) const;
  Decimal Truncated(int scale) const;

  // Arithmetic; ORA-01426 on overflow, ORA-01476 on division by zero.
  static Status Add(const Decimal& a, const Decimal& b, Decimal* out);
  static Status Subtract(const Decimal& a, const Decimal& b, Decimal* out);
  static Status Multiply(const Decimal& a, const Decimal& b, Decimal* out);
  static Status Divide(const Decimal& a, const Decimal& b, Decimal* out);

 private:
  static Status FromScaled(std::string digits, bool negative, int point, Decimal* out);
  void Normalise();
  void KeepDigits(int count, bool round);

  // 0.DIGITS x 10^point_, without leading or trailing zeros; no digits for zero.
  bool negative_ = false;
  std::string digits_;
  int point_ = 0;
};

// Order of two canonical texts by value: negative, zero or positive like memcmp.
int CompareDecimalTexts(std::string_view a, std::string_view b);

}  // namespace quillmere::sandbox
