// SPDX-License-Identifier: MIT
// history.log of the working folder: who did what when, with the old and the new value. The program
// only adds to it. User-interface thread (the command line's main thread).
#pragma once

#include <filesystem>
#include <string>
#include <string_view>

#include "foundation/clock.h"
#include "messages/message_log.h"

namespace quillmere {

// Who runs the program, as the system has it; "unknown" when it does not say.
std::string UserName();

class ActionLog {
 public:
  // All of it outlives the log. One that does not write is that of a program that only looks.
  ActionLog(FileSystem& files, std::filesystem::path file, const Clock& clock, MessageLog& log,
            std::string user, bool writes);

  const std::string& User() const { return user_; }

  // A line: time, user, action, object and, when there are any, the values: never a password. What
  // cannot be written is told once in the message log.
  void Note(std::string_view action, std::string_view object, std::string_view old_value = {},
            std::string_view new_value = {});

 private:
  FileSystem& files_;
  const std::filesystem::path file_;
  const Clock& clock_;
  MessageLog& log_;
  const bool writes_;
  const std::string user_;
  bool told_ = false;
};

}  // namespace quillmere
