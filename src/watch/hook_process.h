// SPDX-License-Identifier: MIT
// A program of the operator's, run beside everything else: it is given a text and is looked at from
// time to time. Nothing here waits but Kill. One thread at a time.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace quillmere {

// What a line of settings means: blanks part the words; double quotes keep them together, within
// which a backslash stands before a quote or a backslash that is meant. No shell, so nothing else
// means anything. False, with the reason: the last quote is not closed.
bool SplitCommand(std::string_view line, std::vector<std::string>& words, std::string& error);

class HookProcess {
 public:
  static constexpr std::size_t kKeptOutput = 300;  // bytes, of which a failure tells

  HookProcess();
  ~HookProcess();  // Kill
  HookProcess(const HookProcess&) = delete;
  HookProcess& operator=(const HookProcess&) = delete;

  // The first word is the program: a path, or a name that is looked up as a shell would. input is
  // its standard input; what it writes is read, and forgotten but for its first bytes. It leads a
  // process group of its own. False, with the reason: nothing runs.
  bool Start(const std::vector<std::string>& words, std::string_view input, std::string& error);
  bool Running() const;

  // Nothing while it runs. Else how it ended: empty when well, or why that was not so.
  std::optional<std::string> Look();

  // Ends the program with all of its group.
  void Kill();

 private:
  struct Child;
  std::unique_ptr<Child> child_;
};

}  // namespace quillmere
