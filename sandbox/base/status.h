// SPDX-License-Identifier: MIT
// The outcome of every operation of the sandbox database: fine, or an Oracle error number with its
// message. A plain value; copied freely, used on any thread.
#pragma once

#include <string>
#include <string_view>

namespace quillmere::sandbox {

class [[nodiscard]] Status {
 public:
  Status() = default;
  // `message` is what stands after "ORA-nnnnn: ".
  Status(int code, std::string message) : code_(code), message_(std::move(message)) {}

  bool ok() const { return code_ == 0; }
  int code() const { return code_; }
  const std::string& message() const { return message_; }
  // "ORA-00942: table or view does not exist"
  std::string Text() const;

 private:
  int code_ = 0;
  std::string message_;
};

// An error with the number's usual message.
Status Ora(int code);
// The same with more words behind the usual message, e.g. the object it is about.
Status Ora(int code, std::string_view detail);

// A piece of statement text short enough for a message, cut at a character.
std::string Shortened(std::string_view text, std::size_t limit = 120);

}  // namespace quillmere::sandbox
