// SPDX-License-Identifier: MIT
#include "foundation/file_names.h"

#include <algorithm>
#include <array>
#include <cstdint>

#include "foundation/text.h"

namespace quillmere {

namespace {

// Leaves room for ".xml", ".bad" and a temporary suffix, and twice in a path of 260 on Windows.
constexpr std::size_t kLongestName = 100;

// Bytes of the UTF-8 character at the start of text, 0 when it is none.
std::size_t Utf8Length(std::string_view text) {
  const auto lead = static_cast<unsigned char>(text[0]);
  if (lead < 0x80) return 1;
  const std::size_t length = lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : 2;
  if (lead < 0xC2 || lead > 0xF4 || text.size() < length) return 0;
  std::uint32_t code = lead & (0x7Fu >> length);
  for (std::size_t i = 1; i < length; ++i) {
    if (!ContinuesCharacter(text[i])) return 0;
    code = code << 6 | (static_cast<unsigned char>(text[i]) & 0x3Fu);
  }
  const bool overlong = (length == 3 && code < 0x800) || (length == 4 && code < 0x10000);
  const bool surrogate = code >= 0xD800 && code <= 0xDFFF;
  return overlong || surrogate || code > 0x10FFFF ? 0 : length;
}

bool IsUtf8(std::string_view text) {
  while (!text.empty()) {
    const std::size_t length = Utf8Length(text);
    if (length == 0) return false;
    text.remove_prefix(length);
  }
  return true;
}

// Names of devices, with any extension: "nul", "Com1.xml".
bool IsDeviceName(std::string_view name) {
  const std::string_view base = TrimRight(name.substr(0, name.find('.')), " ");
  constexpr std::array<std::string_view, 7> kDevices = {"con",     "prn",    "aux",   "nul",
                                                        "conout$", "conin$", "clock$"};
  if (std::any_of(kDevices.begin(), kDevices.end(),
                  [&](std::string_view device) { return SameFileName(base, device); })) {
    return true;
  }
  if (base.size() < 4) return false;
  const std::string_view stem = base.substr(0, 3);
  const std::string_view digit = base.substr(3);
  if (!SameFileName(stem, "com") && !SameFileName(stem, "lpt")) return false;
  // Windows takes the superscript digits one to three as digits, too.
  return (digit.size() == 1 && digit[0] >= '0' && digit[0] <= '9') || digit == "\xC2\xB9" ||
         digit == "\xC2\xB2" || digit == "\xC2\xB3";
}

std::string WhyCharactersRefused(std::string_view name) {
  for (const char c : name) {
    if (IsControlCharacter(c)) return "A name must not contain control characters";
    if (std::string_view("<>:\"/\\|?*").find(c) != std::string_view::npos) {
      return std::string("A name must not contain '") + c + "'";
    }
  }
  return IsUtf8(name) ? std::string() : "A name must be valid UTF-8 text";
}

}  // namespace

std::string WhyNoFileName(std::string_view name) {
  if (name.empty()) return "A name must not be empty";
  if (name.size() > kLongestName) {
    return "A name must not be longer than " + std::to_string(kLongestName) + " bytes";
  }
  std::string refused = WhyCharactersRefused(name);
  if (!refused.empty()) return refused;
  // A blank in front would be lost by the configuration files.
  if (name.front() == ' ') return "A name must not begin with a blank";
  if (name.back() == ' ') return "A name must not end with a blank";
  if (name.back() == '.') return "A name must not end with a dot";
  if (IsDeviceName(name)) return "A name must not be that of a device, like NUL or COM1";
  return {};
}

bool SameFileName(std::string_view a, std::string_view b) {
  return EqualsIgnoringCase(a, b);
}

}  // namespace quillmere
