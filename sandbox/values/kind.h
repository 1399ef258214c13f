// SPDX-License-Identifier: MIT
// The kinds of values that statements tell apart. Plain values.
#pragma once

namespace quillmere::sandbox {

// Lob is character data that may be empty without being NULL; binary large objects are Raw.
enum class Kind { Null, Text, Number, Date, Timestamp, TimestampTz, Raw, Lob };
inline constexpr int kKindCount = 8;

inline bool IsTime(Kind kind) {
  return kind == Kind::Date || kind == Kind::Timestamp || kind == Kind::TimestampTz;
}

}  // namespace quillmere::sandbox
