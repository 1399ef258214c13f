// The procedures of DBMS_LOGMNR, as far as mining the online log needs them.
#include <limits>

#include "sandbox/session/session.h"
#include "sandbox/values/decimal.h"

namespace quillmere::sandbox {

namespace {

Status WrongArguments(const ProcedureCall& call) {
  return {6550, "line 1, column 7:\nPLS-00306: wrong number or types of arguments in call to '" +
                    call.name + "'"};
}

}  // namespace

Status Session::ExecuteProcedure(const ProcedureCall& call) {
  if (!call.name.starts_with("DBMS_LOGMNR.")) {
    return {6550, "line 1, column 7:\nPLS-00201: identifier '" + call.name + "' must be declared"};
  }
  if (!HasPrivilege("EXECUTE_CATALOG_ROLE")) {
    return {6550, "line 1, column 7:\nPLS-00201: identifier 'DBMS_LOGMNR' must be declared"};
  }
  std::string file;
  std::int64_t start_scn = 0;
  std::int64_t end_scn = std::numeric_limits<std::int64_t>::max();
  bool fresh = false;
  bool wrong = false;
  for (const ProcedureArgument& argument : call.arguments) {
    if (argument.name == "OPTIONS") {
      for (const std::string& constant : argument.constants) {
        if (!constant.starts_with("DBMS_LOGMNR.")) wrong = true;
        if (constant == "DBMS_LOGMNR.NEW") fresh = true;
      }
      continue;
    }
    Datum value;
    if (!argument.value || !IsConstant(*argument.value)) return WrongArguments(call);
    Status status = EvaluateConstant(*argument.value, tokens_, context_, &value);
    if (!status.ok()) return status;
    if (argument.name == "LOGFILENAME") {
      file = value.text;
    } else if (argument.name == "STARTSCN" || argument.name == "ENDSCN") {
      const auto number = Decimal::Parse(value.text);
      const auto scn = number ? number->ToInt64() : std::nullopt;
      if (!scn) return WrongArguments(call);
      // 0 is the package's own default: from the first, to the last.
      if (argument.name == "STARTSCN") start_scn = *scn;
      if (argument.name == "ENDSCN" && *scn != 0) end_scn = *scn;
    } else {
      wrong = true;
    }
  }
  if (wrong) return WrongArguments(call);
  if (call.name == "DBMS_LOGMNR.ADD_LOGFILE") return miner_.AddFile(file, fresh);
  if (call.name == "DBMS_LOGMNR.START_LOGMNR") return miner_.Start(start_scn, end_scn);
  if (call.name == "DBMS_LOGMNR.END_LOGMNR" && call.arguments.empty()) return miner_.End();
  return WrongArguments(call);
}

}  // namespace quillmere::sandbox
