// SPDX-License-Identifier: MIT
// Any script, statements with a semicolon at a line's end, on a sandbox database with one table: a
// statement is done or refused, and the database can be asked afterwards.
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <memory>
#include <optional>
#include <sstream>
#include <string>

#include "foundation/statement_splitter.h"
#include "must.h"
#include "sandbox/session/session.h"
#include "sandbox/store/database_file.h"

using namespace quillmere::sandbox;
namespace fs = std::filesystem;

namespace {

// A new database each time would cost more than the statements: a copy of one.
class Databases {
 public:
  Databases()
      : folder_(fs::temp_directory_path() / ("quillmere-fuzz-" + std::to_string(getpid()))) {
    fs::create_directory(folder_);
    DatabasePath made;
    MUST(FindDatabasePath(folder_, "MADE", &made) && CreateDatabase(made, "p").ok());
    made_ = made.file;
    Run(*Open(made),
        "CREATE TABLE SYSTEM.T (ID NUMBER(10) PRIMARY KEY, NAME VARCHAR2(40), D DATE, R RAW(8));\n"
        "INSERT INTO SYSTEM.T VALUES (1, 'a', SYSDATE, NULL);\nCOMMIT;\n",
        true);
  }
  ~Databases() { fs::remove_all(folder_); }

  std::unique_ptr<Session> Fresh() {
    DatabasePath path;
    MUST(FindDatabasePath(folder_, "RUN", &path));
    for (const char* kind : {"", "-wal", "-shm", "-journal"}) fs::remove(path.file.string() + kind);
    fs::copy_file(made_, path.file);
    return Open(path);
  }

  static void Run(Session& session, const std::string& script, bool must_be_done) {
    quillmere::StatementSplitter splitter;
    std::istringstream in(script);
    std::string line;
    const auto run = [&](const std::optional<quillmere::ScriptStatement>& statement) {
      if (!statement) return;
      const Status status = Execute(session, statement->text);
      if (must_be_done && !status.ok()) std::fprintf(stderr, "%s\n", status.Text().c_str());
      MUST(status.ok() || !must_be_done);
      MUST(status.ok() || status.code() > 0);
    };
    while (std::getline(in, line)) run(splitter.Feed(line));
    run(splitter.Finish());
  }

  static Status Execute(Session& session, const std::string& sql) {
    StatementResult result;
    Status status = session.Execute(sql, &result);
    for (int row = 0; status.ok() && result.cursor != nullptr && row < 100; ++row) {
      DisplayRow values;
      bool found = false;
      status = result.cursor->Next(&values, &found);
      if (!found) break;
    }
    return status;
  }

 private:
  static std::unique_ptr<Session> Open(const DatabasePath& path) {
    std::shared_ptr<Link> link;
    MUST(Link::AttachFile(path, &link).ok());
    std::unique_ptr<Session> session;
    MUST(Session::Open(link, {.user = "SYS", .sysdba = true, .trusted = true}, &session).ok());
    return session;
  }

  const fs::path folder_;
  fs::path made_;
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size) {
  static Databases databases;
  const std::unique_ptr<Session> session = databases.Fresh();
  Databases::Run(*session, std::string(reinterpret_cast<const char*>(data), size), false);
  session->Rollback();
  MUST(Databases::Execute(*session, "SELECT TABLE_NAME FROM DBA_ALL_TABLES").ok());
  return 0;
}
