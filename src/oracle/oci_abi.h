// SPDX-License-Identifier: MIT
// The 13 functions of the Oracle Call Interface that Quillmere uses, declared by ourselves:
// nothing of Oracle's is needed to build. Types, argument widths and constants are those of the
// 64-bit client ABI. Shared with sandbox/, which exports functions of exactly these types.
#pragma once

#include <cstddef>
#include <cstdint>

namespace quillmere::oci {

using sword = int;
using ub4 = std::uint32_t;
using sb4 = std::int32_t;
using ub2 = std::uint16_t;
using sb2 = std::int16_t;
using OraText = unsigned char;

static_assert(sizeof(sword) == 4 && sizeof(ub4) == 4 && sizeof(sb4) == 4);
static_assert(sizeof(ub2) == 2 && sizeof(sb2) == 2 && sizeof(OraText) == 1);
static_assert(sizeof(void*) == 8 && sizeof(std::size_t) == 8, "only 64-bit clients are supported");

// Opaque handles: only the client library knows what is behind them.
struct OCIEnv;
struct OCIError;
struct OCIServer;
struct OCISvcCtx;
struct OCISession;
struct OCIStmt;
struct OCIDefine;
struct OCISnapshot;

inline constexpr sword kSuccess = 0;
inline constexpr sword kSuccessWithInfo = 1;
inline constexpr sword kNoData = 100;
inline constexpr sword kError = -1;
inline constexpr sword kInvalidHandle = -2;

inline constexpr ub4 kHtypeEnv = 1;
inline constexpr ub4 kHtypeError = 2;
inline constexpr ub4 kHtypeSvcCtx = 3;
inline constexpr ub4 kHtypeStmt = 4;
inline constexpr ub4 kHtypeServer = 8;
inline constexpr ub4 kHtypeSession = 9;

inline constexpr ub4 kAttrServer = 6;
inline constexpr ub4 kAttrSession = 7;
inline constexpr ub4 kAttrPrefetchRows = 11;
inline constexpr ub4 kAttrPrefetchMemory = 13;
inline constexpr ub4 kAttrUsername = 22;
inline constexpr ub4 kAttrPassword = 23;

inline constexpr ub4 kDefault = 0;           // OCI_DEFAULT: every mode argument
inline constexpr ub4 kSysdba = 2;            // OCISessionBegin mode
inline constexpr ub4 kCredRdbms = 1;         // OCISessionBegin credentials
inline constexpr ub4 kNtvSyntax = 1;         // OCIStmtPrepare language
inline constexpr ub2 kFetchNext = 2;         // OCIStmtFetch2 orientation
inline constexpr ub2 kSqltChr = 1;           // external type: text without a terminating zero
inline constexpr ub4 kCommitOnSuccess = 32;  // OCIStmtExecute mode

}  // namespace quillmere::oci

extern "C" {
using OciEnvCreateFn = quillmere::oci::sword(quillmere::oci::OCIEnv** envhpp,
                                             quillmere::oci::ub4 mode, void* ctxp,
                                             void* (*malocfp)(void*, std::size_t),
                                             void* (*ralocfp)(void*, void*, std::size_t),
                                             void (*mfreefp)(void*, void*), std::size_t xtramem_sz,
                                             void** usrmempp);
using OciHandleAllocFn = quillmere::oci::sword(const void* parenth, void** hndlpp,
                                               quillmere::oci::ub4 type, std::size_t xtramem_sz,
                                               void** usrmempp);
using OciHandleFreeFn = quillmere::oci::sword(void* hndlp, quillmere::oci::ub4 type);
using OciServerAttachFn = quillmere::oci::sword(quillmere::oci::OCIServer* srvhp,
                                                quillmere::oci::OCIError* errhp,
                                                const quillmere::oci::OraText* dblink,
                                                quillmere::oci::sb4 dblink_len,
                                                quillmere::oci::ub4 mode);
using OciServerDetachFn = quillmere::oci::sword(quillmere::oci::OCIServer* srvhp,
                                                quillmere::oci::OCIError* errhp,
                                                quillmere::oci::ub4 mode);
using OciAttrSetFn = quillmere::oci::sword(void* trgthndlp, quillmere::oci::ub4 trghndltyp,
                                           void* attributep, quillmere::oci::ub4 size,
                                           quillmere::oci::ub4 attrtype,
                                           quillmere::oci::OCIError* errhp);
using OciSessionBeginFn = quillmere::oci::sword(quillmere::oci::OCISvcCtx* svchp,
                                                quillmere::oci::OCIError* errhp,
                                                quillmere::oci::OCISession* usrhp,
                                                quillmere::oci::ub4 credt,
                                                quillmere::oci::ub4 mode);
using OciSessionEndFn = quillmere::oci::sword(quillmere::oci::OCISvcCtx* svchp,
                                              quillmere::oci::OCIError* errhp,
                                              quillmere::oci::OCISession* usrhp,
                                              quillmere::oci::ub4 mode);
using OciStmtPrepareFn = quillmere::oci::sword(quillmere::oci::OCIStmt* stmtp,
                                               quillmere::oci::OCIError* errhp,
                                               const quillmere::oci::OraText* stmt,
                                               quillmere::oci::ub4 stmt_len,
                                               quillmere::oci::ub4 language,
                                               quillmere::oci::ub4 mode);
using OciStmtExecuteFn =
    quillmere::oci::sword(quillmere::oci::OCISvcCtx* svchp, quillmere::oci::OCIStmt* stmtp,
                          quillmere::oci::OCIError* errhp, quillmere::oci::ub4 iters,
                          quillmere::oci::ub4 rowoff, const quillmere::oci::OCISnapshot* snap_in,
                          quillmere::oci::OCISnapshot* snap_out, quillmere::oci::ub4 mode);
using OciDefineByPosFn = quillmere::oci::sword(
    quillmere::oci::OCIStmt* stmtp, quillmere::oci::OCIDefine** defnpp,
    quillmere::oci::OCIError* errhp, quillmere::oci::ub4 position, void* valuep,
    quillmere::oci::sb4 value_sz, quillmere::oci::ub2 dty, void* indp, quillmere::oci::ub2* rlenp,
    quillmere::oci::ub2* rcodep, quillmere::oci::ub4 mode);
using OciStmtFetch2Fn = quillmere::oci::sword(
    quillmere::oci::OCIStmt* stmtp, quillmere::oci::OCIError* errhp, quillmere::oci::ub4 nrows,
    quillmere::oci::ub2 orientation, quillmere::oci::sb4 fetch_offset, quillmere::oci::ub4 mode);
using OciErrorGetFn = quillmere::oci::sword(void* hndlp, quillmere::oci::ub4 recordno,
                                            quillmere::oci::OraText* sqlstate,
                                            quillmere::oci::sb4* errcodep,
                                            quillmere::oci::OraText* bufp,
                                            quillmere::oci::ub4 bufsiz, quillmere::oci::ub4 type);
}

namespace quillmere {

// The one road to any client library: the Oracle client, the sandbox and the scripted tables of
// tests fill it alike. All 13 pointers are set, or the table is not used.
struct OciApi {
  OciEnvCreateFn* EnvCreate = nullptr;
  OciHandleAllocFn* HandleAlloc = nullptr;
  OciHandleFreeFn* HandleFree = nullptr;
  OciServerAttachFn* ServerAttach = nullptr;
  OciServerDetachFn* ServerDetach = nullptr;
  OciAttrSetFn* AttrSet = nullptr;
  OciSessionBeginFn* SessionBegin = nullptr;
  OciSessionEndFn* SessionEnd = nullptr;
  OciStmtPrepareFn* StmtPrepare = nullptr;
  OciStmtExecuteFn* StmtExecute = nullptr;
  OciDefineByPosFn* DefineByPos = nullptr;
  OciStmtFetch2Fn* StmtFetch2 = nullptr;
  OciErrorGetFn* ErrorGet = nullptr;
};

}  // namespace quillmere
