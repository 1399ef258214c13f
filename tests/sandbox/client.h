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

// One connection. Every call returns "" or the text of OCIErrorGet without its line end.
class Client {
 public:
  Client();
  ~Client() { OCIHandleFree(env, oci::kHtypeEnv); }
  Client(const Client&) = delete;
  Client& operator=(const Client&) = delete;

  std::string Connect(const std::string& database, std::string user, std::string password,
                      bool sysdba);
  std::string ConnectSys(const std::string& database) {
    return Connect(database, "SYS", "sandbox", true);
  }
  // Ends the session, which commits.
  std::string Disconnect();
  // Detaches without ending the session.
  void Drop() { OCIServerDetach(server, error, oci::kDefault); }

  std::string Execute(const std::string& sql, oci::ub4 mode = oci::kDefault);
  // The rows of a query, or the error.
  std::string Ask(const std::string& sql, std::size_t columns = 1);
  // Executes a statement; its answer is an error by its beginning, or rows joined by " / " with
  // columns joined by "|", "*" standing for any text; none means neither.
  void Expect(const std::string& sql, const std::string& answer);
  // Expects of each step what stands behind its " -> ".
  void Run(const std::string& transcript);
  void StartMining(long long start_scn);
  // The statements mined from an SCN on, put together from their pieces.
  std::vector<std::string> Mine(long long start_scn);

  oci::OCIStmt* Prepare(const std::string& sql);
  std::string LastError() const;
  std::string Check(oci::sword result) const;

  oci::OCIEnv* env = nullptr;
  oci::OCIError* error = nullptr;
  oci::OCIServer* server = nullptr;
  oci::OCISvcCtx* svcctx = nullptr;
  oci::OCISession* session = nullptr;

 private:
  void* Alloc(oci::ub4 type);
};

// The steps of a transcript: a line each, or more when the next ones stand further in. Lines that
// begin with "--" are notes.
std::vector<std::string> Steps(const std::string& transcript);

// A fresh folder of databases, removed at the end; SRC and DST are there, and a client of SRC.
class SandboxTest : public ::testing::Test {
 protected:
  SandboxTest();
  ~SandboxTest() override;

  // Runs the tool with the folder as its working folder; what it printed goes to `output`.
  int Tool(const std::string& arguments, std::string* output = nullptr);
  // Runs a script on a database by the tool.
  int Script(const std::string& database, const std::string& text, std::string* output);
  std::string DatabaseFile(const std::string& name) const;

  std::filesystem::path folder_;
  Client client_;
};

}  // namespace quillmere::sandbox_test
