// SPDX-License-Identifier: MIT
#include "support/scripted_oci.h"

#include <algorithm>
#include <concepts>
#include <cstring>
#include <utility>

namespace quillmere::testing {

using namespace oci;

namespace {

ScriptedOci* current = nullptr;

constexpr sb4 kNoDataCode = 1403;

std::string TypeName(ub4 type) {
  static const std::map<ub4, std::string> names = {{kHtypeEnv, "env"},    {kHtypeError, "err"},
                                                   {kHtypeSvcCtx, "svc"}, {kHtypeStmt, "stm"},
                                                   {kHtypeServer, "srv"}, {kHtypeSession, "ses"}};
  const auto found = names.find(type);
  return found == names.end() ? "?" : found->second;
}

std::string Quote(const void* text, std::size_t length) {
  return '"' + std::string(static_cast<const char*>(text), length) + '"';
}

std::string Shown(std::string text) {
  return text;
}
std::string Shown(const void* handle) {
  return current->Name(handle);
}
template <std::integral Number>
std::string Shown(Number number) {
  return std::to_string(number);
}

// "Function(svc1, err1, 0)"
template <typename... Arguments>
std::string Line(const char* function, const Arguments&... arguments) {
  std::string line;
  ((line += (line.empty() ? std::string(function) + "(" : ", ") + Shown(arguments)), ...);
  return line + ")";
}

}  // namespace

struct ScriptedOci::Handle {
  struct Define {
    char* value = nullptr;
    sb4 capacity = 0;
    sb2* indicator = nullptr;
    ub2* length = nullptr;
  };
  ub4 type = 0;
  std::string name;
  bool freed = false;
  std::string sql;
  std::map<ub4, Define> defines;
  const Rows* rows = nullptr;
  std::size_t next = 0;
};

ScriptedOci::ScriptedOci() {
  current = this;
}

ScriptedOci::~ScriptedOci() {
  current = nullptr;
}

void* ScriptedOci::New(ub4 type) {
  auto handle = std::make_unique<Handle>();
  handle->type = type;
  handle->name = TypeName(type) + std::to_string(++counts_[type]);
  handles_.push_back(std::move(handle));
  return handles_.back().get();
}

OciApi ScriptedOci::Api() const {
  OciApi api;
  api.EnvCreate = [](OCIEnv** env, ub4 mode, auto, auto, auto, auto, std::size_t extra, void**) {
    const sword status = current->Call(Line("EnvCreate", mode, extra));
    if (status == kSuccess) *env = static_cast<OCIEnv*>(current->New(kHtypeEnv));
    return status;
  };
  api.HandleAlloc = [](const void* parent, void** handle, ub4 type, std::size_t extra, void**) {
    const sword status = current->Call(Line("HandleAlloc", parent, TypeName(type), extra));
    if (status == kSuccess) *handle = current->New(type);
    return status;
  };
  api.HandleFree = [](void* handle, ub4 type) {
    const sword status = current->Call(Line("HandleFree", handle, TypeName(type)));
    for (const auto& known : current->handles_) {
      if (known.get() != handle) continue;
      if (known->freed || known->type != type) return kInvalidHandle;
      known->freed = true;
    }
    return status;
  };
  api.ServerAttach = [](OCIServer* server, OCIError* error, const OraText* name, sb4 length,
                        ub4 mode) {
    const std::string text = Quote(name, static_cast<std::size_t>(length));
    return current->Call(Line("ServerAttach", server, error, text, mode));
  };
  api.ServerDetach = [](OCIServer* server, OCIError* error, ub4 mode) {
    return current->Call(Line("ServerDetach", server, error, mode));
  };
  api.AttrSet = [](void* target, ub4 type, void* value, ub4 size, ub4 attribute, OCIError* error) {
    std::string text = Shown(value);
    if (attribute == kAttrUsername || attribute == kAttrPassword) text = Quote(value, size);
    if (attribute == kAttrPrefetchRows) text = std::to_string(*static_cast<ub4*>(value));
    return current->Call(Line("AttrSet", target, TypeName(type), text, size, attribute, error));
  };
  api.SessionBegin = [](auto... given) { return current->Call(Line("SessionBegin", given...)); };
  api.SessionEnd = [](auto... given) { return current->Call(Line("SessionEnd", given...)); };
  api.StmtPrepare = [](OCIStmt* statement, OCIError* error, const OraText* text, ub4 length,
                       ub4 language, ub4 mode) {
    auto* handle = reinterpret_cast<Handle*>(statement);
    handle->sql.assign(reinterpret_cast<const char*>(text), length);
    handle->defines.clear();
    return current->Call(
        Line("StmtPrepare", statement, error, Quote(text, length), language, mode));
  };
  api.StmtExecute = [](OCISvcCtx* service, OCIStmt* statement, OCIError* error, ub4 iterations,
                       ub4 row_offset, auto, auto, ub4 mode) {
    return current->Execute(
        Line("StmtExecute", service, statement, error, iterations, row_offset, mode),
        *reinterpret_cast<Handle*>(statement), iterations);
  };
  api.DefineByPos = [](OCIStmt* statement, auto, OCIError* error, ub4 position, void* value,
                       sb4 capacity, ub2 type, void* indicator, ub2* length, ub2* code, ub4 mode) {
    reinterpret_cast<Handle*>(statement)->defines[position] = {
        static_cast<char*>(value), capacity, static_cast<sb2*>(indicator), length};
    const auto given = [](const void* pointer, std::string what) {
      return pointer == nullptr ? "0" : what;
    };
    return current->Call(Line("DefineByPos", statement, error, position, capacity, type,
                              given(indicator, "ind"), given(length, "len"), given(code, "code"),
                              mode));
  };
  api.StmtFetch2 = [](OCIStmt* statement, auto... given) {
    const sword status = current->Call(Line("StmtFetch2", statement, given...));
    return status == kSuccess ? current->NextRow(*reinterpret_cast<Handle*>(statement)) : status;
  };
  api.ErrorGet = [](void* handle, ub4 record, OraText*, sb4* code, OraText* buffer, ub4 size,
                    ub4 type) {
    current->transcript_.push_back(Line("ErrorGet", handle, record, size, TypeName(type)));
    if (size == 0) return kError;
    const std::size_t length = std::min<std::size_t>(current->message_.size(), size - 1);
    std::memcpy(buffer, current->message_.data(), length);
    buffer[length] = 0;
    *code = current->code_;
    return kSuccess;
  };
  return api;
}

sword ScriptedOci::Execute(const std::string& line, Handle& statement, ub4 iterations) {
  const sword status = Call(line + "  " + statement.sql);
  transcript_.back() = line;
  if (status != kSuccess) return status;
  std::size_t longest = 0;
  statement.rows = &answer_;
  for (const auto& [part, rows] : answers_) {
    if (part.size() <= longest || statement.sql.find(part) == std::string::npos) continue;
    longest = part.size();
    statement.rows = &rows;
  }
  statement.next = 0;
  executed_.push_back(statement.sql);
  if (on_executed) on_executed(statement.sql);
  const bool fetch_with_it = iterations > 0 && !statement.defines.empty();
  return fetch_with_it ? NextRow(statement) : status;
}

void ScriptedOci::FailOn(std::string part_of_line, std::string message, int code, int skip,
                         sword status) {
  failures_.push_back({std::move(part_of_line), std::move(message), code, skip, status});
}

sword ScriptedOci::Call(const std::string& line) {
  transcript_.push_back(line);
  if (std::string refused = on_call ? on_call(line) : std::string(); !refused.empty()) {
    message_ = std::move(refused);
    code_ = 1;
    return kError;
  }
  for (auto failure = failures_.begin(); failure != failures_.end(); ++failure) {
    if (line.find(failure->part) == std::string::npos || failure->skip-- > 0) continue;
    message_ = failure->message;
    code_ = failure->code;
    const sword status = failure->status;
    failed_ = line;
    failures_.erase(failure);
    return status;
  }
  return kSuccess;
}

std::string ScriptedOci::Name(const void* handle) const {
  for (const auto& known : handles_) {
    if (known.get() == handle) return known->name;
  }
  return handle == nullptr ? "null" : "none";
}

sword ScriptedOci::NextRow(Handle& statement) {
  if (statement.rows == nullptr || statement.next >= statement.rows->size()) {
    message_ = "ORA-01403: no data found\n";
    code_ = kNoDataCode;
    return kNoData;
  }
  const std::vector<Cell>& row = (*statement.rows)[statement.next++];
  sword status = kSuccess;
  for (auto& [position, define] : statement.defines) {
    const Cell cell = position <= row.size() ? row[position - 1] : Cell();
    *define.indicator = cell ? sb2{0} : sb2{-1};
    if (!cell) continue;
    const auto length = std::min(cell->size(), static_cast<std::size_t>(define.capacity));
    std::memcpy(define.value, cell->data(), length);
    *define.length = static_cast<ub2>(length);
    if (length == cell->size()) continue;
    // As a client does that is given indicators but no return codes.
    *define.indicator = static_cast<sb2>(cell->size());
    message_ = "ORA-01406: fetched column value was truncated\n";
    code_ = 1406;
    status = kError;
  }
  return status;
}

std::vector<std::string> ScriptedOci::TakeTranscript() {
  return std::exchange(transcript_, {});
}

std::vector<std::string> ScriptedOci::TakeExecuted() {
  return std::exchange(executed_, {});
}

std::size_t ScriptedOci::LiveHandles() const {
  return static_cast<std::size_t>(std::count_if(
      handles_.begin(), handles_.end(),
      [](const auto& h) { return !h->freed && h->type != kHtypeEnv && h->type != kHtypeSession; }));
}

}  // namespace quillmere::testing
