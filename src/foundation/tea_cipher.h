// SPDX-License-Identifier: MIT
// The 64-bit block cipher that hides stored passwords from casual reading. Not meant to resist
// anybody who has the program: the key is a constant of it.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace quillmere {

class TeaCipher {
 public:
  static constexpr std::size_t kKeyBytes = 16;
  static constexpr std::size_t kPasswordBytes = 32;  // room for a password and its zero
  static constexpr std::size_t kLongestPassword = 31;

  explicit TeaCipher(std::string_view key16);

  void EncipherBlock(std::uint32_t& left, std::uint32_t& right) const;
  void DecipherBlock(std::uint32_t& left, std::uint32_t& right) const;

  // In place, whole 8-byte blocks from the start; bytes after the last whole block stay.
  void EncipherBuffer(unsigned char* buffer, std::size_t length) const;
  void DecipherBuffer(unsigned char* buffer, std::size_t length) const;

 private:
  std::array<std::uint32_t, 4> key_;
};

std::string HexEncode(const unsigned char* bytes, std::size_t count);

// Two characters a byte; what is missing or no digit counts as 0.
void HexDecode(std::string_view text, unsigned char* bytes, std::size_t count);

// 64 hexadecimal digits; the password must be at most kLongestPassword bytes (longer is cut).
std::string EncipherPassword(std::string_view password);

// An empty or missing stored value is the empty password.
std::string DecipherPassword(std::string_view stored);

}  // namespace quillmere
