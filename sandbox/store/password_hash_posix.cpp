// SPDX-License-Identifier: MIT
#include <crypt.h>

#include <memory>
#include <random>

#include "sandbox/store/password_hash.h"

namespace quillmere::sandbox {

namespace {

std::string Crypt(const std::string& password, const std::string& setting) {
  // The work area is tens of kilobytes: too much for the stack of a small thread.
  const auto data = std::make_unique<crypt_data>();
  const char* hash = crypt_r(password.c_str(), setting.c_str(), data.get());
  return hash == nullptr || hash[0] == '*' ? std::string() : std::string(hash);
}

}  // namespace

std::string HashPassword(const std::string& password) {
  static constexpr char kSalt[] =
      "./0123456789ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz";
  std::random_device random;
  // The fewest rounds the hash knows: connecting must stay cheap, sessions come by the thousand.
  std::string setting = "$5$rounds=1000$";
  for (int i = 0; i < 16; ++i) setting += kSalt[random() % 64];
  return Crypt(password, setting);
}

bool PasswordMatches(const std::string& password, const std::string& hash) {
  return !hash.empty() && Crypt(password, hash) == hash;
}

}  // namespace quillmere::sandbox
