// SPDX-License-Identifier: MIT
// Any text as a stored password, and as a password to be stored.
#include <string>
#include <string_view>

#include "foundation/tea_cipher.h"
#include "must.h"

using namespace quillmere;

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size) {
  const std::string_view text(reinterpret_cast<const char*>(data), size);
  MUST(DecipherPassword(text).size() <= TeaCipher::kPasswordBytes);
  const std::string stored = EncipherPassword(text);
  MUST(stored.size() == 2 * TeaCipher::kPasswordBytes);
  const std::string_view kept = text.substr(0, TeaCipher::kLongestPassword);
  MUST(DecipherPassword(stored) == kept.substr(0, kept.find('\0')));
  return 0;
}
