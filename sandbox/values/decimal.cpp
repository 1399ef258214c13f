// SPDX-License-Identifier: MIT
#include "sandbox/values/decimal.h"

#include <algorithm>
#include <charconv>

namespace quillmere::sandbox {

namespace {

constexpr int kMaxDigits = 40;
constexpr int kMaxPoint = 126;
constexpr int kMinPoint = -129;

mpz_class PowerOfTen(int exponent) {
  mpz_class power;
  mpz_ui_pow_ui(power.get_mpz_t(), 10, static_cast<unsigned long>(std::max(exponent, 0)));
  return power;
}

}  // namespace

Decimal::Decimal(std::int64_t value) : digits_(std::to_string(value), 10) {
  DropDigits(0, false);
}

std::optional<Decimal> Decimal::Parse(std::string_view text) {
  while (!text.empty() && text.front() == ' ') text.remove_prefix(1);
  while (!text.empty() && text.back() == ' ') text.remove_suffix(1);
  const bool negative = !text.empty() && text.front() == '-';
  if (negative || (!text.empty() && text.front() == '+')) text.remove_prefix(1);
  std::string digits;
  int exponent = 0;
  bool point = false;
  std::size_t at = 0;
  for (; at < text.size() && (text[at] == '.' ? !point : text[at] >= '0' && text[at] <= '9');
       ++at) {
    point = point || text[at] == '.';
    if (text[at] == '.') continue;
    digits += text[at];
    if (point) --exponent;
  }
  if (digits.empty()) return std::nullopt;
  if (at < text.size() && (text[at] == 'e' || text[at] == 'E')) {
    ++at;
    if (at < text.size() && text[at] == '+') ++at;
    int shift = 0;
    const auto [end, error] = std::from_chars(text.data() + at, text.data() + text.size(), shift);
    if (error != std::errc() || shift > 1000 || shift < -1000) return std::nullopt;
    at = static_cast<std::size_t>(end - text.data());
    exponent += shift;
  }
  if (at != text.size()) return std::nullopt;
  Decimal number(mpz_class((negative ? "-" : "") + digits, 10), exponent);
  if (!number.FitRange()) return std::nullopt;
  return number;
}

// Takes away the last `count` digits, and what zeros then stand at the end.
void Decimal::DropDigits(int count, bool round) {
  if (count > 0) {
    const mpz_class power = PowerOfTen(count);
    if (round) digits_ += (IsNegative() ? -1 : 1) * (power / 2);
    digits_ /= power;
    exponent_ += count;
  }
  if (IsZero()) exponent_ = 0;
  if (IsZero() || !mpz_divisible_ui_p(digits_.get_mpz_t(), 10)) return;
  const std::string all = Magnitude();
  const int zeros = static_cast<int>(all.size() - 1 - all.find_last_not_of('0'));
  digits_ /= PowerOfTen(zeros);
  exponent_ += zeros;
}

// Rounds to the digits that a number has; false when it is too large for one.
bool Decimal::FitRange() {
  DropDigits(static_cast<int>(Magnitude().size()) - kMaxDigits, true);
  const int point = DigitsAtScale(0);
  if (point < kMinPoint) *this = Decimal();
  return point <= kMaxPoint;
}

Status Decimal::Fit(Decimal value, Decimal* out) {
  if (!value.FitRange()) return Ora(1426);
  *out = std::move(value);
  return {};
}

std::string Decimal::Text() const {
  std::string digits = Magnitude();
  const int point = static_cast<int>(digits.size()) + exponent_;
  if (exponent_ > 0) {
    digits.append(static_cast<std::size_t>(exponent_), '0');
  } else if (exponent_ < 0) {
    digits.insert(0, static_cast<std::size_t>(std::max(-point, 0)), '0');
    digits.insert(static_cast<std::size_t>(std::max(point, 0)), 1, '.');
  }
  return (IsNegative() ? "-" : "") + digits;
}

std::optional<std::int64_t> Decimal::ToInt64() const {
  if (exponent_ < 0 || exponent_ > 19) return std::nullopt;
  const std::string text = Text();
  std::int64_t value = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
  if (error != std::errc()) return std::nullopt;
  return value;
}

int Decimal::DigitsAtScale(int scale) const {
  return IsZero() ? 0 : static_cast<int>(Magnitude().size()) + exponent_ + scale;
}

Decimal Decimal::Negated() const {
  return {-digits_, exponent_};
}

Decimal Decimal::Rounded(int scale) const {
  Decimal result = *this;
  result.DropDigits(-exponent_ - scale, true);
  return result;
}

Decimal Decimal::Truncated(int scale) const {
  Decimal result = *this;
  result.DropDigits(-exponent_ - scale, false);
  return result;
}

Status Decimal::Add(const Decimal& a, const Decimal& b, Decimal* out) {
  const int exponent = std::min(a.exponent_, b.exponent_);
  const mpz_class sum = a.digits_ * PowerOfTen(a.exponent_ - exponent) +
                        b.digits_ * PowerOfTen(b.exponent_ - exponent);
  return Fit({sum, exponent}, out);
}

Status Decimal::Multiply(const Decimal& a, const Decimal& b, Decimal* out) {
  return Fit({a.digits_ * b.digits_, a.exponent_ + b.exponent_}, out);
}

Status Decimal::Divide(const Decimal& a, const Decimal& b, Decimal* out) {
  if (b.IsZero()) return Ora(1476);
  // Enough digits for the result, two to round by, and those that the divisor takes away.
  const int more = kMaxDigits + 2 + b.DigitsAtScale(-b.exponent_);
  return Fit({a.digits_ * PowerOfTen(more) / b.digits_, a.exponent_ - b.exponent_ - more}, out);
}

int CompareDecimalTexts(std::string_view a, std::string_view b) {
  const bool negative_a = !a.empty() && a.front() == '-';
  const bool negative_b = !b.empty() && b.front() == '-';
  if (negative_a != negative_b) return negative_a ? -1 : 1;
  if (negative_a) {
    a.remove_prefix(1);
    b.remove_prefix(1);
  }
  if (a == "0") a = "";
  if (b == "0") b = "";
  const std::size_t whole_a = std::min(a.find('.'), a.size());
  const std::size_t whole_b = std::min(b.find('.'), b.size());
  int order = 0;
  if (whole_a != whole_b) {
    order = whole_a < whole_b ? -1 : 1;
  } else {
    order = a.compare(b);
  }
  return negative_a ? -order : order;
}

}  // namespace quillmere::sandbox
