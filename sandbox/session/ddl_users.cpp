// SPDX-License-Identifier: MIT
#include <algorithm>
#include <initializer_list>

#include "sandbox/session/ddl.h"
#include "sandbox/store/platform.h"

namespace quillmere::sandbox {

namespace {

Status NoUser(const std::string& name) {
  return {1918, "user '" + name + "' does not exist"};
}

bool IsOneOf(const std::string& word, std::initializer_list<std::string_view> words) {
  return std::find(words.begin(), words.end(), word) != words.end();
}

// System privileges are several words; a single one is a role.
Status CheckPrivilege(const std::string& privilege, bool on_object) {
  if (on_object) {
    const bool known = IsOneOf(privilege, {"SELECT", "INSERT", "UPDATE", "DELETE", "REFERENCES",
                                           "INDEX", "ALTER", "ALL", "ALL PRIVILEGES"});
    return known ? Status() : Ora(990, privilege);
  }
  const bool known =
      privilege.find(' ') != std::string::npos ||
      IsOneOf(privilege, {"CONNECT", "RESOURCE", "DBA", "SYSDBA", "SELECT_CATALOG_ROLE",
                          "EXECUTE_CATALOG_ROLE", "LOGMINING"});
  return known ? Status() : Status(1919, "role '" + privilege + "' does not exist");
}

}  // namespace

bool DdlExecutor::UserExists(const std::string& name) {
  return sql_.Int("SELECT 1 FROM qm_user WHERE name = ?", name).has_value();
}

void DdlExecutor::ChangeUser(const UserStatement& user) {
  const bool own = user.name == context_.user && !user.create;
  if (!own && !may_("", "", user.create ? "CREATE USER" : "ALTER USER")) sql_.Fail(Ora(1031));
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
  if (!may_("", "", "DROP USER") || IsOneOf(name, {"SYS", "SYSTEM"})) sql_.Fail(Ora(1031));
  if (!UserExists(name)) sql_.Fail(NoUser(name));
  for (const std::int64_t id : sql_.Ints("SELECT id FROM qm_table WHERE owner = ?", name)) {
    if (!cascade) sql_.Fail({1922, "CASCADE must be specified to drop '" + name + "'"});
    if (const TablePtr table = Reload(id)) DropTable(*table, true);
  }
  sql_.Run("DELETE FROM qm_grant WHERE grantee = ?", name);
  sql_.Run("DELETE FROM qm_user WHERE name = ?", name);
}

void DdlExecutor::ChangeGrant(const GrantStatement& grant) {
  ObjectName on;
  if (grant.object) {
    const TablePtr table = FindTable(*grant.object, "GRANT ANY OBJECT PRIVILEGE");
    if (!table) return;
    on = {table->owner, table->name};
  } else if (!may_("", "", "GRANT ANY PRIVILEGE")) {
    sql_.Fail(Ora(1031));
  }
  for (const std::string& privilege : grant.privileges) {
    sql_.Fail(CheckPrivilege(privilege, grant.object.has_value()));
  }
  for (const std::string& grantee : grant.grantees) {
    if (grantee != "PUBLIC" && !UserExists(grantee)) {
      sql_.Fail({1917, "user or role '" + grantee + "' does not exist"});
    }
    for (const std::string& privilege : grant.privileges) {
      if (!grant.revoke) {
        sql_.Run("INSERT OR IGNORE INTO qm_grant VALUES(?, ?, ?, ?)", grantee, privilege, on.owner,
                 on.name);
        continue;
      }
      sql_.Run(
          "DELETE FROM qm_grant WHERE grantee = ? AND privilege = ? AND owner = ? AND object = ?",
          grantee, privilege, on.owner, on.name);
      if (sql_.ok() && writer_->Changes() == 0) {
        sql_.Fail({1952, "privileges not granted to '" + grantee + "'"});
      }
    }
  }
}

}  // namespace quillmere::sandbox
