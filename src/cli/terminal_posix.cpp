// SPDX-License-Identifier: MIT
#include <poll.h>
#include <termios.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <csignal>

#include "cli/terminal.h"

namespace quillmere::cli {
namespace {

constexpr int kWaitMilliseconds = 100;
// A pipe that reports room has room for this much.
constexpr std::size_t kPiece = 512;
constexpr std::size_t kLongestLine = 4096;
constexpr char kCancel = '\x03';

// False when the reader does not read and the waiting was given up.
bool WaitForRoom(int fd, const std::function<bool()>& give_up) {
  pollfd room{fd, POLLOUT, 0};
  while (true) {
    const int ready = ::poll(&room, 1, kWaitMilliseconds);
    if (ready > 0) return true;
    if (ready < 0 && errno != EINTR) return true;  // the write will tell
    if (give_up()) return false;
  }
}

constexpr int kEndSignals[] = {SIGINT, SIGTERM, SIGHUP};

volatile std::sig_atomic_t end_signals_came = 0;

// On whichever thread. Whoever asks twice does not want to wait for a server.
extern "C" void OnEndSignal(int signal) {
  if (end_signals_came != 0) {
    ::signal(signal, SIG_DFL);
    ::raise(signal);
  }
  end_signals_came = 1;
}

bool IsIgnored(int signal) {
  struct sigaction now {};
  return ::sigaction(signal, nullptr, &now) == 0 && now.sa_handler == SIG_IGN;
}

// A terminal that shows nothing of what is typed. Ctrl-C ends the line and is part of it, so that
// the terminal is always set back.
class HiddenInput {
 public:
  HiddenInput() {
    hidden_ = ::tcgetattr(STDIN_FILENO, &before_) == 0;
    if (!hidden_) return;
    termios silent = before_;
    silent.c_lflag &= ~static_cast<tcflag_t>(ECHO | ISIG);
    silent.c_cc[VEOL] = kCancel;
    hidden_ = ::tcsetattr(STDIN_FILENO, TCSAFLUSH, &silent) == 0;
  }
  ~HiddenInput() {
    if (hidden_) ::tcsetattr(STDIN_FILENO, TCSAFLUSH, &before_);
  }
  HiddenInput(const HiddenInput&) = delete;
  HiddenInput& operator=(const HiddenInput&) = delete;

  bool Hidden() const { return hidden_; }

 private:
  termios before_{};
  bool hidden_ = false;
};

// Byte by byte: what stands behind the line is left to others.
bool ReadLine(std::string& line, std::string& reason) {
  line.clear();
  char c = 0;
  while (true) {
    const ssize_t got = ::read(STDIN_FILENO, &c, 1);
    if (got < 0 && errno == EINTR) continue;
    if (got < 0) {
      reason = "standard input cannot be read";
      return false;
    }
    if (got == 0 || c == '\n' || c == kCancel) break;
    line += c;
    if (line.size() > kLongestLine) {
      reason = "the line on standard input is too long";
      return false;
    }
  }
  if (c == kCancel) {
    reason = "cancelled";
    return false;
  }
  if (line.empty() && c != '\n') {
    reason = "standard input is at its end";
    return false;
  }
  if (!line.empty() && line.back() == '\r') line.pop_back();
  return true;
}

}  // namespace

void PrepareStreams() {
  struct sigaction ignore {};
  ignore.sa_handler = SIG_IGN;
  ::sigaction(SIGPIPE, &ignore, nullptr);
}

bool Write(Stream stream, std::string_view text, const std::function<bool()>& give_up) {
  const int fd = stream == Stream::Output ? STDOUT_FILENO : STDERR_FILENO;
  while (!text.empty()) {
    if (give_up && !WaitForRoom(fd, give_up)) return false;
    const std::size_t piece = give_up ? std::min(text.size(), kPiece) : text.size();
    const ssize_t written = ::write(fd, text.data(), piece);
    if (written < 0 && errno == EINTR) continue;
    if (written < 0 && errno == EAGAIN) {
      pollfd room{fd, POLLOUT, 0};
      ::poll(&room, 1, kWaitMilliseconds);
      continue;
    }
    if (written <= 0) return false;
    text.remove_prefix(static_cast<std::size_t>(written));
  }
  return true;
}

bool ReadSecretLine(std::string_view prompt, std::string& line, std::string& reason) {
  if (::isatty(STDIN_FILENO) == 0) return ReadLine(line, reason);
  bool read = false;
  {
    const HiddenInput hidden;
    if (!hidden.Hidden()) {
      reason = "the terminal cannot hide what is typed; use a password file";
      return false;
    }
    Write(Stream::Error, prompt);
    read = ReadLine(line, reason);
  }
  Write(Stream::Error, "\n");
  return read;
}

EndRequest::EndRequest() {
  end_signals_came = 0;
  struct sigaction action {};
  action.sa_handler = OnEndSignal;
  action.sa_flags = SA_RESTART;
  sigemptyset(&action.sa_mask);
  for (const int signal : kEndSignals) {
    if (signal != SIGHUP || !IsIgnored(signal)) ::sigaction(signal, &action, nullptr);
  }
}

EndRequest::~EndRequest() {
  for (const int signal : kEndSignals) {
    if (signal != SIGHUP || !IsIgnored(signal)) ::signal(signal, SIG_DFL);
  }
}

bool EndRequest::Came() {
  return end_signals_came != 0;
}

}  // namespace quillmere::cli
