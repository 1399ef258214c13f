// SPDX-License-Identifier: MIT
#include "sim/model_oci.h"

#include <algorithm>
#include <charconv>
#include <cstring>

#include "oracle/follow_queries.h"
#include "sim/statement_match.h"

namespace quillmere::sim {

using namespace oci;
using follow::Column;

namespace {

ModelOci* current = nullptr;

constexpr std::string_view kAddLog =
    "begin dbms_logmnr.add_logfile(logfilename=>'{}', options=>DBMS_LOGMNR.{}); end;";
constexpr std::string_view kStart =
    "begin dbms_logmnr.start_logmnr(options=>dbms_logmnr.dict_from_online_catalog + "
    "dbms_logmnr.committed_data_only, startscn=>{}); end;";
constexpr std::string_view kEnd = "begin dbms_logmnr.end_logmnr(); end;";

struct Define {
  char* value = nullptr;
  sb4 capacity = 0;
  sb2* indicator = nullptr;
  ub2* length = nullptr;
};

std::string_view Text(const OraText* text, std::size_t length) {
  return {reinterpret_cast<const char*>(text), length};
}

// Empty is NULL. False: it was cut.
bool Put(const Define& define, std::string_view text) {
  *define.indicator = text.empty() ? sb2{-1} : sb2{0};
  const auto fits = std::min(text.size(), static_cast<std::size_t>(define.capacity));
  std::memcpy(define.value, text.data(), fits);
  *define.length = static_cast<ub2>(fits);
  if (fits == text.size()) return true;
  *define.indicator = static_cast<sb2>(text.size());
  return false;
}

bool Put(const Define& define, std::int64_t number) {
  char digits[20];
  const char* end = std::to_chars(digits, std::end(digits), number).ptr;
  return Put(define, std::string_view(digits, static_cast<std::size_t>(end - digits)));
}

}  // namespace

struct ModelOci::Handle {
  explicit Handle(ub4 kind) : type(kind) {}

  ub4 type;
  Handle* server = nullptr;  // of a service context, of an executed statement
  Handle* session = nullptr;
  SourceModel* source = nullptr;  // of a server: what it is attached to
  DestinationModel* destination = nullptr;
  std::unique_ptr<Mining> mining;
  bool lost = false;
  std::string sql;  // of a statement
  std::vector<Define> defines;
  Rows rows;
  std::size_t next = 0;
  std::size_t mined_columns = 0;  // of v$logmnr_contents, else 0
  ub4 prefetch = 1, fetched = 0;
};

ModelOci::ModelOci(HandClock& clock) : clock_(clock) {
  current = this;
}

ModelOci::~ModelOci() {
  for (Handle* handle : handles_) delete handle;
  current = nullptr;
}

sword ModelOci::Error(int code) {
  code_ = code;
  std::string digits = std::to_string(code);
  message_ = "ORA-" + std::string(5 - digits.size(), '0') + digits + ": as a server has it";
  return code == 1403 ? kNoData : kError;
}

// A call on a handle, which is unknown, goes wrong as the test wants it, or is served.
template <typename Serve>
sword ModelOci::Served(std::string_view call, const void* on, ub4 type, std::string_view text,
                       Serve serve) {
  const auto found = handles_.find(on);
  if (found == handles_.end() || (*found)->type != type) return kInvalidHandle;
  Handle* handle = *found;
  const bool remote = call.starts_with("Session") || call == "StmtExecute" || call == "StmtFetch2";
  if (remote && handle->server == nullptr) return kInvalidHandle;
  const std::optional<Fault> wrong = fault ? fault(call, text) : std::nullopt;
  if (!wrong || wrong->served_before) {
    const sword status = remote && handle->server->lost ? Error(3113) : serve(*handle);
    if (!wrong) return status;
    if (wrong->status == kSuccessWithInfo && status != kSuccess) return status;
  }
  if (remote && wrong->connection_lost) Lose(*handle->server);
  Error(wrong->code);
  return wrong->status;
}

// What the server had not committed is taken back.
void ModelOci::Lose(Handle& server) {
  if (server.destination != nullptr) server.destination->Rollback();
  server.mining.reset();
  server.lost = true;
}

std::size_t ModelOci::LiveHandles() const {
  return static_cast<std::size_t>(
      std::count_if(handles_.begin(), handles_.end(),
                    [](const Handle* handle) { return handle->type != kHtypeSession; }));
}

void ModelOci::Die(std::int64_t noticed_after_ms) {
  for (Handle* handle : handles_) {
    if (handle->type == kHtypeServer && handle->destination != nullptr && !handle->lost) {
      handle->destination->Die(Now() + noticed_after_ms);
    }
    delete handle;
  }
  handles_.clear();
}

void ModelOci::Tick(std::int64_t ms, SourceModel* source) {
  clock_.now = LocalTime{Now() + ms};
  if (source != nullptr) source->RunUntil(Now());
}

sword ModelOci::Execute(Handle& server, Handle& statement) {
  statement.server = &server;
  statement.rows.clear();
  statement.next = statement.mined_columns = statement.fetched = 0;
  int code = 0;
  const ModelDictionary* const dictionary = server.source != nullptr ? &server.source->dictionary
                                            : server.destination != nullptr
                                                ? &server.destination->dictionary
                                                : nullptr;
  if (dictionary != nullptr && dictionary->Answer(statement.sql, statement.rows)) return kSuccess;
  if (server.source != nullptr) {
    Tick(source_ms, server.source);
    code = ExecuteOnSource(server, statement);
  } else if (server.destination != nullptr) {
    std::int64_t now = Now() + destination_ms;
    code = server.destination->Execute(statement.sql, statement.rows, now);
    clock_.now = LocalTime{now};
  } else {
    code = 3113;
  }
  return code == 0 ? kSuccess : Error(code);
}

int ModelOci::ExecuteOnSource(Handle& server, Handle& statement) {
  if (Answer(*server.source, statement.sql, statement.rows)) return 0;
  if (!server.mining) server.mining = std::make_unique<Mining>(*server.source);
  if (const auto log = Match(kAddLog, statement.sql)) {
    return server.mining->Add((*log)[0], (*log)[1] == "NEW");
  }
  if (const auto start = Match(kStart, statement.sql)) {
    return server.mining->Start(std::stoll(std::string((*start)[0])));
  }
  return statement.sql == kEnd ? server.mining->End() : OpenContents(server, statement);
}

int ModelOci::OpenContents(Handle& server, Handle& statement) {
  if (statement.sql == kRowsContents) {
    statement.mined_columns = 2;
    return server.mining->Open();
  }
  static const std::string kOfOne = std::string(follow::kContents).append(follow::kOfContainer);
  auto values = Match(kOfOne, statement.sql);
  if (!values) values = Match(follow::kContents, statement.sql);
  if (!values) return 942;
  values->resize(3);
  statement.mined_columns = Column::Count;
  return server.mining->Open(std::stoll(std::string((*values)[0])),
                             std::stoll(std::string((*values)[1])), (*values)[2]);
}

sword ModelOci::Fetch(Handle& statement) {
  if (statement.fetched++ % statement.prefetch == 0 && statement.server->source != nullptr) {
    Tick(round_trip_ms, statement.server->source);
  }
  if (statement.mined_columns != 0) return FetchMined(statement);
  if (statement.next == statement.rows.size()) return Error(1403);
  const std::vector<std::string>& row = statement.rows[statement.next++];
  bool whole = true;
  for (std::size_t i = 0; i < statement.defines.size(); ++i) {
    whole &= Put(statement.defines[i], i < row.size() ? std::string_view(row[i]) : "");
  }
  return whole ? kSuccess : Error(1406);
}

sword ModelOci::FetchMined(Handle& statement) {
  const std::vector<Define>& to = statement.defines;
  const bool by_rows = statement.mined_columns == 2;
  const MinedRow* mined = nullptr;
  do {
    mined = statement.server->mining->Next();
  } while (mined != nullptr && by_rows && mined->operation_code > 3);
  if (mined == nullptr || to.size() < statement.mined_columns) return Error(1403);
  const Transaction* of = mined->transaction;
  if (of != nullptr && of->committed_at / 1000 != commit_second_) {
    commit_second_ = of->committed_at / 1000;
    const std::string stamp = FormatTimeStamp({of->committed_at});  // YYYYMMDD HH:MM:SS
    commit_time_ = stamp.substr(0, 4) + "-" + stamp.substr(4, 2) + "-" + stamp.substr(6);
  }
  bool whole = true;
  const auto put = [&](std::size_t column, auto value) { whole &= Put(to[column], value); };
  put(0, mined->scn);
  put(by_rows ? 1 : std::size_t{Column::SqlRedo}, mined->sql_redo);
  if (by_rows) return whole ? kSuccess : Error(1406);
  put(Column::CommitScn, mined->commit_scn < 0 ? "" : std::to_string(mined->commit_scn));
  put(Column::Xid, of == nullptr ? "" : of->Xid());
  put(Column::OperationCode, mined->operation_code);
  put(Column::Operation, mined->operation);
  put(Column::Rollback, mined->rollback);
  put(Column::Csf, mined->csf);
  put(Column::Status, mined->status);
  put(Column::Owner, mined->owner);
  put(Column::Table, mined->table);
  // An RS_ID with its blanks; two changes share one.
  const std::int64_t id = mined->change == nullptr ? 0 : mined->change->id;
  char change[48];
  std::snprintf(change, sizeof change, " 0x%06x.%08llx.0010 .%d", 1U,
                static_cast<unsigned long long>(id / 2), static_cast<int>(id % 2));
  put(Column::Change, std::string_view(change));
  const bool on_table = mined->operation_code <= 3;
  put(Column::Row,
      mined->change == nullptr ? "" : (on_table ? "7." : "8.") + RowAddress(*mined->change));
  put(Column::CommitTime, of == nullptr ? "" : commit_time_);
  return whole ? kSuccess : Error(1406);
}

// --- The 13 functions ---------------------------------------------------------------------------

void ModelOci::Free(const void* freed) {
  const auto found = handles_.find(freed);
  if (found == handles_.end()) return;
  Lose(**found);  // which it is attached to still
  delete *found;
  handles_.erase(found);
}

OciApi ModelOci::Api() const {
  OciApi api;
  api.EnvCreate = [](OCIEnv** environment, auto...) {
    static char made;  // and never freed
    *environment = reinterpret_cast<OCIEnv*>(&made);
    return kSuccess;
  };
  api.HandleAlloc = [](const void*, void** made, ub4 type, auto...) {
    const auto wrong = current->fault ? current->fault("HandleAlloc", "") : std::nullopt;
    if (wrong) return current->Error(wrong->code);
    *made = *current->handles_.insert(new Handle(type)).first;
    return kSuccess;
  };
  api.HandleFree = [](void* freed, ub4 type) {
    return current->Served("HandleFree", freed, type, "", [](Handle& handle) {
      current->Free(handle.session);  // which nobody else frees
      current->Free(&handle);
      return kSuccess;
    });
  };
  api.ServerAttach = [](OCIServer* server, OCIError*, const OraText* name, sb4 length, ub4) {
    const std::string_view text = Text(name, static_cast<std::size_t>(length));
    return current->Served("ServerAttach", server, kHtypeServer, text, [&](Handle& to) {
      const auto source = current->sources_.find(text);
      const auto destination = current->destinations_.find(text);
      if (source != current->sources_.end()) to.source = source->second;
      if (destination != current->destinations_.end()) to.destination = destination->second;
      return to.source || to.destination ? kSuccess : current->Error(12154);
    });
  };
  api.ServerDetach = [](OCIServer* server, auto...) {
    return current->Served("ServerDetach", server, kHtypeServer, "", [](Handle& from) {
      current->Lose(from);  // what no session's end has committed
      from = Handle(kHtypeServer);
      return kSuccess;
    });
  };
  api.AttrSet = [](void* target, ub4 type, void* value, ub4, ub4 attribute, OCIError*) {
    return current->Served("AttrSet", target, type, "", [&](Handle& handle) {
      if (attribute == kAttrServer) handle.server = static_cast<Handle*>(value);
      if (attribute == kAttrSession) handle.session = static_cast<Handle*>(value);
      if (attribute == kAttrPrefetchRows) handle.prefetch = std::max(1U, *static_cast<ub4*>(value));
      return kSuccess;
    });
  };
  api.SessionBegin = [](OCISvcCtx* service, auto...) {
    return current->Served("SessionBegin", service, kHtypeSvcCtx, "",
                           [](Handle&) { return kSuccess; });
  };
  api.SessionEnd = [](OCISvcCtx* service, auto...) {
    return current->Served("SessionEnd", service, kHtypeSvcCtx, "", [](Handle& context) {
      context.server->mining.reset();
      if (context.server->destination != nullptr) context.server->destination->Commit();
      return kSuccess;
    });
  };
  api.StmtPrepare = [](OCIStmt* prepared, OCIError*, const OraText* text, ub4 length, auto...) {
    const std::string_view sql = Text(text, length);
    return current->Served("StmtPrepare", prepared, kHtypeStmt, sql, [&](Handle& statement) {
      statement.sql = sql;
      statement.defines.clear();
      return kSuccess;
    });
  };
  api.StmtExecute = [](OCISvcCtx* service, OCIStmt* executed, OCIError*, ub4 iterations, auto...) {
    auto& statement = *reinterpret_cast<Handle*>(executed);
    if (!current->handles_.contains(&statement)) return kInvalidHandle;
    return current->Served("StmtExecute", service, kHtypeSvcCtx, statement.sql, [&](Handle& on) {
      const sword status = current->Execute(*on.server, statement);
      const bool with_row = iterations > 0 && !statement.defines.empty();
      return status == kSuccess && with_row ? current->Fetch(statement) : status;
    });
  };
  api.DefineByPos = [](OCIStmt* defined, OCIDefine**, OCIError*, ub4 position, void* value,
                       sb4 capacity, ub2, void* indicator, ub2* length, ub2*, ub4) {
    return current->Served("DefineByPos", defined, kHtypeStmt, "", [&](Handle& statement) {
      statement.defines.resize(std::max<std::size_t>(statement.defines.size(), position));
      statement.defines[position - 1] = {static_cast<char*>(value), capacity,
                                         static_cast<sb2*>(indicator), length};
      return kSuccess;
    });
  };
  api.StmtFetch2 = [](OCIStmt* fetched, auto...) {
    return current->Served("StmtFetch2", fetched, kHtypeStmt, "",
                           [](Handle& statement) { return current->Fetch(statement); });
  };
  api.ErrorGet = [](void*, ub4, OraText*, sb4* code, OraText* buffer, ub4 size, ub4) {
    const std::size_t length = std::min<std::size_t>(current->message_.size(), size - 1);
    std::memcpy(buffer, current->message_.data(), length);
    buffer[length] = 0;
    *code = current->code_;
    return kSuccess;
  };
  return api;
}

}  // namespace quillmere::sim
