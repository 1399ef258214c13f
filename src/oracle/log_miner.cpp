// SPDX-License-Identifier: MIT
#include "foundation/text.h"
#include "oracle/text_query.h"

namespace quillmere {
namespace {

constexpr oci::sb4 kScnDigits = 20;
constexpr oci::sb4 kMemberBytes = 500 * kBytesPerCharacter;
// Redo comes in pieces of at most 4000 characters of the server's character set.
constexpr oci::sb4 kRedoBytes = 4000 * kBytesPerCharacter;
// Rows a round trip. The client keeps that many: 8 MB at worst, for one capture at a time.
constexpr oci::ub4 kPrefetchRows = 500;
// ORA-01289: the log is in LogMiner's list already, by this name or by that of its other member.
constexpr oci::sb4 kDuplicateLog = 1289;

constexpr QueryLabels kCurrentScnLabels = kSingleLabels;

// A second statement handle beside a query, freed with it.
class Statement {
 public:
  Statement(const OciApi& api, oci::OCIEnv* environment) : api_(api) {
    void* handle = nullptr;
    status_ = api_.HandleAlloc(environment, &handle, oci::kHtypeStmt, 0, nullptr);
    if (status_ == oci::kSuccess || status_ == oci::kSuccessWithInfo) {
      handle_ = static_cast<oci::OCIStmt*>(handle);
    }
  }
  ~Statement() {
    if (handle_ != nullptr) api_.HandleFree(handle_, oci::kHtypeStmt);
  }
  Statement(const Statement&) = delete;
  Statement& operator=(const Statement&) = delete;

  oci::OCIStmt* Handle() const { return handle_; }
  oci::sword Status() const { return status_; }

 private:
  const OciApi& api_;
  oci::OCIStmt* handle_ = nullptr;
  oci::sword status_ = oci::kSuccess;
};

}  // namespace

bool OracleSession::ReadCurrentScn(std::int64_t& scn) {
  TextQuery query(*this, kCurrentScnLabels);
  if (!query.OpenWithRow("select max(ktuxescnw * power(2,32) + ktuxescnb) from x$ktuxe",
                         {kScnDigits})) {
    return false;
  }
  if (!query.Truncated() && ParseNumber(query.Text(0), scn)) return true;
  return query.Refuse("the current SCN is not a number: '" + std::string(query.Text(0)) + "'");
}

bool OracleSession::SetLogs(std::int64_t start_scn) {
  TextQuery members(*this, kListLabels);
  if (!members.Allocate()) return false;
  const Statement second(Api(), environment_.handle);
  if (second.Handle() == nullptr) {
    SetError("OCIHandleAlloc(Stmt2) : ", ErrorSource::Error, second.Status());
    return false;
  }
  if (!members.Prepare("select member from v$logfile where type='ONLINE'") ||
      !members.Define({kMemberBytes}) || !members.Execute()) {
    return false;
  }
  std::string_view option = "DBMS_LOGMNR.NEW";
  TextQuery::Row row;
  while ((row = members.Fetch()) == TextQuery::Row::Fetched) {
    if (members.Truncated()) {
      return Refuse("OCIStmtFetch2 : the name of an online log file is longer than " +
                    std::to_string(kMemberBytes) + " bytes");
    }
    const std::string add = "begin dbms_logmnr.add_logfile(logfilename=>" +
                            SqlLiteral(members.Text(0)) + ", options=>" + std::string(option) +
                            "); end;";
    if (ExecuteOn(second.Handle(), add, "OCIStmtPrepare(dbms_logmnr.add_logfile) : ",
                  "OCIStmtExecute(dbms_logmnr.add_logfile) : ")) {
      option = "DBMS_LOGMNR.ADDFILE";
    } else if (last_error_code_ != kDuplicateLog) {
      return false;
    }
  }
  if (row == TextQuery::Row::Failed) return false;
  const std::string start =
      "begin dbms_logmnr.start_logmnr(options=>dbms_logmnr.dict_from_online_catalog + "
      "dbms_logmnr.committed_data_only, startscn=>" +
      std::to_string(start_scn) + "); end;";
  return ExecuteOn(second.Handle(), start, "OCIStmtPrepare(dbms_logmnr.start_logmnr) : ",
                   "OCIStmtExecute(dbms_logmnr.start_logmnr) : ");
}

bool OracleSession::MineRedo(RedoSink& sink) {
  TextQuery contents(*this, kListLabels);
  if (!contents.Allocate()) return false;
  const Statement second(Api(), environment_.handle);
  if (second.Handle() == nullptr) {
    SetError("OCIHandleAlloc(Stmt2) : ", ErrorSource::Error, second.Status());
    return false;
  }
  if (!contents.Prepare("select scn, sql_redo from v$logmnr_contents where ( operation='INSERT' or "
                        "operation='UPDATE' or operation='DELETE' ) and ( seg_owner NOT IN ('SYS', "
                        "'SYSTEM') ) ")) {
    return false;
  }
  contents.SetPrefetch(kPrefetchRows);
  if (!contents.Define({kScnDigits, kRedoBytes}) || !contents.Execute()) return false;
  TextQuery::Row row;
  while ((row = contents.Fetch()) == TextQuery::Row::Fetched) {
    std::int64_t scn = 0;
    std::string reason;
    if (contents.Truncated()) {
      // Losing a byte here would change what is applied elsewhere.
      reason = "a row of the redo is longer than " + std::to_string(kRedoBytes) + " bytes";
    } else if (!ParseNumber(contents.Text(0), scn)) {
      reason = "the SCN of a row is not a number: '" + std::string(contents.Text(0)) + "'";
    } else if (sink.OnRedo(scn, contents.Raw(1), reason)) {
      continue;
    }
    return Refuse("OCIStmtFetch2 : " + reason);
  }
  if (row == TextQuery::Row::Failed) return false;
  if (std::string reason; !sink.OnEnd(reason)) {
    return Refuse("OCIStmtFetch2 : " + reason);
  }
  return ExecuteOn(
      second.Handle(), "begin dbms_logmnr.end_logmnr(); end;",
      "OCIStmtPrepare(dbms_logmnr.end_logmnr) : ", "OCIStmtExecute(dbms_logmnr.end_logmnr) : ");
}

}  // namespace quillmere
