// SPDX-License-Identifier: MIT
#include "sandbox/store/redo_logs.h"

namespace quillmere::sandbox {

namespace {

// On to the group that was written longest ago; what it held is forgotten unless it is archived.
void Switch(SqlRunner* sql, std::int64_t last_scn) {
  const auto sequence = sql->Int("SELECT max(sequence) FROM qm_log").value_or(0);
  const auto group = sql->Int(
      "SELECT grp FROM qm_online_log WHERE sequence IS NULL OR next_scn IS NOT NULL"
      " ORDER BY sequence NULLS FIRST, grp LIMIT 1");
  if (!group) sql->Fail(Ora(900, "SWITCH LOGFILE: there is one group only"));
  sql->Run("DELETE FROM qm_log WHERE grp = ? AND NOT (SELECT archive FROM qm_meta)", group);
  sql->Run("UPDATE qm_log SET next_scn = ? WHERE sequence = ?", last_scn + 1, sequence);
  sql->Run("INSERT INTO qm_log(sequence, grp, first_scn) VALUES(?, ?, ?)", sequence + 1, group,
           last_scn + 1);
  sql->Exec("UPDATE qm_meta SET log_bytes = 0");
  const auto oldest = sql->Int("SELECT min(first_scn) FROM qm_log");
  sql->Run("DELETE FROM qm_redo WHERE scn < ?", oldest);
  sql->Run("DELETE FROM qm_transaction WHERE commit_scn < ?", oldest);
}

}  // namespace

std::optional<RedoLog> FindRedoLog(SqlRunner* sql, const std::string& database,
                                   const std::string& name) {
  std::optional<RedoLog> found;
  sql->Each(
      "SELECT sequence, first_scn, ifnull(next_scn, 9223372036854775807) FROM qm_online_log"
      " WHERE ?1 || suffix = ?2 AND sequence UNION ALL SELECT sequence, first_scn, next_scn FROM "
      "qm_archived_log"
      " WHERE ?1 || suffix = ?2",
      [&found](const SqliteStatement& row) {
        found = RedoLog{row.Int(0), row.Int(1), row.Int(2)};
      },
      database, name);
  return found;
}

void AddToRedoLog(SqlRunner* sql, std::int64_t bytes, std::int64_t commit_scn) {
  sql->Run("UPDATE qm_meta SET log_bytes = log_bytes + ?", bytes);
  if (sql->Int("SELECT log_bytes >= log_size FROM qm_meta").value_or(0) != 0) {
    Switch(sql, commit_scn);
  }
}

void ChangeDatabase(SqlRunner* sql, const DatabaseChange& change, std::int64_t last_scn) {
  using Kind = DatabaseChange::Kind;
  const std::string group = std::to_string(change.group);
  const auto groups = sql->Int("SELECT max(grp) FROM qm_logfile").value_or(0);
  const auto members =
      sql->Int("SELECT count(*) FROM qm_logfile WHERE grp = ?", change.group).value_or(0);
  switch (change.kind) {
    case Kind::AddGroup:
      if (change.group != groups + 1) sql->Fail({1184, "logfile group " + group + " is not next"});
      sql->Run("INSERT INTO qm_logfile VALUES(?, ?)", change.group, ".redo" + group);
      return sql->Run("UPDATE qm_meta SET log_size = ?", change.size);
    case Kind::AddMember:
      if (members == 0) sql->Fail({1300, "logfile group " + group + " does not exist"});
      return sql->Run("INSERT INTO qm_logfile VALUES(?, ?)", change.group,
                      ".redo" + group + static_cast<char>('a' + members));
    case Kind::Archive:
      return sql->Run("UPDATE qm_meta SET archive = ?", change.on ? 1 : 0);
    case Kind::SwitchLog:
      return Switch(sql, last_scn);
    case Kind::Supplemental:
      return sql->Run("UPDATE qm_meta SET supplemental = ?", change.name);
    case Kind::CharacterSet:
      return sql->Run("UPDATE qm_meta SET charset = ?", change.name);
  }
}

}  // namespace quillmere::sandbox
