// SPDX-License-Identifier: MIT
#include "sandbox/store/open_transaction.h"

#include <array>
#include <atomic>
#include <cstring>
#include <string_view>

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

}  // namespace

Status OpenTransaction::Open(const std::filesystem::path& path,
                             std::unique_ptr<OpenTransaction>* out) {
  SharedFile file;
  const Status status = MapShared(path, sizeof(Shared), &file);
  if (status.ok()) out->reset(new OpenTransaction(file));
  return status;
}

OpenTransaction::OpenTransaction(SharedFile file)
    : file_(file), shared_(static_cast<Shared*>(file.memory)) {}

OpenTransaction::~OpenTransaction() {
  Unmap(file_, sizeof(Shared));
}

std::int64_t OpenTransaction::last_scn() const {
  return shared_->last_scn;
}

void OpenTransaction::set_last_scn(std::int64_t scn) {
  shared_->last_scn = scn;
}

Status OpenTransaction::Show(const TransactionRecord& record) {
  if (!LockFile(file_.file, FileLock::Exclusive))
    return FileFailure("lock the file of the open transaction");
  shown_ = true;
  const ProcessFacts self = ThisProcess();
  shared_->process = self.number;
  Put(record.started, &shared_->started);
  Put(record.user, &shared_->user);
  Put(self.machine, &shared_->machine);
  Put(self.program, &shared_->program);
  // Before the SCN shows that there was a change: who sees that one sees this one.
  shared_->start_scn = record.start_scn;
  set_last_scn(record.start_scn);
  return {};
}

void OpenTransaction::Hide() {
  if (!shown_) return;
  shared_->start_scn = 0;
  shown_ = false;
  LockFile(file_.file, FileLock::None);
}

bool OpenTransaction::Find(TransactionRecord* out) const {
  out->start_scn = shared_->start_scn;
  if (out->start_scn == 0) return false;
  if (!shown_ && LockFile(file_.file, FileLock::Try)) {  // nobody holds it: its process has died
    LockFile(file_.file, FileLock::None);
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
