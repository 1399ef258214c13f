// SPDX-License-Identifier: MIT
#include "sandbox/redo/log_miner.h"

#include "sandbox/redo/redo_text.h"
#include "sandbox/store/sqlite_functions.h"

namespace quillmere::sandbox {

Status LogMiner::AddFile(const std::string& file, bool fresh) {
  if (file != log_file_) return {1284, "file " + Shortened(file, 300) + " cannot be opened"};
  if (!fresh && has_file_) return {1289, "cannot add duplicate logfile " + file};
  has_file_ = true;
  started_ = false;
  return {};
}

Status LogMiner::Start(std::int64_t start_scn, std::int64_t end_scn) {
  if (!has_file_) return Ora(1292);
  start_scn_ = start_scn;
  end_scn_ = end_scn;
  started_ = true;
  return {};
}

Status LogMiner::End() {
  if (!has_file_) return Ora(1307);
  has_file_ = false;
  started_ = false;
  return {};
}

namespace {

// The arguments that are a record.
enum Argument { kScn, kOperation, kRow, kData, kShape, kTable, kOwner, kName, kColumns, kCount };

std::string TextOf(sqlite3_value* value) {
  return SqliteArgument(value, Kind::Text).text;
}

// Writes records; the latest one is kept, for it is asked for piece by piece.
class RecordWriter {
 public:
  explicit RecordWriter(const EvalContext* context) : context_(*context) {}

  Status Take(sqlite3_value** record) {
    const std::int64_t scn = sqlite3_value_int64(record[kScn]);
    if (scn == scn_) return {};
    scn_ = 0;
    if (Status status = TakeShape(record); !status.ok()) return status;
    RedoRecord decoded;
    const auto operation = static_cast<RedoOperation>(sqlite3_value_int64(record[kOperation]));
    if (!DecodeRecord(operation, TextOf(record[kData]), &decoded)) {
      return {1578, "redo record " + std::to_string(scn) + " is damaged"};
    }
    std::vector<RedoStatement> statements;
    const std::int64_t row = sqlite3_value_int64(record[kRow]);
    Status status = WriteRedo(shape_, decoded, row, context_, &statements);
    if (!status.ok()) return status;
    list_.clear();
    pieces_.clear();
    for (const RedoStatement& statement : statements) {
      const std::string code = std::to_string(static_cast<int>(statement.operation));
      for (std::string& piece : SplitRedo(statement.text)) {
        list_ += (list_.empty() ? "[-" : ",-") + code;
        pieces_.push_back(std::move(piece));
      }
      list_.erase(list_.rfind('-'), 1);  // nothing follows the last piece
    }
    list_ += ']';
    scn_ = scn;
    return {};
  }

  const std::string& list() const { return list_; }
  const std::string& piece(std::size_t number) const { return pieces_.at(number); }

 private:
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
  auto* writer = new RecordWriter(context);
  const auto forget = [](void* data) { delete static_cast<RecordWriter*>(data); };
  sqlite3* db = connection->handle();
  int failed = sqlite3_create_function_v2(db, "qm_pieces", kCount, SQLITE_UTF8, writer, CallPieces,
                                          nullptr, nullptr, forget);
  failed |= sqlite3_create_function_v2(db, "qm_piece", kCount + 1, SQLITE_UTF8, writer, CallPieces,
                                       nullptr, nullptr, nullptr);
  return failed == SQLITE_OK ? Status() : SqliteError(db);
}

}  // namespace quillmere::sandbox
