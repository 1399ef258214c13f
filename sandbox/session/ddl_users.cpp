#include <algorithm>
#include <initializer_list>

#include "sandbox/session/ddl.h"
#include "sandbox/store/password_hash.h"
#include "sandbox/store/run_sql.h"

namespace quillmere::sandbox {

Status DdlExecutor::UserExists(const std::string& name, bool* out) {
  std::optional<std::int64_t> found;
  Status status = QueryInt(writer_, &found, "SELECT 1 FROM qm_user WHERE name = ?", name);
  *out = found.has_value();
  return status;
}

Status DdlExecutor::ChangeUser(const UserStatement& user) {
  const bool own = user.name == context_.user && !user.create;
  if (!own && !may_("", "", user.create ? "CREATE USER" : "ALTER USER")) return Ora(1031);
  bool exists = false;
  if (Status status = UserExists(user.name, &exists); !status.ok()) return status;
  if (user.create && exists) {
    return {1920, "user name '" + user.name + "' conflicts with another user or role name"};
  }
  if (!user.create && !exists) return {1918, "user '" + user.name + "' does not exist"};
  if (!user.password) return {};
  const std::string hash = HashPassword(*user.password);
  if (hash.empty()) return Ora(988, "the password cannot be hashed on this system");
  if (!user.create) {
    return RunSql(writer_, "UPDATE qm_user SET password = ? WHERE name = ?", hash, user.name);
  }
  return RunSql(writer_, "INSERT INTO qm_user(name, password, created) VALUES(?, ?, ?)", user.name,
                hash, context_.now.DateText());
}

Status DdlExecutor::DropUser(const std::string& name, bool cascade) {
  if (!may_("", "", "DROP USER")) return Ora(1031);
  bool exists = false;
  if (Status status = UserExists(name, &exists); !status.ok()) return status;
  if (!exists) return {1918, "user '" + name + "' does not exist"};
  if (name == "SYS" || name == "SYSTEM") return Ora(1031);
  std::vector<std::int64_t> tables;
  Status status = QueryInts(writer_, &tables, "SELECT id FROM qm_table WHERE owner = ?", name);
  if (!status.ok()) return status;
  if (!tables.empty() && !cascade) {
    return {1922, "CASCADE must be specified to drop '" + name + "'"};
  }
  for (const std::int64_t id : tables) {
    TablePtr table;
    status = catalog_.FindTableById(writer_, id, &table);
    if (status.ok()) status = DropTable(*table, true);
    if (!status.ok()) return status;
  }
  status = RunSql(writer_, "DELETE FROM qm_grant WHERE grantee = ?", name);
  if (status.ok()) status = RunSql(writer_, "DELETE FROM qm_user WHERE name = ?", name);
  return status;
}

namespace {

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
  if (privilege.find(' ') != std::string::npos) return {};
  const bool known =
      IsOneOf(privilege, {"CONNECT", "RESOURCE", "DBA", "SYSDBA", "SELECT_CATALOG_ROLE",
                          "EXECUTE_CATALOG_ROLE", "LOGMINING"});
  return known ? Status() : Status(1919, "role '" + privilege + "' does not exist");
}

}  // namespace

Status DdlExecutor::ChangeGrant(const GrantStatement& grant) {
  std::string owner;
  std::string object;
  if (grant.object) {
    TablePtr table;
    if (Status status = FindTable(*grant.object, "GRANT ANY OBJECT PRIVILEGE", &table);
        !status.ok()) {
      return status;
    }
    owner = table->owner;
    object = table->name;
  } else if (!may_("", "", "GRANT ANY PRIVILEGE")) {
    return Ora(1031);
  }
  for (const std::string& privilege : grant.privileges) {
    if (Status status = CheckPrivilege(privilege, grant.object.has_value()); !status.ok()) {
      return status;
    }
  }
  for (const std::string& grantee : grant.grantees) {
    bool exists = grantee == "PUBLIC";
    if (!exists) {
      if (Status status = UserExists(grantee, &exists); !status.ok()) return status;
    }
    if (!exists) return {1917, "user or role '" + grantee + "' does not exist"};
    for (const std::string& privilege : grant.privileges) {
      Status status =
          grant.revoke
              ? RunSql(writer_,
                       "DELETE FROM qm_grant WHERE grantee = ? AND privilege = ? AND owner = ?"
                       " AND object = ?",
                       grantee, privilege, owner, object)
              : RunSql(writer_, "INSERT OR IGNORE INTO qm_grant VALUES(?, ?, ?, ?)", grantee,
                       privilege, owner, object);
      if (!status.ok()) return status;
      if (!grant.revoke || writer_->Changes() > 0) continue;
      if (object.empty()) return {1952, "system privileges not granted to '" + grantee + "'"};
      return Ora(1927);
    }
  }
  return {};
}

}  // namespace quillmere::sandbox
