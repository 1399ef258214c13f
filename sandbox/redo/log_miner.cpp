// SPDX-License-Identifier: MIT
#include "sandbox/redo/log_miner.h"

#include <algorithm>

#include "sandbox/redo/redo_text.h"
#include "sandbox/store/sqlite_functions.h"

namespace quillmere::sandbox {

Status LogMiner::AddFile(SqliteConnection* connection, const std::string& file, bool fresh) {
  SqlRunner sql(connection);
  const std::optional<RedoLog> log = FindRedoLog(&sql, database_, file);
  if (!sql.ok()) return sql.status();
  if (!log) return {1284, "file " + Shortened(file, 300) + " cannot be opened"};
  if (!fresh && logs_.contains(log->sequence)) {
    return {1289, "cannot add duplicate logfile " + Shortened(file, 300)};
  }
  if (fresh) logs_.clear();
  logs_.emplace(log->sequence, *log);
  started_ = false;
  return {};
}

Status LogMiner::Start(std::int64_t start_scn, std::int64_t end_scn) {
  if (logs_.empty()) return Ora(1292);
  const RedoLog* before = nullptr;
  for (const auto& [sequence, log] : logs_) {
    const bool gap = before != nullptr && before->sequence + 1 != sequence;
    const bool late = before == nullptr && start_scn != 0 && log.first_scn > start_scn;
    if (gap || late) return Ora(1291);
    before = &log;
  }
  start_scn_ = std::max(start_scn, logs_.begin()->second.first_scn);
  end_scn_ = std::min(end_scn, before->next_scn - 1);
  started_ = true;
  return {};
}

Status LogMiner::End() {
  if (logs_.empty()) return Ora(1307);
  logs_.clear();
  started_ = false;
  return {};
}

namespace {

// The arguments that are a record.
enum Argument {
  kScn,
  kOperation,
  kUndo,
  kRow,
  kData,
  kShape,
  kTable,
  kOwner,
  kName,
  kColumns,
  kCount
};

std::string TextOf(sqlite3_value* value) {
  return SqliteArgument(value, Kind::Text).text;
}

// Writes records; the latest one is kept, for it is asked for piece by piece.
class RecordWriter {
 public:
  RecordWriter(const EvalContext* context, bool by_characters)
      : context_(*context), by_characters_(by_characters) {}

  Status Take(sqlite3_value** record) {
    const std::int64_t scn = sqlite3_value_int64(record[kScn]);
    if (scn == scn_) return {};
    scn_ = 0;
    if (Status status = TakeShape(record); !status.ok()) return status;
    const auto operation = static_cast<RedoOperation>(sqlite3_value_int64(record[kOperation]));
    const bool undo = sqlite3_value_int64(record[kUndo]) != 0;
    const std::string data = TextOf(record[kData]);
    std::vector<RedoStatement> statements;
    Status status;
    if (data.empty()) {
      RedoStatement& fixed = statements.emplace_back();
      fixed.operation = undo ? Undoing(operation) : operation;
      fixed.text = operation == RedoOperation::Start    ? "set transaction read write;"
                   : operation == RedoOperation::Commit ? "commit;"
                                                        : "/* No SQL_REDO for temporary tables */";
    } else {
      RedoRecord decoded;
      if (!DecodeRecord(operation, data, &decoded)) {
        return {1578, "redo record " + std::to_string(scn) + " is damaged"};
      }
      const std::int64_t row = sqlite3_value_int64(record[kRow]);
      status = WriteRedo(shape_, decoded, row, undo, context_, &statements);
    }
    if (status.ok()) Take(statements);
    if (status.ok()) scn_ = scn;
    return status;
  }

  const std::string& list() const { return list_; }
  const std::string& piece(std::size_t number) const { return pieces_.at(number); }

 private:
  static RedoOperation Undoing(RedoOperation operation) {
    if (operation == RedoOperation::Update) return operation;
    return operation == RedoOperation::Insert ? RedoOperation::Delete : RedoOperation::Insert;
  }

  void Take(const std::vector<RedoStatement>& statements) {
    list_.clear();
    pieces_.clear();
    for (std::size_t i = 0; i < statements.size(); ++i) {
      const std::size_t code = static_cast<std::size_t>(statements[i].operation) + 16 * i;
      for (std::string& piece : SplitRedo(statements[i].text, by_characters_)) {
        list_ += (list_.empty() ? "[-" : ",-") + std::to_string(code);
        pieces_.push_back(std::move(piece));
      }
      list_.erase(list_.rfind('-'), 1);  // nothing follows the last piece
    }
    list_ += ']';
  }

  Status TakeShape(sqlite3_value** record) {
    const std::int64_t id = sqlite3_value_int64(record[kShape]);
    if (id == shape_id_) return {};
    shape_id_ = id;
    shape_.table_id = sqlite3_value_int64(record[kTable]);
    shape_.owner = TextOf(record[kOwner]);
    shape_.name = TextOf(record[kName]);
    if (DecodeShapeColumns(TextOf(record[kColumns]), &shape_.columns)) return {};
    return {1578, "the redo refers to a table form that is damaged"};
  }

  const EvalContext& context_;
  bool by_characters_;
  std::int64_t scn_ = 0;
  std::int64_t shape_id_ = 0;
  RedoShape shape_;
  std::string list_;
  std::vector<std::string> pieces_;
};

void CallPieces(sqlite3_context* call, int count, sqlite3_value** values) {
  SqliteGuarded(call, [&] {
    auto* writer = static_cast<RecordWriter*>(sqlite3_user_data(call));
    const Status status = writer->Take(values);
    std::string text;
    if (status.ok() && count == kCount) text = writer->list();
    if (status.ok() && count > kCount) {
      text = writer->piece(static_cast<std::size_t>(sqlite3_value_int64(values[kCount])));
    }
    SqliteResult(call, status, Datum::Of(Kind::Text, std::move(text)));
  });
}

}  // namespace

Status RegisterRedoFunctions(SqliteConnection* connection, const EvalContext* context) {
  SqlRunner sql(connection);
  const auto narrow = sql.Int("SELECT charset <> 'AL32UTF8' FROM qm_meta");
  if (!sql.ok()) return sql.status();
  auto* writer = new RecordWriter(context, narrow.value_or(0) != 0);
  const auto forget = [](void* data) { delete static_cast<RecordWriter*>(data); };
  sqlite3* db = connection->handle();
  int failed = sqlite3_create_function_v2(db, "qm_pieces", kCount, SQLITE_UTF8, writer, CallPieces,
                                          nullptr, nullptr, forget);
  failed |= sqlite3_create_function_v2(db, "qm_piece", kCount + 1, SQLITE_UTF8, writer, CallPieces,
                                       nullptr, nullptr, nullptr);
  return failed == SQLITE_OK ? Status() : SqliteError(db);
}

}  // namespace quillmere::sandbox
