// SPDX-License-Identifier: MIT
#include "null_oci.h"

#include <charconv>
#include <cstring>

#include "oracle/follow_queries.h"

namespace quillmere::bench {

using namespace oci;

namespace {

struct Column {
  char* value = nullptr;
  sb2* indicator = nullptr;
  ub2* length = nullptr;
};

const std::vector<RedoRow>* canned = nullptr;
std::size_t next = 0;
constexpr ub4 kRowColumns = 2;
constexpr ub4 kCommitColumns = follow::Column::Count;
Column columns[kCommitColumns];
ub4 defined = 0;
char handle = 0;  // the address of something

void Put(const Column& column, std::string_view text) {
  std::memcpy(column.value, text.data(), text.size());
  *column.indicator = 0;
  *column.length = static_cast<ub2>(text.size());
}

void PutNumber(std::size_t column, std::string_view before, std::size_t number) {
  char text[64];
  const std::size_t length = before.copy(text, before.size());
  const char* const end = std::to_chars(text + length, text + sizeof text, number).ptr;
  Put(columns[column], {text, static_cast<std::size_t>(end - text)});
}

// A row whose text goes on and the next one are of one change.
void PutFacts(const RedoRow& row) {
  using follow::Column;
  static std::size_t change = 0;
  if (next == 0) change = 0;
  const bool goes_on = !row.text.ends_with(';');
  PutNumber(Column::CommitScn, "", 5000 + change / 10);
  PutNumber(Column::Xid, "4.12.", change / 10);
  Put(columns[Column::OperationCode], "1");
  Put(columns[Column::Operation], "INSERT");
  Put(columns[Column::Rollback], "0");
  Put(columns[Column::Csf], goes_on ? "1" : "0");
  Put(columns[Column::Status], "0");
  Put(columns[Column::Owner], "SALES");
  Put(columns[Column::Table], "ORDERS_1");
  PutNumber(Column::Change, " 0x0000a1.00001234.0010 .", change);
  PutNumber(Column::Row, "70123.AAAR3sAAEAAAACXA", change);
  Put(columns[Column::CommitTime], "2026-01-31 23:59:07");
  if (!goes_on) ++change;
}

sword EnvCreate(OCIEnv** env, ub4, void*, void* (*)(void*, std::size_t),
                void* (*)(void*, void*, std::size_t), void (*)(void*, void*), std::size_t, void**) {
  *env = reinterpret_cast<OCIEnv*>(&handle);
  return kSuccess;
}
sword HandleAlloc(const void*, void** out, ub4, std::size_t, void**) {
  *out = &handle;
  return kSuccess;
}
sword HandleFree(void*, ub4) {
  return kSuccess;
}
sword ServerAttach(OCIServer*, OCIError*, const OraText*, sb4, ub4) {
  return kSuccess;
}
sword ServerDetach(OCIServer*, OCIError*, ub4) {
  return kSuccess;
}
sword AttrSet(void*, ub4, void*, ub4, ub4, OCIError*) {
  return kSuccess;
}
sword SessionBegin(OCISvcCtx*, OCIError*, OCISession*, ub4, ub4) {
  return kSuccess;
}
sword SessionEnd(OCISvcCtx*, OCIError*, OCISession*, ub4) {
  return kSuccess;
}
sword StmtPrepare(OCIStmt*, OCIError*, const OraText*, ub4, ub4, ub4) {
  defined = 0;
  return kSuccess;
}
sword StmtExecute(OCISvcCtx*, OCIStmt*, OCIError*, ub4, ub4, const OCISnapshot*, OCISnapshot*,
                  ub4) {
  next = 0;
  return kSuccess;
}
sword DefineByPos(OCIStmt*, OCIDefine**, OCIError*, ub4 position, void* value, sb4, ub2,
                  void* indicator, ub2* length, ub2*, ub4) {
  if (position <= kCommitColumns) {
    columns[position - 1] = {static_cast<char*>(value), static_cast<sb2*>(indicator), length};
  }
  defined = position;
  return kSuccess;
}
sword StmtFetch2(OCIStmt*, OCIError*, ub4, ub2, sb4, ub4) {
  const bool known = defined == kRowColumns || defined == kCommitColumns;
  if (canned == nullptr || !known || next == canned->size()) return kNoData;
  const RedoRow& row = (*canned)[next];
  Put(columns[0], row.scn);
  Put(columns[defined - 1], row.text);
  if (defined == kCommitColumns) PutFacts(row);
  ++next;
  return kSuccess;
}
sword ErrorGet(void*, ub4, OraText*, sb4*, OraText* buffer, ub4, ub4) {
  *buffer = 0;
  return kSuccess;
}

}  // namespace

OciApi NullOci(const std::vector<RedoRow>* rows) {
  canned = rows;
  return OciApi{EnvCreate,   HandleAlloc,  HandleFree, ServerAttach, ServerDetach,
                AttrSet,     SessionBegin, SessionEnd, StmtPrepare,  StmtExecute,
                DefineByPos, StmtFetch2,   ErrorGet};
}

}  // namespace quillmere::bench
