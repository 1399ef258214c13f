// SPDX-License-Identifier: MIT
#include "cli/password_input.h"

#include "cli/terminal.h"
#include "foundation/H_tea.h"

namespace quillmere::cli {
namespace {

bool ReadFromFile(const std::string& file, std::string& password, std::string& reason) {
  SystemFiles files;  // not one of the program's files: a path that the operator gives
  if (FileStatus read = ReadFile(files, file, password, Links::Followed); !read) {
    reason = std::move(read.reason);
    return false;
  }
  if (!password.empty() && password.back() == '\n') password.pop_back();
  if (!password.empty() && password.back() == '\r') password.pop_back();
  if (password.find('\n') == std::string::npos) return true;
  reason = "the password file " + file + " has more than one line";
  return false;
}

}  // namespace

bool ReadPassword(const std::string& file, const std::string& prompt, std::string& password,
                  std::string& reason) {
  if (!file.empty()) return ReadFromFile(file, password, reason);
  if (ReadSecretLine(prompt, password, reason)) return true;
  reason = "No password: " + reason;
  return false;
}

}  // namespace quillmere::cli
