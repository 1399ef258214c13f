// The virtual table behind v$logmnr_contents. One record of the redo gives one or more rows; at no
// time is more than one record in memory.
#include <algorithm>
#include <new>

#include "sandbox/redo/log_miner.h"
#include "sandbox/values/rowid.h"

namespace quillmere::sandbox {

namespace {

enum LogColumn { kScn, kSqlRedo, kOperation, kOperationCode, kSegOwner, kSegName, kRowId, kCsf };

constexpr char kDeclaration[] =
    "CREATE TABLE x(scn TEXT, sql_redo TEXT, operation TEXT, operation_code TEXT,"
    " seg_owner TEXT, seg_name TEXT, row_id TEXT, csf TEXT)";

struct LogTable {
  sqlite3_vtab base{};
  LogMiner* miner = nullptr;
  sqlite3* db = nullptr;
};

std::unique_ptr<SqliteStatement> PrepareOn(sqlite3* db, const char* sql) {
  sqlite3_stmt* statement = nullptr;
  if (sqlite3_prepare_v2(db, sql, -1, &statement, nullptr) != SQLITE_OK) return nullptr;
  return std::make_unique<SqliteStatement>(statement);
}

struct LogCursor {
  sqlite3_vtab_cursor base{};
  std::unique_ptr<SqliteStatement> records;
  std::unique_ptr<SqliteStatement> shapes;
  std::shared_ptr<const RedoShape> shape;
  std::vector<RedoStatement> statements;
  std::vector<std::string> pieces;
  std::int64_t scn = 0;
  std::int64_t row = 0;
  std::size_t statement = 0;
  std::size_t piece = 0;
  sqlite3_int64 position = 0;
  bool at_end = true;

  LogTable* table() const { return reinterpret_cast<LogTable*>(base.pVtab); }

  Status ReadRecord() {
    for (;;) {
      bool found = false;
      if (Status status = records->Step(&found); !status.ok()) return status;
      at_end = !found;
      if (at_end) return {};
      scn = records->Int(0);
      row = records->Int(3);
      RedoRecord record;
      const auto operation = static_cast<RedoOperation>(records->Int(2));
      if (!DecodeRecord(operation, records->Text(4), &record)) {
        return {1578, "redo record " + std::to_string(scn) + " is damaged"};
      }
      LogMiner& miner = *table()->miner;
      Status status = miner.FindShape(shapes.get(), records->Int(1), &shape);
      if (status.ok()) status = WriteRedo(*shape, record, row, miner.context(), &statements);
      if (!status.ok()) return status;
      statement = 0;
      piece = 0;
      if (statements.empty()) continue;
      pieces = SplitRedo(statements[0].text);
      return {};
    }
  }

  Status Next() {
    ++position;
    if (++piece < pieces.size()) return {};
    piece = 0;
    if (++statement < statements.size()) {
      pieces = SplitRedo(statements[statement].text);
      return {};
    }
    return ReadRecord();
  }
};

int Report(sqlite3_vtab* table, const Status& status) {
  if (status.ok()) return SQLITE_OK;
  sqlite3_free(table->zErrMsg);
  table->zErrMsg = sqlite3_mprintf("%s", status.Text().c_str());
  return SQLITE_ERROR;
}

template <typename Body>
int Guarded(sqlite3_vtab* table, Body body) {
  try {
    return Report(table, body());
  } catch (const std::exception&) {
    return SQLITE_NOMEM;
  }
}

int Connect(sqlite3* db, void* miner, int, const char* const*, sqlite3_vtab** out, char**) {
  if (const int result = sqlite3_declare_vtab(db, kDeclaration); result != SQLITE_OK) return result;
  auto* table = new (std::nothrow) LogTable();
  if (table == nullptr) return SQLITE_NOMEM;
  table->miner = static_cast<LogMiner*>(miner);
  table->db = db;
  *out = &table->base;
  return SQLITE_OK;
}

int Disconnect(sqlite3_vtab* table) {
  delete reinterpret_cast<LogTable*>(table);
  return SQLITE_OK;
}

int BestIndex(sqlite3_vtab*, sqlite3_index_info* info) {
  info->estimatedCost = 1e6;
  return SQLITE_OK;
}

int OpenCursor(sqlite3_vtab*, sqlite3_vtab_cursor** out) {
  auto* cursor = new (std::nothrow) LogCursor();
  if (cursor == nullptr) return SQLITE_NOMEM;
  *out = &cursor->base;
  return SQLITE_OK;
}

LogCursor* Self(sqlite3_vtab_cursor* cursor) {
  return reinterpret_cast<LogCursor*>(cursor);
}

int CloseCursor(sqlite3_vtab_cursor* cursor) {
  delete Self(cursor);
  return SQLITE_OK;
}

int Filter(sqlite3_vtab_cursor* base, int, const char*, int, sqlite3_value**) {
  return Guarded(base->pVtab, [&]() -> Status {
    LogCursor& cursor = *Self(base);
    sqlite3* db = cursor.table()->db;
    cursor.records = PrepareOn(db,
                               "SELECT scn, shape, operation, row, data FROM qm_redo"
                               " WHERE scn >= ?1 AND scn <= ?2 ORDER BY scn");
    cursor.shapes =
        PrepareOn(db, "SELECT table_id, owner, name, columns FROM qm_shape WHERE id = ?1");
    if (!cursor.records || !cursor.shapes) return SqliteError(db);
    cursor.records->BindInt(1, cursor.table()->miner->start_scn());
    cursor.records->BindInt(2, cursor.table()->miner->end_scn());
    return cursor.ReadRecord();
  });
}

int NextRow(sqlite3_vtab_cursor* base) {
  return Guarded(base->pVtab, [&] { return Self(base)->Next(); });
}

int AtEnd(sqlite3_vtab_cursor* base) {
  return Self(base)->at_end ? 1 : 0;
}

void ResultText(sqlite3_context* call, std::string_view text) {
  sqlite3_result_text64(call, text.data(), text.size(), SQLITE_TRANSIENT, SQLITE_UTF8);
}

std::string_view OperationName(RedoOperation operation) {
  if (operation == RedoOperation::Insert) return "INSERT";
  return operation == RedoOperation::Delete ? "DELETE" : "UPDATE";
}

int ReadColumn(sqlite3_vtab_cursor* base, sqlite3_context* call, int column) {
  return Guarded(base->pVtab, [&]() -> Status {
    const LogCursor& cursor = *Self(base);
    const RedoOperation operation = cursor.statements[cursor.statement].operation;
    switch (column) {
      case kScn:
        ResultText(call, std::to_string(cursor.scn));
        break;
      case kSqlRedo:
        ResultText(call, cursor.pieces[cursor.piece]);
        break;
      case kOperation:
        ResultText(call, OperationName(operation));
        break;
      case kOperationCode:
        ResultText(call, std::to_string(static_cast<int>(operation)));
        break;
      case kSegOwner:
        ResultText(call, cursor.shape->owner);
        break;
      case kSegName:
        ResultText(call, cursor.shape->name);
        break;
      case kRowId:
        ResultText(call, RowAddress(cursor.shape->table_id, cursor.row));
        break;
      case kCsf:
        ResultText(call, cursor.piece + 1 < cursor.pieces.size() ? "1" : "0");
        break;
      default:
        sqlite3_result_null(call);
        break;
    }
    return {};
  });
}

int ReadRowId(sqlite3_vtab_cursor* base, sqlite3_int64* out) {
  *out = Self(base)->position;
  return SQLITE_OK;
}

sqlite3_module MakeModule() {
  sqlite3_module module{};
  module.xConnect = Connect;  // no xCreate: the table is there by its name alone
  module.xBestIndex = BestIndex;
  module.xDisconnect = Disconnect;
  module.xOpen = OpenCursor;
  module.xClose = CloseCursor;
  module.xFilter = Filter;
  module.xNext = NextRow;
  module.xEof = AtEnd;
  module.xColumn = ReadColumn;
  module.xRowid = ReadRowId;
  return module;
}

}  // namespace

Status LogMiner::Register(SqliteConnection* connection) {
  static const sqlite3_module module = MakeModule();
  const int result =
      sqlite3_create_module_v2(connection->handle(), "qm_logmnr", &module, this, nullptr);
  return result == SQLITE_OK ? Status() : SqliteError(connection->handle());
}

}  // namespace quillmere::sandbox
