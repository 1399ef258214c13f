// The only road to a database: OracleSession, one connection over the Oracle Call Interface, and
// the client library that all sessions share (oci_library.h).
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "oracle/oci_library.h"
#include "oracle/oracle_records.h"

namespace quillmere {

// True for the 28 owners that belong to the database itself (exact, case-sensitive match).
bool IsSystemOwner(std::string_view owner);

// Takes the rows of a mining run as they arrive.
class RedoSink {
 public:
  virtual ~RedoSink() = default;
  // One piece of redo text and its SCN; text is valid during the call only. False ends the run
  // with failure and the reason.
  virtual bool OnRedo(std::int64_t scn, std::string_view text, std::string& reason) = 0;
  // After the last row, before the mining session is ended. False as above.
  virtual bool OnEnd(std::string& reason) = 0;
};

// Made for one task and destroyed at its end; used by one thread only. No operation throws: each
// returns false and leaves "<step label> : <Oracle's message>" in LastError().
class OracleSession {
 public:
  // library must outlive the session.
  explicit OracleSession(OciLibrary& library);
  ~OracleSession();
  OracleSession(const OracleSession&) = delete;
  OracleSession& operator=(const OracleSession&) = delete;

  // Allocates the handles, attaches and logs on. A failed connect leaves the session as
  // constructed, with its error text; it may be tried again.
  bool Connect(std::string_view connect_string, std::string_view user, std::string_view password,
               bool sysdba);

  // Ends the session, which commits its open transaction on the server, and detaches. False when
  // the end of the session failed, so that the fate of its transaction is not known; the connection
  // is gone in any case. True when there was none.
  bool Disconnect();

  bool Connected() const { return connected_; }
  const std::string& LastError() const { return last_error_; }

  // One statement without result rows.
  bool Execute(std::string_view statement);

  // What an operation left out of its result without failing, a line each (a name too long for its
  // column). Empties the list.
  std::vector<std::string> TakeWarnings();

  // --- LogMiner -------------------------------------------------------------------------------

  // The SCN of the database as it stands.
  bool ReadCurrentScn(std::int64_t& scn);

  // Gives LogMiner the online logs and starts mining at start_scn.
  bool SetLogs(std::int64_t start_scn);

  // Hands the committed changes of all but the system's own owners to the sink, in commit order,
  // and ends the mining session. After a failure the mining session goes with this session.
  bool MineRedo(RedoSink& sink);

  // --- Catalogue ------------------------------------------------------------------------------

  // Users and tables without those of system owners, in the server's order. A list is emptied
  // first; rows read before a failure stay in it.
  bool ListUsers(std::vector<std::string>& users);
  bool ListTables(std::vector<TableInfo>& tables);

 private:
  friend class TextQuery;
  enum class ErrorSource { Error, Environment };

  static bool Succeeded(oci::sword status) {
    return status == oci::kSuccess || status == oci::kSuccessWithInfo;
  }
  const OciApi& Api() const { return library_.Api(); }

  bool AllocateHandles();
  void ReleaseHandles();
  bool Attach(std::string_view connect_string);
  bool LogOn(std::string_view user, std::string_view password, bool sysdba);
  bool SetHandleAttribute(oci::ub4 attribute, void* handle, std::string_view label);
  bool SetLoginText(oci::ub4 attribute, std::string_view text);
  bool ExecuteOn(oci::OCIStmt* statement, std::string_view text, std::string_view prepare_label,
                 std::string_view execute_label);

  // Fills LastError with the label and the server's message. status tells whether there is any
  // message to ask for.
  void SetError(std::string_view label, ErrorSource source, oci::sword status);

  OciLibrary& library_;
  OciLibrary::Environment environment_;
  // Not allocated is a value of its own, not null (see oracle_session.cpp).
  oci::OCIError* error_;
  oci::OCIServer* server_;
  oci::OCISvcCtx* service_;
  oci::OCISession* session_;
  std::string last_error_;
  std::vector<std::string> warnings_;
  bool connected_ = false;
};

}  // namespace quillmere
