// SPDX-License-Identifier: MIT
#include "foundation/tea_cipher.h"

#include <algorithm>
#include <cstring>

namespace quillmere {

namespace {

constexpr std::uint32_t kDelta = 0x9E3779B9u;
constexpr std::uint32_t kCycles = 32;
constexpr std::string_view kStoreKey = "Quillmere harbor";
static_assert(kStoreKey.size() == TeaCipher::kKeyBytes);

std::uint32_t LoadBigEndian(const unsigned char* bytes) {
  return std::uint32_t{bytes[0]} << 24 | std::uint32_t{bytes[1]} << 16 |
         std::uint32_t{bytes[2]} << 8 | std::uint32_t{bytes[3]};
}

void StoreBigEndian(std::uint32_t word, unsigned char* bytes) {
  for (int i = 0; i < 4; ++i) bytes[i] = static_cast<unsigned char>(word >> (24 - 8 * i));
}

// The four terms are added, unlike in the published cycle: stored passwords depend on it.
std::uint32_t Mix(std::uint32_t half, std::uint32_t sum, std::uint32_t key_a, std::uint32_t key_b) {
  return (half << 4) + (key_a ^ half) + ((half >> 5) ^ sum) + key_b;
}

unsigned char HexValue(char digit) {
  if (digit >= '0' && digit <= '9') return static_cast<unsigned char>(digit - '0');
  if (digit >= 'A' && digit <= 'F') return static_cast<unsigned char>(digit - 'A' + 10);
  if (digit >= 'a' && digit <= 'f') return static_cast<unsigned char>(digit - 'a' + 10);
  return 0;
}

}  // namespace

TeaCipher::TeaCipher(std::string_view key16) {
  std::array<unsigned char, kKeyBytes> bytes{};
  std::copy_n(key16.begin(), std::min(key16.size(), bytes.size()), bytes.begin());
  for (std::size_t i = 0; i < key_.size(); ++i) key_[i] = LoadBigEndian(&bytes[4 * i]);
}

void TeaCipher::EncipherBlock(std::uint32_t& left, std::uint32_t& right) const {
  std::uint32_t sum = 0;
  for (std::uint32_t i = 0; i < kCycles; ++i) {
    sum += kDelta;
    left += Mix(right, sum, key_[0], key_[1]);
    right += Mix(left, sum, key_[2], key_[3]);
  }
}

void TeaCipher::DecipherBlock(std::uint32_t& left, std::uint32_t& right) const {
  std::uint32_t sum = kDelta * kCycles;
  for (std::uint32_t i = 0; i < kCycles; ++i) {
    right -= Mix(left, sum, key_[2], key_[3]);
    left -= Mix(right, sum, key_[0], key_[1]);
    sum -= kDelta;
  }
}

void TeaCipher::EncipherBuffer(unsigned char* buffer, std::size_t length) const {
  for (std::size_t at = 0; at + 8 <= length; at += 8) {
    std::uint32_t left = LoadBigEndian(buffer + at);
    std::uint32_t right = LoadBigEndian(buffer + at + 4);
    EncipherBlock(left, right);
    StoreBigEndian(left, buffer + at);
    StoreBigEndian(right, buffer + at + 4);
  }
}

void TeaCipher::DecipherBuffer(unsigned char* buffer, std::size_t length) const {
  for (std::size_t at = 0; at + 8 <= length; at += 8) {
    std::uint32_t left = LoadBigEndian(buffer + at);
    std::uint32_t right = LoadBigEndian(buffer + at + 4);
    DecipherBlock(left, right);
    StoreBigEndian(left, buffer + at);
    StoreBigEndian(right, buffer + at + 4);
  }
}

std::string HexEncode(const unsigned char* bytes, std::size_t count) {
  constexpr char kDigits[] = "0123456789ABCDEF";
  std::string text;
  text.reserve(count * 2);
  for (std::size_t i = 0; i < count; ++i) {
    text += kDigits[bytes[i] >> 4];
    text += kDigits[bytes[i] & 15];
  }
  return text;
}

void HexDecode(std::string_view text, unsigned char* bytes, std::size_t count) {
  const auto digit = [&](std::size_t at) {
    return at < text.size() ? HexValue(text[at]) : static_cast<unsigned char>(0);
  };
  for (std::size_t i = 0; i < count; ++i) {
    bytes[i] = static_cast<unsigned char>(digit(2 * i) << 4 | digit(2 * i + 1));
  }
}

std::string EncipherPassword(std::string_view password) {
  std::array<unsigned char, TeaCipher::kPasswordBytes> buffer{};
  std::copy_n(password.begin(), std::min(password.size(), TeaCipher::kLongestPassword),
              buffer.begin());
  TeaCipher(kStoreKey).EncipherBuffer(buffer.data(), buffer.size());
  return HexEncode(buffer.data(), buffer.size());
}

std::string DecipherPassword(std::string_view stored) {
  if (stored.empty()) return {};
  std::array<unsigned char, TeaCipher::kPasswordBytes> buffer{};
  HexDecode(stored, buffer.data(), buffer.size());
  TeaCipher(kStoreKey).DecipherBuffer(buffer.data(), buffer.size());
  const auto end = std::find(buffer.begin(), buffer.end(), static_cast<unsigned char>(0));
  return {buffer.begin(), end};
}

}  // namespace quillmere
