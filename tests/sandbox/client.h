// SPDX-License-Identifier: MIT
// A client of the sandbox library as programs are: through the 13 functions and nothing else.
#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

#include "oracle/oci_abi.h"

extern "C" {
OciEnvCreateFn OCIEnvCreate;
OciHandleAllocFn OCIHandleAlloc;
OciHandleFreeFn OCIHandleFree;
OciServerAttachFn OCIServerAttach;
OciServerDetachFn OCIServerDetach;
OciAttrSetFn OCIAttrSet;
OciSessionBeginFn OCISessionBegin;
OciSessionEndFn OCISessionEnd;
OciStmtPrepareFn OCIStmtPrepare;
OciStmtExecuteFn OCIStmtExecute;
OciDefineByPosFn OCIDefineByPos;
OciStmtFetch2Fn OCIStmtFetch2;
OciErrorGetFn OCIErrorGet;
}

namespace quillmere::sandbox_test {

using Row = std::vector<std::string>;  // "(null)" for NULL

// One connection. Every call returns "" or the text of OCIErrorGet without its line end.
class Client {
 public:
  Client();
  ~Client();
  Client(const Client&) = delete;
  Client& operator=(const Client&) = delete;

  std::string Connect(const std::string& database, const std::string& user,
                      const std::string& password, bool sysdba);
  std::string ConnectSys(const std::string& database) {
    return Connect(database, "SYS", "sandbox", true);
  }
  // Ends the session, which commits.
  std::string Disconnect();
  // Detaches without ending the session.
  void Drop();

  std::string Execute(const std::string& sql, oci::ub4 mode = oci::kDefault);
  // Executes each in turn; the first error with its statement, or "".
  std::string ExecuteAll(const std::vector<std::string>& statements);
  std::string Query(const std::string& sql, std::vector<Row>* rows, std::size_t columns);
  // The single value of a query, or the error.
  std::string Value(const std::string& sql);
  // The statements mined from an SCN on, put together from their pieces.
  std::vector<std::string> Mine(long long start_scn);
  // What the last call on the error handle left.
  std::string LastError() const;

  oci::OCIEnv* env = nullptr;
  oci::OCIError* error = nullptr;
  oci::OCIServer* server = nullptr;
  oci::OCISvcCtx* svcctx = nullptr;
  oci::OCISession* session = nullptr;

 private:
  void* Alloc(oci::ub4 type);
  std::string Check(oci::sword result) const;

  bool connected_ = false;
};

// A fresh folder of databases, removed at the end; SRC and DST are there.
class SandboxTest : public ::testing::Test {
 protected:
  SandboxTest();
  ~SandboxTest() override;

  // Runs the tool with the folder as its working folder; what it printed goes to `output`.
  int Tool(const std::string& arguments, std::string* output = nullptr);
  void WriteFile(const std::string& name, const std::string& text);
  std::string DatabaseFile(const std::string& name) const;

  std::filesystem::path folder_;
};

}  // namespace quillmere::sandbox_test
