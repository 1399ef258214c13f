// SPDX-License-Identifier: MIT
#include <fcntl.h>
#include <sys/mman.h>
#include <unistd.h>

#include <array>
#include <atomic>
#include <cerrno>
#include <cstring>
#include <string_view>

#include "sandbox/store/open_transaction.h"
#include "sandbox/store/platform.h"

namespace quillmere::sandbox {

// The side file. Numbers are read while another process writes them; the texts belong to the
// transaction whose SCN stands there and are cut to their places.
struct OpenTransaction::Shared {
  std::atomic<std::int64_t> last_scn;
  std::atomic<std::int64_t> start_scn;  // 0: none
  std::int64_t process;
  std::array<char, 32> started;
  std::array<char, 160> user;
  std::array<char, 96> machine;
  std::array<char, 96> program;
};

namespace {

static_assert(std::atomic<std::int64_t>::is_always_lock_free);

template <std::size_t size>
void Put(std::string_view text, std::array<char, size>* to) {
  to->fill('\0');
  text.substr(0, size - 1).copy(to->data(), size - 1);
}

template <std::size_t size>
std::string Get(const std::array<char, size>& from) {
  return {from.data(), strnlen(from.data(), size)};
}

std::string MachineName() {
  std::array<char, 96> name{};
  return gethostname(name.data(), name.size() - 1) == 0 ? name.data() : "";
}

}  // namespace

Status OpenTransaction::Open(const std::filesystem::path& path,
                             std::unique_ptr<OpenTransaction>* out) {
  const int file = open(path.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600);
  if (file < 0) return FileFailure("use " + path.string());
  void* shared = MAP_FAILED;
  if (ftruncate(file, sizeof(Shared)) == 0) {
    shared = mmap(nullptr, sizeof(Shared), PROT_READ | PROT_WRITE, MAP_SHARED, file, 0);
  }
  if (shared == MAP_FAILED) {
    const Status status = FileFailure("use " + path.string());
    close(file);
    return status;
  }
  out->reset(new OpenTransaction(file, static_cast<Shared*>(shared)));
  return {};
}

OpenTransaction::~OpenTransaction() {
  munmap(shared_, sizeof(Shared));
  close(static_cast<int>(file_));
}

std::int64_t OpenTransaction::last_scn() const {
  return shared_->last_scn;
}

void OpenTransaction::set_last_scn(std::int64_t scn) {
  shared_->last_scn = scn;
}

Status OpenTransaction::Show(const TransactionRecord& record) {
  if (!LockFile(file_, FileLock::Exclusive))
    return FileFailure("lock the file of the open transaction");
  shown_ = true;
  shared_->process = getpid();
  Put(record.started, &shared_->started);
  Put(record.user, &shared_->user);
  Put(MachineName(), &shared_->machine);
  Put(program_invocation_short_name, &shared_->program);
  // Before the SCN shows that there was a change: who sees that one sees this one.
  shared_->start_scn = record.start_scn;
  set_last_scn(record.start_scn);
  return {};
}

void OpenTransaction::Hide() {
  if (!shown_) return;
  shared_->start_scn = 0;
  shown_ = false;
  LockFile(file_, FileLock::None);
}

bool OpenTransaction::Find(TransactionRecord* out) const {
  out->start_scn = shared_->start_scn;
  if (out->start_scn == 0) return false;
  if (!shown_ && LockFile(file_, FileLock::Try)) {  // nobody holds it: its process has died
    LockFile(file_, FileLock::None);
    return false;
  }
  out->process = shared_->process;
  out->started = Get(shared_->started);
  out->user = Get(shared_->user);
  out->machine = Get(shared_->machine);
  out->program = Get(shared_->program);
  return true;
}

}  // namespace quillmere::sandbox
