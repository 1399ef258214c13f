// SPDX-License-Identifier: MIT
#include <cstdlib>
#include <thread>

#include "oracle/nls_defaults.h"
#include "oracle/operations.h"

namespace quillmere {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using testing::ScriptedOci;
using ::testing::StartsWith;

TEST(OracleSession, NeverConnectedSessionTouchesNoServer) {
  ScriptedOci script;
  OciLibrary library(script.Api());
  { const OracleSession session(library); }
  EXPECT_THAT(script.TakeTranscript(), ElementsAre("EnvCreate(0, 0)"));
}

TEST(OracleSession, AfterAFailedEndOnlyTheServerIsLeft) {
  Connected at;
  at.script.FailOn("StmtExecute", "never asked for", 1, 0, oci::kInvalidHandle);
  EXPECT_FALSE(at.session.Execute("delete from NO.TABLE"));
  EXPECT_THAT(at.session.LastError(), HasSubstr("OCI_INVALID_HANDLE"));
  at.script.FailOn("SessionEnd", "ORA-03113: end-of-file on communication channel\n");
  EXPECT_FALSE(at.session.EndSession());
  EXPECT_TRUE(at.session.EndSession()) << "there is nothing left to end";
  at.script.TakeTranscript();
  at.session.Disconnect();
  EXPECT_THAT(at.script.TakeTranscript(), ElementsAre("ServerDetach(srv1, err1, 0)"));
}

TEST(OciLibrary, OneEnvironmentAThread) {
  ScriptedOci script;
  OciLibrary library(script.Api());
  for (int i = 0; i < 3; ++i) OracleSession(library).Connect({"DB", "u", "p", false});
  std::thread([&] { OracleSession session(library); }).join();
  int environments = 0;
  for (const std::string& call : script.TakeTranscript()) environments += call.starts_with("EnvC");
  EXPECT_EQ(environments, 2);
}

TEST(OciLibrary, FailedEnvironmentFailsTheConnectAndIsTriedAgain) {
  ScriptedOci script;
  OciLibrary library(script.Api());
  script.FailOn("EnvCreate", "");
  OracleSession session(library);
  EXPECT_FALSE(session.Connect({"DB", "u", "p", false}));
  EXPECT_THAT(session.LastError(), StartsWith("OCIHandleAlloc(Env) : "));
  EXPECT_TRUE(OracleSession(library).Connect({"DB", "u", "p", false}));
}

TEST(OciLibrary, MissingClientSaysWhatWasTriedAndWhatToDo) {
  OciLibrary missing("/no/such/library.so", "");
  OracleSession session(missing);
  EXPECT_FALSE(session.Connect({"DB", "u", "p", false}));
  EXPECT_THAT(session.LastError(), StartsWith("OCIHandleAlloc(Env) : "));
  EXPECT_THAT(session.LastError(), HasSubstr("Tried: /no/such/library.so"));
  EXPECT_THAT(session.LastError(), HasSubstr("--client sandbox"));

// Some library that is there, and is no client.
#ifdef _WIN32
  OciLibrary other("kernel32.dll", "");
#else
  OciLibrary other("libc.so.6", "");
#endif
  EXPECT_FALSE(other.Loaded());
  EXPECT_THAT(other.LoadError(), HasSubstr("has no function OCIEnvCreate"));
}

TEST(NlsDefaults, LeaveWhatTheOperatorHasSet) {
  static char chosen[] = "NLS_DATE_FORMAT=DD.MM.YYYY HH24:MI:SS";
  putenv(chosen);
  SetNlsDefaults();
  EXPECT_STREQ(std::getenv("NLS_DATE_FORMAT"), "DD.MM.YYYY HH24:MI:SS");
  EXPECT_STREQ(std::getenv("NLS_TIMESTAMP_FORMAT"), "YYYY-MM-DD HH24:MI:SS.FF");
}

TEST(SystemOwners, MatchExactly) {
  for (const char* owner : {"SYS", "SYSTEM", "ANONYMOUS", "XDB", "OUTLN", "QS_CBADM"}) {
    EXPECT_TRUE(IsSystemOwner(owner)) << owner;
  }
  for (const char* owner : {"", "system", "SYSTEM ", "SCOTT", "QS_"}) {
    EXPECT_FALSE(IsSystemOwner(owner)) << owner;
  }
}

}  // namespace
}  // namespace quillmere
