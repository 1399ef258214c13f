// SPDX-License-Identifier: MIT
#ifndef NOMINMAX
#define NOMINMAX
#endif
#include <fcntl.h>
#include <io.h>
#include <windows.h>

#include <atomic>
#include <cstdio>

#include "cli/terminal.h"

namespace quillmere::cli {
namespace {

constexpr std::size_t kLongestLine = 4096;

// The console calls the handler on a thread of its own; nothing but this flag passes between them.
std::atomic<bool> end_requested{false};

BOOL WINAPI OnConsoleEvent(DWORD) {
  return end_requested.exchange(true) ? FALSE : TRUE;  // the second time the system ends it
}

bool ReadLine(std::string& line, std::string& reason) {
  line.clear();
  int c = 0;
  while ((c = std::getchar()) != EOF && c != '\n') {
    line += static_cast<char>(c);
    if (line.size() > kLongestLine) {
      reason = "the line on standard input is too long";
      return false;
    }
  }
  if (line.empty() && c == EOF) {
    reason = "standard input is at its end";
    return false;
  }
  if (!line.empty() && line.back() == '\r') line.pop_back();
  return true;
}

}  // namespace

void PrepareStreams() {
  ::_setmode(::_fileno(stdout), _O_BINARY);
  ::_setmode(::_fileno(stderr), _O_BINARY);
}

bool Write(Stream stream, std::string_view text, const std::function<bool()>&) {
  std::FILE* const file = stream == Stream::Output ? stdout : stderr;
  return std::fwrite(text.data(), 1, text.size(), file) == text.size() && std::fflush(file) == 0;
}

bool ReadSecretLine(std::string_view prompt, std::string& line, std::string& reason) {
  const HANDLE input = ::GetStdHandle(STD_INPUT_HANDLE);
  DWORD before = 0;
  if (::GetConsoleMode(input, &before) == 0) return ReadLine(line, reason);
  ::SetConsoleMode(input, before & ~static_cast<DWORD>(ENABLE_ECHO_INPUT));
  Write(Stream::Error, prompt);
  const bool read = ReadLine(line, reason);
  ::SetConsoleMode(input, before);
  Write(Stream::Error, "\n");
  return read;
}

EndRequest::EndRequest() {
  end_requested = false;
  ::SetConsoleCtrlHandler(OnConsoleEvent, TRUE);
}

EndRequest::~EndRequest() {
  ::SetConsoleCtrlHandler(OnConsoleEvent, FALSE);
}

bool EndRequest::Came() {
  return end_requested;
}

}  // namespace quillmere::cli
