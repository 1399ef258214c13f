// SPDX-License-Identifier: MIT
#include "sandbox/values/rowid.h"

namespace quillmere::sandbox {

namespace {

constexpr char kAlphabet[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";

void Append(std::uint64_t value, std::size_t width, std::string* out) {
  std::string digits(width, 'A');
  for (std::size_t i = width; i-- > 0; value >>= 6) digits[i] = kAlphabet[value & 63U];
  *out += digits;
}

}  // namespace

std::string RowAddress(std::int64_t table_id, std::int64_t row) {
  std::string address;
  Append(static_cast<std::uint64_t>(table_id), 6, &address);
  Append(1, 3, &address);
  Append(static_cast<std::uint64_t>(row), 9, &address);
  return address;
}

}  // namespace quillmere::sandbox
