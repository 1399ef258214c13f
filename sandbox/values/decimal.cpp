#include "sandbox/values/decimal.h"

#include <gmpxx.h>

#include <algorithm>
#include <charconv>

namespace quillmere::sandbox {

namespace {

constexpr int kMaxDigits = 40;
constexpr int kMaxPoint = 126;
constexpr int kMinPoint = -129;

bool IsDigit(char c) {
  return c >= '0' && c <= '9';
}

// The integer DIGITS with zeros appended, signed.
mpz_class ToInteger(const std::string& digits, bool negative, int zeros) {
  std::string text = digits.empty() ? "0" : digits;
  text.append(static_cast<std::size_t>(std::max(zeros, 0)), '0');
  mpz_class value(text, 10);
  if (negative) value = -value;
  return value;
}

}  // namespace

Decimal::Decimal(std::int64_t value) {
  const std::string text = std::to_string(value);
  negative_ = value < 0;
  digits_ = negative_ ? text.substr(1) : text;
  point_ = static_cast<int>(digits_.size());
  Normalise();
}

std::optional<Decimal> Decimal::Parse(std::string_view text) {
  while (!text.empty() && text.front() == ' ') text.remove_prefix(1);
  while (!text.empty() && text.back() == ' ') text.remove_suffix(1);
  Decimal number;
  std::size_t at = 0;
  if (at < text.size() && (text[at] == '+' || text[at] == '-')) {
    number.negative_ = text[at] == '-';
    ++at;
  }
  bool seen_digit = false;
  bool seen_point = false;
  int point = 0;
  for (; at < text.size() && (IsDigit(text[at]) || (text[at] == '.' && !seen_point)); ++at) {
    if (text[at] == '.') {
      seen_point = true;
      continue;
    }
    seen_digit = true;
    if (number.digits_.empty() && text[at] == '0') {
      if (seen_point) --point;
      continue;
    }
    number.digits_.push_back(text[at]);
    if (!seen_point) ++point;
  }
  if (!seen_digit) return std::nullopt;
  if (at < text.size() && (text[at] == 'e' || text[at] == 'E')) {
    ++at;
    if (at < text.size() && text[at] == '+') ++at;
    int exponent = 0;
    const auto [end, error] =
        std::from_chars(text.data() + at, text.data() + text.size(), exponent);
    if (error != std::errc() || exponent > 1000 || exponent < -1000) return std::nullopt;
    at = static_cast<std::size_t>(end - text.data());
    point += exponent;
  }
  if (at != text.size()) return std::nullopt;
  number.point_ = point;
  number.Normalise();
  number.KeepDigits(kMaxDigits, true);
  if (number.point_ > kMaxPoint) return std::nullopt;
  if (number.point_ < kMinPoint) return Decimal();
  return number;
}

void Decimal::Normalise() {
  const std::size_t first = digits_.find_first_not_of('0');
  if (first == std::string::npos) {
    *this = Decimal();
    return;
  }
  if (first > 0) {
    digits_.erase(0, first);
    point_ -= static_cast<int>(first);
  }
  digits_.erase(digits_.find_last_not_of('0') + 1);
}

// Keeps the leading `count` digits (may be 0 or negative: the value then lies right of them).
void Decimal::KeepDigits(int count, bool round) {
  if (count >= static_cast<int>(digits_.size())) return;
  if (count < 0) {
    *this = Decimal();
    return;
  }
  const bool up = round && digits_[static_cast<std::size_t>(count)] >= '5';
  digits_.resize(static_cast<std::size_t>(count));
  if (up) {
    int i = count - 1;
    while (i >= 0 && digits_[static_cast<std::size_t>(i)] == '9') {
      digits_[static_cast<std::size_t>(i)] = '0';
      --i;
    }
    if (i >= 0) {
      ++digits_[static_cast<std::size_t>(i)];
    } else {
      digits_.insert(digits_.begin(), '1');
      ++point_;
    }
  }
  Normalise();
}

std::string Decimal::Text() const {
  if (digits_.empty()) return "0";
  std::string text = negative_ ? "-" : "";
  const int count = static_cast<int>(digits_.size());
  if (point_ <= 0) {
    text += '.';
    text.append(static_cast<std::size_t>(-point_), '0');
    text += digits_;
  } else if (point_ >= count) {
    text += digits_;
    text.append(static_cast<std::size_t>(point_ - count), '0');
  } else {
    text.append(digits_, 0, static_cast<std::size_t>(point_));
    text += '.';
    text.append(digits_, static_cast<std::size_t>(point_));
  }
  return text;
}

std::optional<std::int64_t> Decimal::ToInt64() const {
  if (digits_.empty()) return 0;
  if (point_ < static_cast<int>(digits_.size()) || point_ > 19) return std::nullopt;
  const std::string text = Text();
  std::int64_t value = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
  if (error != std::errc() || end != text.data() + text.size()) return std::nullopt;
  return value;
}

int Decimal::DigitsAtScale(int scale) const {
  return digits_.empty() ? 0 : point_ + scale;
}

Decimal Decimal::Negated() const {
  Decimal result = *this;
  if (!digits_.empty()) result.negative_ = !negative_;
  return result;
}

Decimal Decimal::Rounded(int scale) const {
  Decimal result = *this;
  result.KeepDigits(point_ + scale, true);
  return result;
}

Decimal Decimal::Truncated(int scale) const {
  Decimal result = *this;
  result.KeepDigits(point_ + scale, false);
  return result;
}

// digits / 10^point as a number in range.
Status Decimal::FromScaled(std::string digits, bool negative, int point, Decimal* out) {
  Decimal result;
  result.negative_ = negative;
  result.point_ = static_cast<int>(digits.size()) - point;
  result.digits_ = std::move(digits);
  result.Normalise();
  result.KeepDigits(kMaxDigits, true);
  if (result.point_ > kMaxPoint) return Ora(1426);
  if (result.point_ < kMinPoint) result = Decimal();
  *out = std::move(result);
  return {};
}

Status Decimal::Add(const Decimal& a, const Decimal& b, Decimal* out) {
  const int places_a = static_cast<int>(a.digits_.size()) - a.point_;
  const int places_b = static_cast<int>(b.digits_.size()) - b.point_;
  const int places = std::max(places_a, places_b);
  const mpz_class sum = ToInteger(a.digits_, a.negative_, places - places_a) +
                        ToInteger(b.digits_, b.negative_, places - places_b);
  const mpz_class magnitude = abs(sum);
  return FromScaled(magnitude.get_str(), sgn(sum) < 0, places, out);
}

Status Decimal::Subtract(const Decimal& a, const Decimal& b, Decimal* out) {
  return Add(a, b.Negated(), out);
}

Status Decimal::Multiply(const Decimal& a, const Decimal& b, Decimal* out) {
  const mpz_class product = ToInteger(a.digits_, false, 0) * ToInteger(b.digits_, false, 0);
  const int places =
      static_cast<int>(a.digits_.size()) - a.point_ + static_cast<int>(b.digits_.size()) - b.point_;
  return FromScaled(product.get_str(), a.negative_ != b.negative_, places, out);
}

Status Decimal::Divide(const Decimal& a, const Decimal& b, Decimal* out) {
  if (b.IsZero()) return Ora(1476);
  constexpr int kGuard = kMaxDigits + 2;
  const int zeros = kGuard + static_cast<int>(b.digits_.size());
  const mpz_class quotient = ToInteger(a.digits_, false, zeros) / ToInteger(b.digits_, false, 0);
  const int places = static_cast<int>(a.digits_.size()) - a.point_ + zeros -
                     (static_cast<int>(b.digits_.size()) - b.point_);
  return FromScaled(quotient.get_str(), a.negative_ != b.negative_, places, out);
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
