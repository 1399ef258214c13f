// SPDX-License-Identifier: MIT
#include "sandbox/client.h"

#include <array>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <limits>

namespace quillmere::sandbox_test {

using namespace oci;

Client::Client() {
  OCIEnvCreate(&env, kDefault, nullptr, nullptr, nullptr, nullptr, 0, nullptr);
  error = static_cast<OCIError*>(Alloc(kHtypeError));
  server = static_cast<OCIServer*>(Alloc(kHtypeServer));
  svcctx = static_cast<OCISvcCtx*>(Alloc(kHtypeSvcCtx));
  session = static_cast<OCISession*>(Alloc(kHtypeSession));
}

Client::~Client() {
  OCIHandleFree(env, kHtypeEnv);
}

void* Client::Alloc(ub4 type) {
  void* handle = nullptr;
  OCIHandleAlloc(env, &handle, type, 0, nullptr);
  return handle;
}

std::string Client::LastError() const {
  std::array<OraText, 512> text{};
  sb4 code = 0;
  OCIErrorGet(error, 1, nullptr, &code, text.data(), text.size(), kHtypeError);
  std::string message = reinterpret_cast<const char*>(text.data());
  while (!message.empty() && message.back() == '\n') message.pop_back();
  return message;
}

std::string Client::Check(sword result) const {
  if (result == kSuccess || result == kSuccessWithInfo) return "";
  return result == kInvalidHandle ? "invalid handle" : LastError();
}

std::string Client::Connect(const std::string& database, const std::string& user,
                            const std::string& password, bool sysdba) {
  const auto text = [](const std::string& value) {
    return const_cast<OraText*>(reinterpret_cast<const OraText*>(value.data()));
  };
  const auto size = [](const std::string& value) { return static_cast<ub4>(value.size()); };
  std::string failure =
      Check(OCIServerAttach(server, error, text(database), static_cast<sb4>(size(database)), 0));
  if (!failure.empty()) return failure;
  OCIAttrSet(svcctx, kHtypeSvcCtx, server, 0, kAttrServer, error);
  OCIAttrSet(session, kHtypeSession, text(user), size(user), kAttrUsername, error);
  OCIAttrSet(session, kHtypeSession, text(password), size(password), kAttrPassword, error);
  failure = Check(OCISessionBegin(svcctx, error, session, kCredRdbms, sysdba ? kSysdba : kDefault));
  if (!failure.empty()) {
    OCIServerDetach(server, error, kDefault);
    return failure;
  }
  connected_ = true;
  return Check(OCIAttrSet(svcctx, kHtypeSvcCtx, session, 0, kAttrSession, error));
}

std::string Client::Disconnect() {
  connected_ = false;
  const std::string failure = Check(OCISessionEnd(svcctx, error, session, kDefault));
  OCIServerDetach(server, error, kDefault);
  return failure;
}

void Client::Drop() {
  connected_ = false;
  OCIServerDetach(server, error, kDefault);
}

std::string Client::Execute(const std::string& sql, ub4 mode) {
  auto* statement = static_cast<OCIStmt*>(Alloc(kHtypeStmt));
  std::string failure =
      Check(OCIStmtPrepare(statement, error, reinterpret_cast<const OraText*>(sql.data()),
                           static_cast<ub4>(sql.size()), kNtvSyntax, kDefault));
  if (failure.empty()) {
    failure = Check(OCIStmtExecute(svcctx, statement, error, 1, 0, nullptr, nullptr, mode));
  }
  OCIHandleFree(statement, kHtypeStmt);
  return failure;
}

std::string Client::ExecuteAll(const std::vector<std::string>& statements) {
  for (const std::string& sql : statements) {
    if (std::string failure = Execute(sql); !failure.empty()) return sql + ": " + failure;
  }
  return "";
}

std::string Client::Query(const std::string& sql, std::vector<Row>* rows, std::size_t columns) {
  constexpr std::size_t kCapacity = 4000;
  auto* statement = static_cast<OCIStmt*>(Alloc(kHtypeStmt));
  std::vector<std::string> buffers(columns, std::string(kCapacity, '\0'));
  std::vector<sb2> indicators(columns);
  std::vector<ub2> lengths(columns);
  rows->clear();
  std::string failure =
      Check(OCIStmtPrepare(statement, error, reinterpret_cast<const OraText*>(sql.data()),
                           static_cast<ub4>(sql.size()), kNtvSyntax, kDefault));
  for (std::size_t i = 0; failure.empty() && i < columns; ++i) {
    OCIDefine* define = nullptr;
    failure =
        Check(OCIDefineByPos(statement, &define, error, static_cast<ub4>(i + 1), buffers[i].data(),
                             kCapacity, kSqltChr, &indicators[i], &lengths[i], nullptr, kDefault));
  }
  if (failure.empty()) {
    failure = Check(OCIStmtExecute(svcctx, statement, error, 0, 0, nullptr, nullptr, kDefault));
  }
  while (failure.empty()) {
    const sword result = OCIStmtFetch2(statement, error, 1, kFetchNext, 0, kDefault);
    if (result == kNoData) break;
    failure = Check(result);
    if (!failure.empty()) break;
    Row& row = rows->emplace_back();
    for (std::size_t i = 0; i < columns; ++i) {
      row.push_back(indicators[i] < 0 ? "(null)" : buffers[i].substr(0, lengths[i]));
    }
  }
  OCIHandleFree(statement, kHtypeStmt);
  return failure;
}

std::string Client::Value(const std::string& sql) {
  std::vector<Row> rows;
  const std::string failure = Query(sql, &rows, 1);
  if (!failure.empty()) return failure;
  return rows.size() == 1 ? rows[0][0] : std::to_string(rows.size()) + " rows";
}

std::vector<std::string> Client::Mine(long long start_scn) {
  std::vector<Row> rows;
  std::vector<std::string> statements;
  EXPECT_EQ(Query("select member from v$logfile where type='ONLINE'", &rows, 1), "");
  std::string option = "DBMS_LOGMNR.NEW";
  for (const Row& row : rows) {
    std::string call = "begin dbms_logmnr.add_logfile(logfilename=>'";
    call.append(row[0]).append("', options=>").append(option).append("); end;");
    EXPECT_EQ(Execute(call), "");
    option = "DBMS_LOGMNR.ADDFILE";
  }
  std::string start =
      "begin dbms_logmnr.start_logmnr(options=>dbms_logmnr.dict_from_online_catalog";
  start.append(" + dbms_logmnr.committed_data_only, startscn=>");
  start.append(std::to_string(start_scn)).append("); end;");
  EXPECT_EQ(Execute(start), "");
  EXPECT_EQ(Query("select csf, sql_redo from v$logmnr_contents where ( operation='INSERT' or "
                  "operation='UPDATE' or operation='DELETE' ) and ( seg_owner NOT IN ('SYS', "
                  "'SYSTEM') ) ",
                  &rows, 2),
            "");
  std::string assembled;
  for (const Row& row : rows) {
    EXPECT_LE(row[1].size(), 4000U);
    assembled += row[1];
    if (row[0] == "0") statements.push_back(std::exchange(assembled, ""));
  }
  EXPECT_EQ(assembled, "");
  EXPECT_EQ(Execute("begin dbms_logmnr.end_logmnr(); end;"), "");
  return statements;
}

SandboxTest::SandboxTest() {
  std::string pattern = (std::filesystem::temp_directory_path() / "sandboxXXXXXX").string();
  folder_ = mkdtemp(pattern.data());
  setenv("QUILLMERE_SANDBOX_DIR", (folder_ / "sandbox").c_str(), 1);
  // Long enough for any machine, short enough to see that somebody keeps a lock.
  setenv("QUILLMERE_SANDBOX_LOCK_WAIT_MS", "5000", 1);
  setenv("NLS_DATE_FORMAT", "YYYY-MM-DD HH24:MI:SS", 1);
  setenv("NLS_TIMESTAMP_FORMAT", "YYYY-MM-DD HH24:MI:SS.FF", 1);
  setenv("NLS_TIMESTAMP_TZ_FORMAT", "YYYY-MM-DD HH24:MI:SS.FF TZH:TZM", 1);
  EXPECT_EQ(Tool("create SRC"), 0);
  EXPECT_EQ(Tool("create DST"), 0);
}

SandboxTest::~SandboxTest() {
  std::error_code ignored;
  std::filesystem::remove_all(folder_, ignored);
}

int SandboxTest::Tool(const std::string& arguments, std::string* output) {
  std::string command = "'" QUILLMERE_SANDBOX_TOOL "' --workdir '";
  command.append(folder_.string()).append("' ").append(arguments).append(" 2>&1");
  FILE* pipe = popen(command.c_str(), "r");
  if (pipe == nullptr) return -1;
  std::string text;
  std::array<char, 4096> buffer{};
  for (std::size_t size = 0; (size = fread(buffer.data(), 1, buffer.size(), pipe)) > 0;) {
    text.append(buffer.data(), size);
  }
  const int status = pclose(pipe);
  if (output != nullptr) *output = text;
  return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

void SandboxTest::WriteFile(const std::string& name, const std::string& text) {
  std::ofstream(folder_ / name, std::ios::binary) << text;
}

std::string SandboxTest::DatabaseFile(const std::string& name) const {
  return (folder_ / "sandbox" / (name + ".db")).string();
}

}  // namespace quillmere::sandbox_test
