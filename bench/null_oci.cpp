// SPDX-License-Identifier: MIT
#include "null_oci.h"

#include <cstring>

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
Column columns[2];
ub4 defined = 0;
char handle = 0;  // the address of something

void Put(const Column& column, std::string_view text) {
  std::memcpy(column.value, text.data(), text.size());
  *column.indicator = 0;
  *column.length = static_cast<ub2>(text.size());
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
  if (position <= 2) {
    columns[position - 1] = {static_cast<char*>(value), static_cast<sb2*>(indicator), length};
  }
  defined = position;
  return kSuccess;
}
sword StmtFetch2(OCIStmt*, OCIError*, ub4, ub2, sb4, ub4) {
  if (canned == nullptr || defined != 2 || next == canned->size()) return kNoData;
  Put(columns[0], (*canned)[next].scn);
  Put(columns[1], (*canned)[next].text);
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
