// SPDX-License-Identifier: MIT
// Standard input, output and error of the program, and the signals that ask it to end. Each
// platform has a file of its own. Main thread only.
#pragma once

#include <functional>
#include <string>
#include <string_view>

namespace quillmere::cli {

enum class Stream { Output, Error };

// To be called first: writing to a closed pipe is from then on a failure and not the end.
void PrepareStreams();

// Unbuffered; whole or false. give_up, if given, is asked now and then while the reader does not
// read: true ends the waiting with false.
bool Write(Stream stream, std::string_view text, const std::function<bool()>& give_up = {});

// One line from standard input, without its end. On a terminal the prompt is shown and what is
// typed is not. False: the reason why there is none.
bool ReadSecretLine(std::string_view prompt, std::string& line, std::string& reason);

// SIGINT, SIGTERM and SIGHUP (Ctrl-C and the closing of the console) while it lives: the first ends
// nothing, but is told; the second ends the program at once, whatever it waits for. A SIGHUP that
// was ignored before, as by nohup, stays so. One at a time.
class EndRequest {
 public:
  EndRequest();
  ~EndRequest();
  EndRequest(const EndRequest&) = delete;
  EndRequest& operator=(const EndRequest&) = delete;

  // True from the first one on.
  bool Came();
};

}  // namespace quillmere::cli
