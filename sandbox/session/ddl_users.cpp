// SPDX-License-Identifier: MIT
#include "sandbox/session/ddl.h"
#include "sandbox/store/platform.h"

namespace quillmere::sandbox {

namespace {

Status NoUser(const std::string& name) {
  return {1918, "user '" + name + "' does not exist"};
}

}  // namespace

bool DdlExecutor::UserExists(const std::string& name) {
  return sql_.Int("SELECT 1 FROM qm_user WHERE name = ?", name).has_value();
}

void DdlExecutor::ChangeUser(const UserStatement& user) {
  if (!May(user.create ? "" : user.name)) sql_.Fail(Ora(1031));
  if (UserExists(user.name) == user.create) {
    sql_.Fail(user.create ? Status(1920, "user name '" + user.name +
                                             "' conflicts with another user or role name")
                          : NoUser(user.name));
  }
  const std::string hash = HashPassword(user.password);
  if (hash.empty()) sql_.Fail(Ora(988, "the password cannot be hashed on this system"));
  if (user.create) {
    sql_.Run("INSERT INTO qm_user(name, password, created) VALUES(?, ?, ?)", user.name, hash,
             context_.now.Canonical(Kind::Date));
  } else {
    sql_.Run("UPDATE qm_user SET password = ? WHERE name = ?", hash, user.name);
  }
}

void DdlExecutor::DropUser(const std::string& name, bool cascade) {
  if (!dba_ || name == "SYS" || name == "SYSTEM") sql_.Fail(Ora(1031));
  if (!UserExists(name)) sql_.Fail(NoUser(name));
  for (const std::int64_t id : sql_.Ints("SELECT id FROM qm_table WHERE owner = ?", name)) {
    if (!cascade) sql_.Fail({1922, "CASCADE must be specified to drop '" + name + "'"});
    if (const TablePtr table = Reload(id)) DropTable(*table, true);
  }
  sql_.Run("DELETE FROM qm_user WHERE name = ?", name);
}

}  // namespace quillmere::sandbox
