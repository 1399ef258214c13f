#include "sandbox/store/sqlite_functions.h"

#include "sandbox/values/decimal.h"
#include "sandbox/values/rowid.h"
#include "sandbox/values/text.h"

namespace quillmere::sandbox {

namespace {

struct FunctionCall {
  const Function* function;
  const EvalContext* context;
};

struct ConversionCall {
  Kind from;
  Kind to;
  const EvalContext* context;
};

Datum ReadArgument(sqlite3_value* value, Kind kind) {
  if (sqlite3_value_type(value) == SQLITE_NULL) return Datum::NullOf(kind);
  const auto* bytes = static_cast<const char*>(sqlite3_value_blob(value));
  const auto size = static_cast<std::size_t>(sqlite3_value_bytes(value));
  return Datum::Of(kind, bytes == nullptr ? std::string() : std::string(bytes, size));
}

void ReturnResult(sqlite3_context* call, const Status& status, const Datum& result) {
  if (!status.ok()) {
    sqlite3_result_error(call, status.Text().c_str(), -1);
  } else if (result.null) {
    sqlite3_result_null(call);
  } else {
    sqlite3_result_text64(call, result.text.data(), result.text.size(), SQLITE_TRANSIENT,
                          SQLITE_UTF8);
  }
}

// No exception may pass through SQLite.
template <typename Body>
void Guarded(sqlite3_context* call, Body body) {
  try {
    body();
  } catch (const std::exception&) {
    sqlite3_result_error_nomem(call);
  }
}

void CallRegistered(sqlite3_context* call, int count, sqlite3_value** values) {
  Guarded(call, [&] {
    const auto& data = *static_cast<const FunctionCall*>(sqlite3_user_data(call));
    std::vector<Datum> args;
    for (int i = 0; i < count; ++i) {
      args.push_back(
          ReadArgument(values[i], ArgumentKind(*data.function, static_cast<std::size_t>(i))));
    }
    Datum result;
    const Status status = CallFunction(*data.function, args, *data.context, &result);
    ReturnResult(call, status, result);
  });
}

void ConvertRegistered(sqlite3_context* call, int, sqlite3_value** values) {
  Guarded(call, [&] {
    const auto& data = *static_cast<const ConversionCall*>(sqlite3_user_data(call));
    Datum result;
    const Status status =
        Convert(ReadArgument(values[0], data.from), data.to, *data.context, &result);
    ReturnResult(call, status, result);
  });
}

// A pattern of LIKE taken apart: runs of characters, and what may stand between them.
bool LikeMatches(std::string_view text, std::string_view pattern, char escape, bool has_escape) {
  std::size_t t = 0;
  std::size_t p = 0;
  std::size_t star_p = std::string_view::npos;
  std::size_t star_t = 0;
  const auto next = [&text](std::size_t at) { return at + ByteOfCharacter(text.substr(at), 1); };
  while (t < text.size()) {
    const bool escaped = has_escape && p + 1 < pattern.size() && pattern[p] == escape;
    if (p < pattern.size() && !escaped && pattern[p] == '%') {
      star_p = ++p;
      star_t = t;
    } else if (p < pattern.size() && !escaped && pattern[p] == '_') {
      ++p;
      t = next(t);
    } else if (p < pattern.size() && pattern[p + (escaped ? 1 : 0)] == text[t]) {
      p += escaped ? 2 : 1;
      ++t;
    } else if (star_p != std::string_view::npos) {
      p = star_p;
      t = star_t = next(star_t);
    } else {
      return false;
    }
  }
  while (p < pattern.size() && pattern[p] == '%') ++p;
  return p == pattern.size();
}

void LikeRegistered(sqlite3_context* call, int count, sqlite3_value** values) {
  Guarded(call, [&] {
    std::vector<Datum> args;
    for (int i = 0; i < count; ++i) {
      args.push_back(ReadArgument(values[i], Kind::Text));
      if (args.back().null) return sqlite3_result_null(call);
    }
    const bool has_escape = args.size() > 2;
    if (has_escape && args[2].text.size() != 1) {
      const Status status = {1425, "escape character must be character string of length 1"};
      return ReturnResult(call, status, {});
    }
    const char escape = has_escape ? args[2].text[0] : '\0';
    sqlite3_result_int(call, LikeMatches(args[0].text, args[1].text, escape, has_escape) ? 1 : 0);
  });
}

void RowAddressRegistered(sqlite3_context* call, int, sqlite3_value** values) {
  Guarded(call, [&] {
    const std::string address =
        RowAddress(sqlite3_value_int64(values[0]), sqlite3_value_int64(values[1]));
    ReturnResult(call, {}, Datum::Of(Kind::Text, address));
  });
}

struct SumState {
  Decimal* total;  // owned by the aggregate; freed at its end
};

void SumStep(sqlite3_context* call, int, sqlite3_value** values) {
  Guarded(call, [&] {
    auto* state = static_cast<SumState*>(sqlite3_aggregate_context(call, sizeof(SumState)));
    const Datum value = ReadArgument(values[0], Kind::Number);
    if (state == nullptr || value.null) return;
    if (state->total == nullptr) state->total = new Decimal();
    const auto number = Decimal::Parse(value.text);
    const Status status = number ? Decimal::Add(*state->total, *number, state->total) : Ora(1722);
    if (!status.ok()) ReturnResult(call, status, {});
  });
}

void SumFinal(sqlite3_context* call) {
  auto* state = static_cast<SumState*>(sqlite3_aggregate_context(call, 0));
  if (state == nullptr || state->total == nullptr) return sqlite3_result_null(call);
  ReturnResult(call, {}, Datum::Of(Kind::Number, state->total->Text()));
  delete state->total;
}

int CompareNumbers(void*, int size_a, const void* a, int size_b, const void* b) {
  return CompareDecimalTexts({static_cast<const char*>(a), static_cast<std::size_t>(size_a)},
                             {static_cast<const char*>(b), static_cast<std::size_t>(size_b)});
}

template <typename T>
void Delete(void* pointer) {
  delete static_cast<T*>(pointer);
}

}  // namespace

std::string SqliteName(const Function& function) {
  return "qm_f" + std::to_string(&function - Functions().data());
}

std::string SqliteConversionName(Kind from, Kind to) {
  return "qm_c" + std::to_string(static_cast<int>(from)) + "_" +
         std::to_string(static_cast<int>(to));
}

Status RegisterFunctions(SqliteConnection* connection, const EvalContext* context) {
  sqlite3* db = connection->handle();
  constexpr int kFlags = SQLITE_UTF8 | SQLITE_DETERMINISTIC;
  int failed = 0;
  for (const Function& function : Functions()) {
    failed |= sqlite3_create_function_v2(db, SqliteName(function).c_str(), -1, SQLITE_UTF8,
                                         new FunctionCall{&function, context}, CallRegistered,
                                         nullptr, nullptr, Delete<FunctionCall>);
  }
  for (int from = 1; from < kKindCount; ++from) {
    for (int to = 1; to < kKindCount; ++to) {
      const auto kind_from = static_cast<Kind>(from);
      const auto kind_to = static_cast<Kind>(to);
      if (from == to) continue;
      failed |=
          sqlite3_create_function_v2(db, SqliteConversionName(kind_from, kind_to).c_str(), 1,
                                     kFlags, new ConversionCall{kind_from, kind_to, context},
                                     ConvertRegistered, nullptr, nullptr, Delete<ConversionCall>);
    }
  }
  failed |= sqlite3_create_function_v2(db, "qm_like", -1, kFlags, nullptr, LikeRegistered, nullptr,
                                       nullptr, nullptr);
  failed |= sqlite3_create_function_v2(db, "qm_rowid", 2, kFlags, nullptr, RowAddressRegistered,
                                       nullptr, nullptr, nullptr);
  failed |= sqlite3_create_function_v2(db, "qm_sum", 1, kFlags, nullptr, nullptr, SumStep, SumFinal,
                                       nullptr);
  failed |= sqlite3_create_collation_v2(db, std::string(kNumberOrder).c_str(), SQLITE_UTF8, nullptr,
                                        CompareNumbers, nullptr);
  return failed == SQLITE_OK ? Status() : SqliteError(db);
}

}  // namespace quillmere::sandbox
