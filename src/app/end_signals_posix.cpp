// SPDX-License-Identifier: MIT
#include <sys/socket.h>
#include <unistd.h>

#include <QSocketNotifier>
#include <array>
#include <cerrno>
#include <csignal>
#include <utility>

#include "app/end_signals.h"

namespace quillmere {
namespace {

// A handler may do next to nothing: it writes a byte, which the event loop reads.
volatile std::sig_atomic_t write_end = -1;

extern "C" void OnEndSignal(int) {
  const int before = errno;
  const char byte = 1;
  [[maybe_unused]] const ssize_t written = ::write(write_end, &byte, 1);
  errno = before;
}

void SetHandler(int signal, void (*handler)(int)) {
  struct sigaction action {};
  action.sa_handler = handler;
  action.sa_flags = SA_RESTART;
  sigemptyset(&action.sa_mask);
  ::sigaction(signal, &action, nullptr);
}

}  // namespace

class EndSignals::Watch {
 public:
  explicit Watch(std::function<void()> ask) : ask_(std::move(ask)) {
    // Without it the signals end the program at once, which loses nothing that a killed program
    // would not keep.
    if (::socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0, ends_.data()) != 0) {
      return;
    }
    notifier_ = std::make_unique<QSocketNotifier>(ends_[0], QSocketNotifier::Read);
    QObject::connect(notifier_.get(), &QSocketNotifier::activated, notifier_.get(),
                     [this] { Answer(); });
    write_end = ends_[1];
    SetHandler(SIGINT, OnEndSignal);
    SetHandler(SIGTERM, OnEndSignal);
    // Unless it is to be ignored, as under nohup.
    struct sigaction before {};
    watches_hang_up_ = ::sigaction(SIGHUP, nullptr, &before) == 0 && before.sa_handler != SIG_IGN;
    if (watches_hang_up_) SetHandler(SIGHUP, OnEndSignal);
  }

  ~Watch() {
    if (notifier_ == nullptr) return;
    SetHandler(SIGINT, SIG_DFL);
    SetHandler(SIGTERM, SIG_DFL);
    if (watches_hang_up_) SetHandler(SIGHUP, SIG_DFL);
    notifier_.reset();
    write_end = -1;
    for (const int end : ends_) ::close(end);
  }

  Watch(const Watch&) = delete;
  Watch& operator=(const Watch&) = delete;

 private:
  void Answer() {
    std::array<char, 16> bytes{};
    while (::read(ends_[0], bytes.data(), bytes.size()) > 0) {
    }
    ask_();
  }

  const std::function<void()> ask_;
  std::array<int, 2> ends_{};
  bool watches_hang_up_ = false;
  std::unique_ptr<QSocketNotifier> notifier_;
};

EndSignals::EndSignals(std::function<void()> ask)
    : watch_(std::make_unique<Watch>(std::move(ask))) {}

EndSignals::~EndSignals() = default;

}  // namespace quillmere
