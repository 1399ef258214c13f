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

  static Outcome Done(std::string text = {}) { return {true, std::move(text)}; }
  static Outcome Refused(std::string text) { return {false, std::move(text)}; }
  explicit operator bool() const { return done; }
};

}  // namespace quillmere
