#include "oracle/H_oracle.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <set>
#include <thread>

#include "oracle/nls_defaults.h"
#include "support/scripted_oci.h"

namespace quillmere {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using testing::ScriptedOci;
using ::testing::StartsWith;

const std::vector<std::string> kConnectCalls = {
    "EnvCreate(0, 0)",
    "HandleAlloc(env1, err, 0)",
    "HandleAlloc(env1, srv, 0)",
    "HandleAlloc(env1, svc, 0)",
    "HandleAlloc(env1, ses, 0)",
    "ServerAttach(srv1, err1, \"SHOP\", 0)",
    "AttrSet(svc1, svc, srv1, 0, 6, err1)",
    "AttrSet(ses1, ses, \"scott\", 5, 22, err1)",
    "AttrSet(ses1, ses, \"tiger\", 5, 23, err1)",
    "SessionBegin(svc1, err1, ses1, 1, 2)",
    "AttrSet(svc1, svc, ses1, 0, 7, err1)",
};

TEST(OracleSession, ConnectsExecutesAndEndsInOrder) {
  ScriptedOci script;
  OciLibrary library(script.Api());
  {
    OracleSession session(library);
    ASSERT_TRUE(session.Connect({"SHOP", "scott", "tiger", true})) << session.LastError();
    EXPECT_EQ(script.TakeTranscript(), kConnectCalls);
    EXPECT_TRUE(session.Execute("drop table A.B"));
    EXPECT_THAT(script.TakeTranscript(),
                ElementsAre("HandleAlloc(env1, stm, 0)",
                            "StmtPrepare(stm1, err1, \"drop table A.B\", 1, 0)",
                            "StmtExecute(svc1, stm1, err1, 1, 0, 0)", "HandleFree(stm1, stm)"));
  }
  // The service context is given back once more in the place of the session handle.
  EXPECT_THAT(script.TakeTranscript(),
              ElementsAre("SessionEnd(svc1, err1, ses1, 0)", "ServerDetach(srv1, err1, 0)",
                          "HandleFree(err1, err)", "HandleFree(srv1, srv)", "HandleFree(svc1, svc)",
                          "HandleFree(svc1, ses)"));
}

struct FailingStep {
  std::string call;
  std::string label;
  std::vector<std::string> afterwards;  // calls behind the failing one
};

TEST(OracleSession, FailedConnectNamesItsStepAndLeavesNothingBehind) {
  const std::string detach = "ServerDetach(srv1, err1, 0)";
  const std::string get = "ErrorGet(err1, 1, 512, err)";
  const std::vector<std::string> free_all = {"HandleFree(err1, err)", "HandleFree(srv1, srv)",
                                             "HandleFree(svc1, svc)", "HandleFree(svc1, ses)"};
  const auto with = [](std::vector<std::string> first, const std::vector<std::string>& then) {
    first.insert(first.end(), then.begin(), then.end());
    return first;
  };
  const std::vector<FailingStep> steps = {
      {"env1, err", "OCIHandleAlloc(Env) : ", {"ErrorGet(env1, 1, 512, env)"}},
      {"env1, srv", "OCIHandleAlloc(Server) : ", {get, "HandleFree(err1, err)"}},
      {"env1, svc",
       "OCIHandleAlloc(Svcctx) : ",
       {get, "HandleFree(err1, err)", "HandleFree(srv1, srv)"}},
      {"env1, ses",
       "OCIHandleAlloc(Session) : ",
       {get, "HandleFree(err1, err)", "HandleFree(srv1, srv)", "HandleFree(svc1, svc)"}},
      {"ServerAttach", "OCIServerAttach : ", with({get}, free_all)},
      {"srv1, 0, 6", "OCIAttrSet(SERVER) : ", with({get, detach}, free_all)},
      {"\"u\", 1, 22", "OCIAttrSet(USERNAME) : ", with({get, detach}, free_all)},
      {"\"\", 0, 23", "OCIAttrSet(USERNAME) : ", with({get, detach}, free_all)},
      {"SessionBegin", "OCISessionBegin : ", with({get, detach}, free_all)},
      {"ses1, 0, 7",
       "OCIAttrSet(SESSION) : ", with({get, "SessionEnd(svc1, err1, ses1, 0)", detach}, free_all)},
  };
  for (const FailingStep& step : steps) {
    SCOPED_TRACE(step.call);
    ScriptedOci script;
    OciLibrary library(script.Api());
    script.FailOn(step.call, "ORA-12345: what went wrong  \n\n");
    OracleSession session(library);
    EXPECT_FALSE(session.Connect({"DB", "u", "", false}));
    EXPECT_EQ(session.LastError(), step.label + "ORA-12345: what went wrong");
    std::vector<std::string> calls = script.TakeTranscript();
    while (!calls.empty() && calls.front().find(step.call) == std::string::npos) {
      calls.erase(calls.begin());
    }
    ASSERT_FALSE(calls.empty());
    EXPECT_EQ(std::vector<std::string>(calls.begin() + 1, calls.end()), step.afterwards);
    EXPECT_EQ(script.LiveHandles(), 0U);
    EXPECT_TRUE(session.Connect({"DB", "u", "", false})) << "may be connected again";
  }
}

TEST(OracleSession, StatementFailuresKeepLabelAndFreeTheHandle) {
  for (const auto& [call, label] :
       std::vector<std::pair<std::string, std::string>>{{"env1, stm", "OCIHandleAlloc(Stmt1) : "},
                                                        {"StmtPrepare", "OCIStmtPrepare : "},
                                                        {"StmtExecute", "OCIStmtExecute : "}}) {
    SCOPED_TRACE(call);
    ScriptedOci script;
    OciLibrary library(script.Api());
    OracleSession session(library);
    ASSERT_TRUE(session.Connect({"DB", "u", "p", false}));
    const std::size_t live = script.LiveHandles();
    script.FailOn(call, "ORA-00942: table or view does not exist\n", 942);
    EXPECT_FALSE(session.Execute("delete from NO.TABLE"));
    EXPECT_EQ(session.LastError(), label + "ORA-00942: table or view does not exist");
    EXPECT_EQ(script.LiveHandles(), live);
    script.FailOn(call, "never asked for", 1, 0, oci::kInvalidHandle);
    EXPECT_FALSE(session.Execute("delete from NO.TABLE"));
    EXPECT_THAT(session.LastError(), HasSubstr("OCI_INVALID_HANDLE"));
  }
}

TEST(OracleSession, NeverConnectedSessionTouchesNoServer) {
  ScriptedOci script;
  OciLibrary library(script.Api());
  { const OracleSession session(library); }
  EXPECT_THAT(script.TakeTranscript(), ElementsAre("EnvCreate(0, 0)"));
}

TEST(OracleSession, FailedEndOfSessionIsTold) {
  ScriptedOci script;
  OciLibrary library(script.Api());
  OracleSession session(library);
  ASSERT_TRUE(session.Connect({"DB", "u", "p", false}));
  script.FailOn("SessionEnd", "ORA-03113: end-of-file on communication channel\n");
  EXPECT_FALSE(session.EndSession());
  EXPECT_THAT(session.LastError(), StartsWith("OCISessionEnd : ORA-03113"));
  EXPECT_TRUE(session.EndSession()) << "there is nothing left to end";
  script.TakeTranscript();
  session.Disconnect();
  EXPECT_THAT(script.TakeTranscript(), ElementsAre("ServerDetach(srv1, err1, 0)"));
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
  OciLibrary other("libc.so.6", "");
  EXPECT_FALSE(other.Loaded());
  EXPECT_THAT(other.LoadError(), HasSubstr("has no function OCIEnvCreate"));
}

TEST(NlsDefaults, LeaveWhatTheOperatorHasSet) {
  setenv("NLS_DATE_FORMAT", "DD.MM.YYYY HH24:MI:SS", 1);
  unsetenv("NLS_TIMESTAMP_FORMAT");
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
