// SPDX-License-Identifier: MIT
#include "gated_oci.h"

#include <map>

namespace quillmere {
namespace {

GatedOci* gate = nullptr;
OciApi real;
std::mutex texts_mutex;
std::map<const void*, std::string> texts;  // of prepared statements

template <auto Member>
struct Exchange;
template <typename Result, typename... Args, Result (*OciApi::*Member)(Args...)>
struct Exchange<Member> {
  static Result Call(Args... args) {
    gate->Pass({});
    return (real.*Member)(args...);
  }
};

oci::sword Prepare(oci::OCIStmt* statement, oci::OCIError* error, const unsigned char* text,
                   oci::ub4 length, oci::ub4 language, oci::ub4 mode) {
  {
    const std::lock_guard lock(texts_mutex);
    texts[statement] = std::string(reinterpret_cast<const char*>(text), length);
  }
  return real.StmtPrepare(statement, error, text, length, language, mode);
}

template <typename... Args>
oci::sword Execute(oci::OCISvcCtx* service, oci::OCIStmt* statement, Args... args) {
  std::string text;
  {
    const std::lock_guard lock(texts_mutex);
    text = texts[statement];
  }
  gate->Pass(text);
  return real.StmtExecute(service, statement, args...);
}

}  // namespace

GatedOci::GatedOci(const std::filesystem::path& program_folder)
    : library_("sandbox", program_folder), api_(library_.Api()) {
  gate = this;
  real = library_.Api();
  api_.ServerAttach = Exchange<&OciApi::ServerAttach>::Call;
  api_.ServerDetach = Exchange<&OciApi::ServerDetach>::Call;
  api_.SessionBegin = Exchange<&OciApi::SessionBegin>::Call;
  api_.SessionEnd = Exchange<&OciApi::SessionEnd>::Call;
  api_.StmtFetch2 = Exchange<&OciApi::StmtFetch2>::Call;
  api_.StmtPrepare = Prepare;
  api_.StmtExecute = Execute;
}

void GatedOci::SpareKnownThreads() {
  const std::lock_guard lock(mutex_);
  spared_ = known_;
}

void GatedOci::Hold() {
  const std::lock_guard lock(mutex_);
  holds_ = true;
  passes_ = 0;
}

void GatedOci::LetGo() {
  const std::lock_guard lock(mutex_);
  holds_ = false;
  changed_.notify_all();
}

void GatedOci::LetOnePass() {
  const std::lock_guard lock(mutex_);
  ++passes_;
  --held_;  // at once: whoever let it pass does not see it a second time
  changed_.notify_all();
}

void GatedOci::Watch(std::thread::id thread) {
  const std::lock_guard lock(mutex_);
  watched_ = thread;
  of_watched_ = 0;
}

void GatedOci::SetLocked(std::vector<std::string> parts, std::chrono::milliseconds wait) {
  const std::lock_guard lock(mutex_);
  locked_ = std::move(parts);
  lock_wait_ = wait;
}

void GatedOci::Pass(std::string_view statement) {
  std::chrono::milliseconds wait = latency_;
  {
    std::unique_lock lock(mutex_);
    const std::thread::id self = std::this_thread::get_id();
    known_.insert(self);
    if (self == watched_) ++of_watched_;
    for (const std::string& text : locked_) {
      if (statement.find(text) != std::string_view::npos) wait += lock_wait_;
    }
    if (holds_ && self != watched_ && !spared_.contains(self)) {
      ++held_;
      changed_.wait(lock, [this] { return !holds_ || passes_ > 0; });
      if (holds_) {
        --passes_;
      } else {
        --held_;
      }
    }
  }
  std::this_thread::sleep_for(wait);
}

}  // namespace quillmere
