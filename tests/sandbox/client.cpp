// SPDX-License-Identifier: MIT
#include "sandbox/client.h"

#include <fnmatch.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <sstream>

namespace quillmere::sandbox_test {

using namespace oci;

namespace {

const OraText* Text(const std::string& value) {
  return reinterpret_cast<const OraText*>(value.data());
}

ub4 Size(const std::string& value) {
  return static_cast<ub4>(value.size());
}

}  // namespace

Client::Client() {
  OCIEnvCreate(&env, kDefault, nullptr, nullptr, nullptr, nullptr, 0, nullptr);
  error = static_cast<OCIError*>(Alloc(kHtypeError));
  server = static_cast<OCIServer*>(Alloc(kHtypeServer));
  svcctx = static_cast<OCISvcCtx*>(Alloc(kHtypeSvcCtx));
  session = static_cast<OCISession*>(Alloc(kHtypeSession));
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
  const std::string message = reinterpret_cast<const char*>(text.data());
  return message.substr(0, message.find_last_not_of('\n') + 1);
}

std::string Client::Check(sword result) const {
  if (result == kSuccess || result == kSuccessWithInfo) return "";
  return result == kInvalidHandle ? "invalid handle" : LastError();
}

std::string Client::Connect(const std::string& database, std::string user, std::string password,
                            bool sysdba) {
  std::string failure = Check(
      OCIServerAttach(server, error, Text(database), static_cast<sb4>(database.size()), kDefault));
  if (!failure.empty()) return failure;
  OCIAttrSet(svcctx, kHtypeSvcCtx, server, 0, kAttrServer, error);
  OCIAttrSet(session, kHtypeSession, user.data(), Size(user), kAttrUsername, error);
  OCIAttrSet(session, kHtypeSession, password.data(), Size(password), kAttrPassword, error);
  failure = Check(OCISessionBegin(svcctx, error, session, kCredRdbms, sysdba ? kSysdba : kDefault));
  if (!failure.empty()) Drop();
  if (!failure.empty()) return failure;
  return Check(OCIAttrSet(svcctx, kHtypeSvcCtx, session, 0, kAttrSession, error));
}

std::string Client::Disconnect() {
  const std::string failure = Check(OCISessionEnd(svcctx, error, session, kDefault));
  Drop();
  return failure;
}

OCIStmt* Client::Prepare(const std::string& sql) {
  auto* statement = static_cast<OCIStmt*>(Alloc(kHtypeStmt));
  OCIStmtPrepare(statement, error, Text(sql), Size(sql), kNtvSyntax, kDefault);
  return statement;
}

std::string Client::Execute(const std::string& sql, ub4 mode) {
  if (sql.empty()) return "";
  OCIStmt* statement = Prepare(sql);
  const std::string failure =
      Check(OCIStmtExecute(svcctx, statement, error, 1, 0, nullptr, nullptr, mode));
  OCIHandleFree(statement, kHtypeStmt);
  return failure;
}

std::string Client::Ask(const std::string& sql, std::size_t columns) {
  constexpr std::size_t kCapacity = 8000;
  std::vector<std::string> buffers(columns, std::string(kCapacity, '\0'));
  std::vector<sb2> indicators(columns);
  std::vector<ub2> lengths(columns);
  OCIStmt* statement = Prepare(sql);
  for (std::size_t i = 0; i < columns; ++i) {
    OCIDefine* define = nullptr;
    OCIDefineByPos(statement, &define, error, static_cast<ub4>(i + 1), buffers[i].data(), kCapacity,
                   kSqltChr, &indicators[i], &lengths[i], nullptr, kDefault);
  }
  std::string rows;
  sword result = OCIStmtExecute(svcctx, statement, error, 0, 0, nullptr, nullptr, kDefault);
  while (result == kSuccess) {
    result = OCIStmtFetch2(statement, error, 1, kFetchNext, 0, kDefault);
    if (result != kSuccess) break;
    for (std::size_t i = 0; i < columns; ++i) {
      if (!rows.empty()) rows += i == 0 ? " / " : "|";
      rows += indicators[i] < 0 ? "(null)" : buffers[i].substr(0, lengths[i]);
    }
  }
  const std::string failure = result == kNoData ? "" : Check(result);
  OCIHandleFree(statement, kHtypeStmt);
  return failure.empty() ? rows : failure;
}

void Client::Expect(const std::string& sql, const std::string& answer) {
  const std::string row = answer.substr(0, answer.find(" / "));
  const auto columns = static_cast<std::size_t>(std::count(row.begin(), row.end(), '|')) + 1;
  const std::string got = sql.starts_with("select") ? Ask(sql, columns) : Execute(sql);
  const bool error_wanted = answer.starts_with("ORA-");
  const bool alike = answer.find('*') != std::string::npos
                         ? fnmatch(answer.c_str(), got.c_str(), 0) == 0
                         : answer == (error_wanted ? got.substr(0, answer.size()) : got);
  EXPECT_TRUE(alike) << sql.substr(0, 200) << "\nwanted: " << answer << "\ngot:    " << got;
}

void Client::Run(const std::string& transcript) {
  for (const std::string& step : Steps(transcript)) {
    const std::size_t arrow = std::min(step.find(" -> "), step.size());
    Expect(step.substr(0, arrow), step.substr(std::min(arrow + 4, step.size())));
  }
}

std::vector<std::string> Steps(const std::string& transcript) {
  std::istringstream lines(transcript);
  std::vector<std::string> steps;
  std::size_t margin = 0;
  for (std::string line; std::getline(lines, line);) {
    const std::size_t begin = line.find_first_not_of(' ');
    if (begin == std::string::npos || line.substr(begin, 2) == "--") continue;
    if (steps.empty()) margin = begin;
    if (begin > margin) steps.back() += ' ';
    if (begin <= margin) steps.emplace_back();
    steps.back() += line.substr(begin);
  }
  return steps;
}

void Client::StartMining(long long start_scn) {
  const std::string file =
      Ask("select min(f.member) from v$log l join v$logfile f on f.group# = l.group# "
          "where l.status = 'CURRENT'");
  Run("begin dbms_logmnr.add_logfile(logfilename=>'" + file + "', options=>DBMS_LOGMNR.NEW); end;");
  Run("begin dbms_logmnr.start_logmnr(options=>dbms_logmnr.dict_from_online_catalog + "
      "dbms_logmnr.committed_data_only, startscn=>" +
      std::to_string(start_scn) + "); end;");
}

std::vector<std::string> Client::Mine(long long start_scn) {
  StartMining(start_scn);
  // Each piece stands behind its flag, marked by a character that the tests have nowhere else.
  const std::string rows =
      Ask("select '\x01' || csf || sql_redo from v$logmnr_contents where ( operation='INSERT' or "
          "operation='UPDATE' or operation='DELETE' ) and ( seg_owner NOT IN ('SYS', 'SYSTEM') ) ");
  std::vector<std::string> statements;
  std::string assembled;
  for (std::size_t at = rows.find('\x01'); at != std::string::npos;) {
    const std::size_t next = rows.find(" / \x01", at);
    assembled += rows.substr(at + 2, next == std::string::npos ? next : next - at - 2);
    if (rows[at + 1] == '0') statements.push_back(std::exchange(assembled, ""));
    at = next == std::string::npos ? next : next + 3;
  }
  Run("begin dbms_logmnr.end_logmnr(); end;");
  EXPECT_EQ(assembled, "");
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
  EXPECT_EQ(Tool("create SRC") + Tool("create DST"), 0);
  EXPECT_EQ(client_.ConnectSys("SRC"), "");
}

SandboxTest::~SandboxTest() {
  client_.Drop();
  std::error_code ignored;
  std::filesystem::remove_all(folder_, ignored);
}

int SandboxTest::Tool(const std::string& arguments, std::string* output) {
  const std::string printed = (folder_ / "printed").string();
  const std::string command = "'" QUILLMERE_SANDBOX_TOOL "' --workdir '" + folder_.string() + "' " +
                              arguments + " > '" + printed + "' 2>&1";
  const int status = std::system(command.c_str());
  if (output != nullptr) {
    std::ifstream file(printed, std::ios::binary);
    output->assign(std::istreambuf_iterator<char>(file), {});
  }
  return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

int SandboxTest::Script(const std::string& database, const std::string& text, std::string* output) {
  std::ofstream(folder_ / "script.sql", std::ios::binary) << text;
  return Tool("sql " + database + " '" + (folder_ / "script.sql").string() + "'", output);
}

std::string SandboxTest::DatabaseFile(const std::string& name) const {
  return (folder_ / "sandbox" / (name + ".db")).string();
}

}  // namespace quillmere::sandbox_test
