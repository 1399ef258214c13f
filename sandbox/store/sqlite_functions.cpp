// SPDX-License-Identifier: MIT
#include "sandbox/store/sqlite_functions.h"

#include "sandbox/values/decimal.h"
#include "sandbox/values/rowid.h"

namespace quillmere::sandbox {

namespace {

// What a registered function needs to know; deleted by SQLite with the connection.
struct Registered {
  const EvalContext* context;
  const Function* function;
  Kind from;  // of a conversion
  Kind to;
};

const Registered& Self(sqlite3_context* call) {
  return *static_cast<const Registered*>(sqlite3_user_data(call));
}

void CallFunction(sqlite3_context* call, int count, sqlite3_value** values) {
  SqliteGuarded(call, [&] {
    const Function& function = *Self(call).function;
    std::vector<std::string> args;
    for (int i = 0; i < count; ++i) {
      Datum value = SqliteArgument(values[i], function.args[static_cast<std::size_t>(i)]);
      if (value.null) return sqlite3_result_null(call);
      args.push_back(std::move(value.text));
    }
    Datum result = Datum::Of(function.result, "");
    const Status status = function.call(args, *Self(call).context, &result.text);
    const bool may_be_empty = result.kind == Kind::Lob || result.kind == Kind::Raw;
    result.null = result.text.empty() && !may_be_empty;
    SqliteResult(call, status, result);
  });
}

void CallConversion(sqlite3_context* call, int, sqlite3_value** values) {
  SqliteGuarded(call, [&] {
    const Registered& self = Self(call);
    Datum result;
    const Status status =
        Convert(SqliteArgument(values[0], self.from), self.to, *self.context, &result);
    SqliteResult(call, status, result);
  });
}

void CallRowAddress(sqlite3_context* call, int, sqlite3_value** values) {
  SqliteGuarded(call, [&] {
    const std::string address =
        RowAddress(sqlite3_value_int64(values[0]), sqlite3_value_int64(values[1]));
    SqliteResult(call, {}, Datum::Of(Kind::Text, address));
  });
}

void CallLiteral(sqlite3_context* call, int, sqlite3_value** values) {
  sqlite3_result_value(call, values[0]);
}

// The value of a subquery, which may have one row. In SQLite's memory, which begins as zeros.
struct OnlyValue {
  sqlite3_value* value;
};

void OnlyStep(sqlite3_context* call, int, sqlite3_value** values) {
  auto* only = static_cast<OnlyValue*>(sqlite3_aggregate_context(call, sizeof(OnlyValue)));
  if (only == nullptr) return;
  if (only->value != nullptr) return SqliteResult(call, Ora(1427), {});
  only->value = sqlite3_value_dup(values[0]);
}

void OnlyFinal(sqlite3_context* call) {
  const auto* only = static_cast<OnlyValue*>(sqlite3_aggregate_context(call, 0));
  if (only == nullptr || only->value == nullptr) return sqlite3_result_null(call);
  sqlite3_result_value(call, only->value);
  sqlite3_value_free(only->value);
}

int CompareNumbers(void*, int size_a, const void* a, int size_b, const void* b) {
  return CompareDecimalTexts({static_cast<const char*>(a), static_cast<std::size_t>(size_a)},
                             {static_cast<const char*>(b), static_cast<std::size_t>(size_b)});
}

}  // namespace

Datum SqliteArgument(sqlite3_value* value, Kind kind) {
  if (sqlite3_value_type(value) == SQLITE_NULL) return Datum::NullOf(kind);
  const auto* bytes = static_cast<const char*>(sqlite3_value_blob(value));
  const auto size = static_cast<std::size_t>(sqlite3_value_bytes(value));
  return Datum::Of(kind, bytes == nullptr ? std::string() : std::string(bytes, size));
}

void SqliteResult(sqlite3_context* call, const Status& status, const Datum& result) {
  if (!status.ok()) {
    sqlite3_result_error(call, status.Text().c_str(), -1);
  } else if (result.null) {
    sqlite3_result_null(call);
  } else {
    sqlite3_result_text64(call, result.text.data(), result.text.size(), SQLITE_TRANSIENT,
                          SQLITE_UTF8);
  }
}

std::string SqliteName(const Function& function) {
  return "qm_f" + std::to_string(&function - Functions().data());
}

std::string SqliteConversionName(Kind from, Kind to) {
  return "qm_c" + std::to_string(static_cast<int>(from)) + "_" +
         std::to_string(static_cast<int>(to));
}

Status RegisterFunctions(SqliteConnection* connection, const EvalContext* context) {
  sqlite3* db = connection->handle();
  int failed = SQLITE_OK;
  const auto add = [&](const std::string& name,
                       void (*call)(sqlite3_context*, int, sqlite3_value**), const Registered& data,
                       int flags) {
    const auto forget = [](void* registered) { delete static_cast<Registered*>(registered); };
    failed |= sqlite3_create_function_v2(db, name.c_str(), -1, SQLITE_UTF8 | flags,
                                         new Registered(data), call, nullptr, nullptr, forget);
  };
  Registered data{context, nullptr, Kind::Null, Kind::Null};
  add("qm_rowid", CallRowAddress, data, SQLITE_DETERMINISTIC);
  add("qm_literal", CallLiteral, data, 0);
  for (const Function& function : Functions()) {
    data.function = &function;
    add(SqliteName(function), CallFunction, data, SQLITE_DETERMINISTIC);
  }
  for (int pair = 0; pair < kKindCount * kKindCount; ++pair) {
    data.from = static_cast<Kind>(pair / kKindCount);
    data.to = static_cast<Kind>(pair % kKindCount);
    add(SqliteConversionName(data.from, data.to), CallConversion, data, SQLITE_DETERMINISTIC);
  }
  failed |= sqlite3_create_function_v2(db, "qm_only", 1, SQLITE_UTF8, nullptr, nullptr, OnlyStep,
                                       OnlyFinal, nullptr);
  failed |= sqlite3_create_collation_v2(db, std::string(kNumberOrder).c_str(), SQLITE_UTF8, nullptr,
                                        CompareNumbers, nullptr);
  if (failed != SQLITE_OK) return SqliteError(db);
  return connection->Exec("PRAGMA case_sensitive_like = ON");
}

}  // namespace quillmere::sandbox
