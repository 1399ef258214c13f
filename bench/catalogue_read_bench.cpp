// SPDX-License-Identifier: MIT
// Reading the catalogue of a large database costs what the calls of the client cost and little
// more, and its lists little more than the names in them.
#include <array>
#include <cstdio>
#include <cstring>
#include <memory>

#include "benches.h"
#include "schemaops/schema_operations.h"
#include "support/temp_folder.h"

namespace quillmere::bench {

namespace {

using namespace oci;

constexpr std::size_t kTables = 10'000;
constexpr std::string_view kOwner = "WAREHOUSE";

// A client library that costs nothing but the copying of canned rows.
struct NullClient {
  using Rows = std::vector<std::vector<std::string>>;

  struct Table {
    Rows count = {{"1"}};
    Rows key;
    Rows indexes;
  };

  struct Column {
    char* value;
    sb4 capacity;
    sb2* indicator;
    ub2* length;
  };

  struct Statement {
    std::array<Column, 8> columns;
    const Rows* rows;
    std::size_t next;
  };

  NullClient() {
    for (std::size_t i = 0; i < kTables; ++i) {
      const std::string name = "SHIPMENT_" + std::to_string(1'000'000 + i);
      tables.push_back({std::string(kOwner), name, "WAREHOUSE_DATA", std::to_string(i * 7)});
      Table table;
      table.key = {{name + "_PK", "ENABLED"}};
      table.indexes = {{name + "_IX1", "NORMAL", "VALID"}, {name + "_IX2", "NORMAL", "VALID"}};
      parts.push_back(std::move(table));
    }
  }

  // The table's number is read out of its name in the query.
  const Rows* Answer(std::string_view sql) const {
    const std::size_t at = sql.find("SHIPMENT_1");
    if (at == std::string_view::npos) return &tables;
    std::size_t number = 0;
    for (std::size_t i = at + 10; i < at + 16; ++i) {
      number = number * 10 + static_cast<std::size_t>(sql[i] - '0');
    }
    const Table& table = parts[number];
    if (sql[7] == 'I') return &table.indexes;
    return sql[9] == 'u' ? &table.count : &table.key;  // count, constraint_name
  }

  Rows tables;
  std::vector<Table> parts;
};

const NullClient* client = nullptr;

sword EnvCreate(OCIEnv** env, ub4, void*, void* (*)(void*, std::size_t),
                void* (*)(void*, void*, std::size_t), void (*)(void*, void*), std::size_t, void**) {
  static char something;
  *env = reinterpret_cast<OCIEnv*>(&something);
  return kSuccess;
}

sword HandleAlloc(const void*, void** handle, ub4, std::size_t, void**) {
  *handle = std::make_unique<NullClient::Statement>().release();
  return kSuccess;
}

sword HandleFree(void* handle, ub4 type) {
  // The service context comes twice, the second time as if it were the log-on.
  if (type != kHtypeSession)
    std::unique_ptr<NullClient::Statement>(static_cast<NullClient::Statement*>(handle));
  return kSuccess;
}

sword StmtPrepare(OCIStmt* handle, OCIError*, const OraText* text, ub4 length, ub4, ub4) {
  auto* statement = reinterpret_cast<NullClient::Statement*>(handle);
  statement->rows = client->Answer({reinterpret_cast<const char*>(text), length});
  statement->next = 0;
  return kSuccess;
}

sword DefineByPos(OCIStmt* handle, OCIDefine**, OCIError*, ub4 position, void* value, sb4 capacity,
                  ub2, void* indicator, ub2* length, ub2*, ub4) {
  reinterpret_cast<NullClient::Statement*>(handle)->columns[position - 1] = {
      static_cast<char*>(value), capacity, static_cast<sb2*>(indicator), length};
  return kSuccess;
}

sword Fetch(OCIStmt* handle, OCIError*, ub4, ub2, sb4, ub4) {
  auto* statement = reinterpret_cast<NullClient::Statement*>(handle);
  if (statement->next == statement->rows->size()) return kNoData;
  const std::vector<std::string>& row = (*statement->rows)[statement->next++];
  for (std::size_t i = 0; i < row.size(); ++i) {
    const NullClient::Column& column = statement->columns[i];
    std::memcpy(column.value, row[i].data(), row[i].size());
    *column.length = static_cast<ub2>(row[i].size());
    *column.indicator = 0;
  }
  return kSuccess;
}

sword StmtExecute(OCISvcCtx*, OCIStmt* handle, OCIError* error, ub4 rows, ub4, const OCISnapshot*,
                  OCISnapshot*, ub4) {
  return rows == 0 ? kSuccess : Fetch(handle, error, 1, kFetchNext, 0, kDefault);
}

const OciApi kApi{EnvCreate,
                  HandleAlloc,
                  HandleFree,
                  [](OCIServer*, OCIError*, const OraText*, sb4, ub4) { return kSuccess; },
                  [](OCIServer*, OCIError*, ub4) { return kSuccess; },
                  [](void*, ub4, void*, ub4, ub4, OCIError*) { return kSuccess; },
                  [](OCISvcCtx*, OCIError*, OCISession*, ub4, ub4) { return kSuccess; },
                  [](OCISvcCtx*, OCIError*, OCISession*, ub4) { return kSuccess; },
                  StmtPrepare,
                  StmtExecute,
                  DefineByPos,
                  Fetch,
                  [](void*, ub4, OraText*, sb4*, OraText*, ub4, ub4) { return kError; }};

// One query as a careful hand would write it with the calls alone.
class BareQuery {
 public:
  BareQuery(const OciApi& api, const char* sql, ub4 columns) : api_(api), columns_(columns) {
    void* handle = nullptr;
    api_.HandleAlloc(nullptr, &handle, kHtypeStmt, 0, nullptr);
    statement_ = static_cast<OCIStmt*>(handle);
    api_.StmtPrepare(statement_, nullptr, reinterpret_cast<const OraText*>(sql),
                     static_cast<ub4>(std::strlen(sql)), kNtvSyntax, kDefault);
    for (ub4 i = 0; i < columns; ++i) {
      OCIDefine* define = nullptr;
      api_.DefineByPos(statement_, &define, nullptr, i + 1, values_[i], sizeof values_[i] - 1,
                       kSqltChr, &indicators_[i], &lengths_[i], nullptr, kDefault);
    }
  }
  ~BareQuery() { api_.HandleFree(statement_, kHtypeStmt); }
  BareQuery(const BareQuery&) = delete;
  BareQuery& operator=(const BareQuery&) = delete;

  void Execute(ub4 rows) {
    api_.StmtExecute(nullptr, statement_, nullptr, rows, 0, nullptr, nullptr, kDefault);
    if (rows > 0) End();
  }
  bool Fetch() {
    if (api_.StmtFetch2(statement_, nullptr, 1, kFetchNext, 0, kDefault) != kSuccess) return false;
    End();
    return true;
  }
  const char* Text(ub4 column) const { return values_[column]; }

 private:
  void End() {
    for (ub4 i = 0; i < columns_; ++i) values_[i][lengths_[i]] = 0;
  }

  const OciApi& api_;
  const ub4 columns_;
  OCIStmt* statement_ = nullptr;
  char values_[4][51] = {};
  sb2 indicators_[4] = {};
  ub2 lengths_[4] = {};
};

// The same queries with the calls alone, the rows kept as plain text.
struct BareCatalogue {
  struct Row {
    std::array<std::string, 4> texts;
  };
  std::vector<Row> tables, keys, indexes;

  void Read(const OciApi& api) {
    BareQuery list(api,
                   "select owner, table_name,  NVL(tablespace_name,chr(0)), NVL(num_rows,0)  from "
                   "dba_all_tables  where owner NOT IN ('SYS', 'SYSTEM') order by owner, "
                   "table_name",
                   4);
    list.Execute(0);
    while (list.Fetch())
      tables.push_back({{list.Text(0), list.Text(1), list.Text(2), list.Text(3)}});
    for (const Row& table : tables) ReadTable(api, table.texts[0].c_str(), table.texts[1].c_str());
  }

  void ReadTable(const OciApi& api, const char* owner, const char* table) {
    char sql[512];
    std::snprintf(sql, sizeof sql,
                  "select count(*) from  DBA_CONSTRAINTS  where owner='%s' and table_name='%s' and "
                  "constraint_type='P'",
                  owner, table);
    BareQuery count(api, sql, 1);
    count.Execute(1);
    if (std::atoi(count.Text(0)) > 0) {
      std::snprintf(sql, sizeof sql,
                    "select constraint_name, status from  DBA_CONSTRAINTS  where owner='%s' and "
                    "table_name='%s' and  constraint_type='P' ",
                    owner, table);
      BareQuery key(api, sql, 2);
      key.Execute(1);
      keys.push_back({{owner, table, key.Text(0), key.Text(1)}});
    }
    std::snprintf(sql, sizeof sql,
                  "select I.index_name, I.index_type, I.status from  DBA_INDEXES  I where "
                  "I.owner='%s' and I.table_name='%s' AND NOT EXISTS (SELECT 1 FROM "
                  "SYS.DBA_CONSTRAINTS C WHERE C.CONSTRAINT_NAME=I.INDEX_NAME AND "
                  "C.TABLE_NAME=I.TABLE_NAME AND C.OWNER=I.OWNER AND C.CONSTRAINT_TYPE IN "
                  "('P','U')  AND I.UNIQUENESS='UNIQUE') ",
                  owner, table);
    BareQuery index(api, sql, 3);
    index.Execute(0);
    while (index.Fetch()) indexes.push_back({{table, index.Text(0), index.Text(1), index.Text(2)}});
  }
};

struct Unwatched final : ProgressListener {
  bool OnProgress(std::string_view, std::size_t, std::size_t) override { return true; }
};

class CatalogueReading {
 public:
  CatalogueReading() {
    client = &client_;
    session_.Connect({"DB", "u", "p", false});
  }

  void Read(DataSource& source) {
    Unwatched unwatched;
    std::string reason;
    if (operations_.ReadCatalogue(session_, source, unwatched, reason) != CatalogueRead::Read ||
        source.indexes.size() != 2 * kTables) {
      std::abort();
    }
  }

  void ReadBare() {
    BareCatalogue bare;
    bare.Read(kApi);
    if (bare.indexes.size() != 2 * kTables) std::abort();
  }

 private:
  NullClient client_;
  TempFolder folder_;
  SystemClock clock_;
  Settings settings_;
  MessageLog log_{folder_.Files(), folder_.Path(), clock_, settings_};
  OciLibrary library_{kApi};
  OracleSession session_{library_};
  SchemaOperations operations_{library_, log_, settings_};
};

template <typename... Texts>
std::size_t Sizes(const Texts&... texts) {
  return (std::size_t{0} + ... + std::string_view(texts).size());
}

double BytesPerByteOfText(CatalogueReading& reading) {
  DataSource source;
  const std::size_t before = BytesInUse();
  reading.Read(source);
  const std::size_t after = BytesInUse();
  std::size_t text = 0;
  for (const TableRecord& t : source.tables) {
    text += Sizes(t.table_owner, t.table_name, t.tablespace, t.type);
  }
  for (const KeyRecord& k : source.primary_keys) {
    text += Sizes(k.table_owner, k.table_name, k.key_name, k.status);
  }
  for (const IndexRecord& i : source.indexes) {
    text += Sizes(i.table_owner, i.table_name, i.index_owner, i.index_name, i.type, i.status);
  }
  return static_cast<double>(after - before) / static_cast<double>(text);
}

}  // namespace

void AddCatalogueReadBenches(RatioTable& table) {
  const auto reading = std::make_shared<CatalogueReading>();
  Ratio ratio;
  ratio.name = "catalogue of 10,000 tables vs bare calls";
  ratio.limit = 1.5;
  ratio.baseline = [reading] { reading->ReadBare(); };
  ratio.subject = [reading] {
    DataSource source;
    reading->Read(source);
  };
  table.Add(std::move(ratio));
  table.AddFigure("memory of the catalogue's lists", "bytes per byte of text", 2.0,
                  [reading] { return BytesPerByteOfText(*reading); });
}

}  // namespace quillmere::bench
