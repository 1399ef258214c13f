// SPDX-License-Identifier: MIT
#include <fcntl.h>
#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cstdio>
#include <system_error>
#include <thread>

#include "foundation/text.h"
#include "watch/hook_process.h"

extern char** environ;

namespace quillmere {
namespace {

constexpr int kMostReadAtOnce = 64;  // buffers: a flood must not hold up whoever looks

class Descriptor {
 public:
  explicit Descriptor(int number = -1) : number_(number) {}
  ~Descriptor() { Close(); }
  Descriptor(const Descriptor&) = delete;
  Descriptor& operator=(const Descriptor&) = delete;

  int Number() const { return number_; }
  void Set(int number) {
    Close();
    number_ = number;
  }
  void Close() {
    if (number_ >= 0) ::close(number_);
    number_ = -1;
  }

 private:
  int number_;
};

std::string ErrorText(int code) {
  return std::generic_category().message(code);
}

// Without a name, so that nothing is left of it; a pipe would have to be fed by somebody.
bool OpenInput(std::string_view text, Descriptor& input) {
  std::FILE* const file = std::tmpfile();
  if (file == nullptr) return false;
  const bool written = std::fwrite(text.data(), 1, text.size(), file) == text.size() &&
                       std::fflush(file) == 0 && ::lseek(::fileno(file), 0, SEEK_SET) == 0;
  if (written) input.Set(::fcntl(::fileno(file), F_DUPFD_CLOEXEC, 3));
  const int code = errno;
  std::fclose(file);
  errno = code;
  return written && input.Number() >= 0;
}

bool OpenOutput(Descriptor& reading, Descriptor& writing) {
  int ends[2];
  if (::pipe2(ends, O_CLOEXEC) != 0) return false;
  reading.Set(ends[0]);
  writing.Set(ends[1]);
  return ::fcntl(ends[0], F_SETFL, O_NONBLOCK) == 0;
}

struct SpawnPlan {
  posix_spawn_file_actions_t files;
  posix_spawnattr_t attributes;

  SpawnPlan(int input, int output) {
    ::posix_spawn_file_actions_init(&files);
    ::posix_spawn_file_actions_adddup2(&files, input, STDIN_FILENO);
    ::posix_spawn_file_actions_adddup2(&files, output, STDOUT_FILENO);
    ::posix_spawn_file_actions_adddup2(&files, output, STDERR_FILENO);
    // A client library may leave files open that are not its own affair.
    ::posix_spawn_file_actions_addclosefrom_np(&files, STDERR_FILENO + 1);
    ::posix_spawnattr_init(&attributes);
    sigset_t none, all;
    ::sigemptyset(&none);
    ::sigfillset(&all);
    ::posix_spawnattr_setsigmask(&attributes, &none);
    ::posix_spawnattr_setsigdefault(&attributes, &all);
    ::posix_spawnattr_setpgroup(&attributes, 0);
    ::posix_spawnattr_setflags(
        &attributes, POSIX_SPAWN_SETPGROUP | POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF);
  }
  ~SpawnPlan() {
    ::posix_spawn_file_actions_destroy(&files);
    ::posix_spawnattr_destroy(&attributes);
  }
  SpawnPlan(const SpawnPlan&) = delete;
  SpawnPlan& operator=(const SpawnPlan&) = delete;
};

}  // namespace

struct HookProcess::Child {
  pid_t id = -1;
  Descriptor output;
  std::string first_words;

  void Read() {
    char buffer[16 * 1024];
    for (int i = 0; i < kMostReadAtOnce; ++i) {
      const ssize_t got = ::read(output.Number(), buffer, sizeof buffer);
      if (got <= 0) return;
      const std::size_t room = kKeptOutput - first_words.size();
      first_words.append(buffer, std::min(static_cast<std::size_t>(got), room));
    }
  }

  std::string HowItEnded(int status) const {
    if (WIFEXITED(status) && WEXITSTATUS(status) == 0) return {};
    std::string how = WIFEXITED(status)
                          ? "it ended with status " + std::to_string(WEXITSTATUS(status))
                          : "signal " + std::to_string(WTERMSIG(status)) + " ended it";
    const std::string words(Trim(OnOneLine(first_words)));
    return words.empty() ? how : how + ": " + words;
  }
};

HookProcess::HookProcess() = default;

HookProcess::~HookProcess() {
  Kill();
}

bool HookProcess::Running() const {
  return child_ != nullptr;
}

bool HookProcess::Start(const std::vector<std::string>& words, std::string_view input,
                        std::string& error) {
  auto child = std::make_unique<Child>();
  Descriptor given, writing;
  if (!OpenInput(input, given) || !OpenOutput(child->output, writing)) {
    error = ErrorText(errno);
    return false;
  }
  const SpawnPlan plan(given.Number(), writing.Number());
  std::vector<char*> arguments;
  arguments.reserve(words.size() + 1);
  for (const std::string& word : words) arguments.push_back(const_cast<char*>(word.c_str()));
  arguments.push_back(nullptr);
  const int code = ::posix_spawnp(&child->id, arguments.front(), &plan.files, &plan.attributes,
                                  arguments.data(), environ);
  if (code != 0) {
    error = words.front() + ": " + ErrorText(code);
    return false;
  }
  child_ = std::move(child);
  return true;
}

std::optional<std::string> HookProcess::Look() {
  if (child_ == nullptr) return std::string();
  int status = 0;
  const pid_t ended = ::waitpid(child_->id, &status, WNOHANG);
  child_->Read();
  if (ended == 0 || (ended < 0 && errno == EINTR)) return std::nullopt;
  std::string how = ended < 0 ? "how it ended is not known" : child_->HowItEnded(status);
  child_.reset();
  return how;
}

void HookProcess::Kill() {
  if (child_ == nullptr) return;
  // Its leader has not been waited for, so the group's id is still its own.
  ::kill(-child_->id, SIGKILL);
  // One that a dead disk holds is left to the system.
  constexpr int kTurns = 100;
  constexpr std::chrono::milliseconds kTurn{10};
  int status = 0;
  for (int i = 0; i < kTurns && ::waitpid(child_->id, &status, WNOHANG) == 0; ++i) {
    std::this_thread::sleep_for(kTurn);
  }
  child_.reset();
}

}  // namespace quillmere
