// SPDX-License-Identifier: MIT
// What became of an operation that was asked for.
#pragma once

#include <string>
#include <utility>

namespace quillmere {

// The text is what the operator is to read: why it was refused or failed, or what was done.
struct [[nodiscard]] Outcome {
  bool done = false;
  std::string text;
  bool cancelled = false;  // by the operator, who need not be told; nothing was done

  static Outcome Done(std::string text = {}) { return {true, std::move(text), false}; }
  static Outcome Refused(std::string text) { return {false, std::move(text), false}; }
  static Outcome Cancelled() { return {false, "Cancelled, nothing was changed", true}; }
  explicit operator bool() const { return done; }
};

}  // namespace quillmere
