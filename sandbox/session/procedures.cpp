// SPDX-License-Identifier: MIT
// The procedures of DBMS_LOGMNR, as far as mining the online log needs them.
#include <limits>

#include "sandbox/session/session.h"
#include "sandbox/values/decimal.h"

namespace quillmere::sandbox {

namespace {

constexpr std::string_view kPackage = "DBMS_LOGMNR.";

Status Refused(int number, const std::string& what) {
  return {6550, "line 1, column 7:\nPLS-00" + std::to_string(number) + ": " + what};
}

bool ReadScn(const std::string& text, std::int64_t* out) {
  const auto number = Decimal::Parse(text);
  const auto scn = number ? number->ToInt64() : std::nullopt;
  *out = scn.value_or(0);
  return scn.has_value();
}

}  // namespace

Status Session::ExecuteProcedure(const ProcedureCall& call) {
  const bool known = call.name.starts_with(kPackage);
  if (!known || !dba_) {
    return Refused(201, "identifier '" + call.name + "' must be declared");
  }
  std::string file;
  std::int64_t start_scn = 0;
  std::int64_t end_scn = 0;
  bool fresh = false;
  bool wrong = false;
  for (const ProcedureArgument& argument : call.arguments) {
    for (const std::string& constant : argument.constants) {
      wrong = wrong || argument.name != "OPTIONS" || !constant.starts_with(kPackage);
      fresh = fresh || constant == "DBMS_LOGMNR.NEW";
    }
    if (argument.name == "LOGFILENAME") {
      file = argument.value;
    } else if (argument.name == "STARTSCN") {
      wrong = wrong || !ReadScn(argument.value, &start_scn);
    } else if (argument.name == "ENDSCN") {
      wrong = wrong || !ReadScn(argument.value, &end_scn);
    } else if (argument.name != "OPTIONS") {
      wrong = true;
    }
  }
  // 0 is the package's own default: from the first, to the last.
  if (end_scn == 0) end_scn = std::numeric_limits<std::int64_t>::max();
  const std::string procedure = call.name.substr(kPackage.size());
  if (!wrong && procedure == "ADD_LOGFILE") {
    return miner_.AddFile(reader_.get(), file, fresh);
  }
  if (!wrong && procedure == "START_LOGMNR") return miner_.Start(start_scn, end_scn);
  if (!wrong && procedure == "END_LOGMNR") return miner_.End();
  return Refused(306, "wrong number or types of arguments in call to '" + call.name + "'");
}

}  // namespace quillmere::sandbox
