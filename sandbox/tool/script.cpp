#include "sandbox/tool/script.h"

#include <algorithm>
#include <cctype>
#include <ostream>

#include "sandbox/session/session.h"
#include "sandbox/values/text.h"

namespace quillmere::sandbox {

namespace {

bool IsBlank(char c) {
  return std::isspace(static_cast<unsigned char>(c)) != 0;
}

// Where the piece that begins at `at` ends: a literal, a quoted name, a comment or one character.
std::size_t EndOfPiece(std::string_view script, std::size_t at) {
  const auto behind = [&](std::string_view end, std::size_t from) {
    const std::size_t found = script.find(end, from);
    return found == std::string_view::npos ? script.size() : found + end.size();
  };
  if (script[at] == '\'') return behind("'", at + 1);
  if (script[at] == '"') return behind("\"", at + 1);
  if (script.substr(at, 2) == "--") return std::min(script.find('\n', at), script.size());
  if (script.substr(at, 2) == "/*") return behind("*/", at + 2);
  return at + 1;
}

// Whether nothing but blanks and a comment follow on the line.
bool AtLineEnd(std::string_view script, std::size_t at) {
  while (at < script.size() && script[at] != '\n') {
    if (script.substr(at, 2) == "--") return true;
    if (!IsBlank(script[at])) return false;
    ++at;
  }
  return true;
}

bool IsBlock(std::string_view text) {
  return Upper(text.substr(0, 5)) == "BEGIN" && (text.size() == 5 || IsBlank(text[5]));
}

std::string_view Trimmed(std::string_view text) {
  while (!text.empty() && IsBlank(text.front())) text.remove_prefix(1);
  while (!text.empty() && IsBlank(text.back())) text.remove_suffix(1);
  return text;
}

// Comments in front of a statement are none of it.
std::size_t SkipToStatement(std::string_view script, std::size_t at, std::size_t end) {
  while (at < end) {
    if (IsBlank(script[at])) {
      ++at;
    } else if (script.substr(at, 2) == "--" || script.substr(at, 2) == "/*") {
      at = EndOfPiece(script, at);
    } else {
      break;
    }
  }
  return std::min(at, end);
}

void Add(std::string_view script, std::size_t begin, std::size_t end,
         std::vector<ScriptStatement>* out) {
  begin = SkipToStatement(script, begin, end);
  const std::string_view text = Trimmed(script.substr(begin, end - begin));
  if (text.empty()) return;
  const auto line = 1 + std::count(script.begin(), script.begin() + static_cast<long>(begin), '\n');
  std::string statement(text);
  if (IsBlock(text)) statement += ';';
  out->push_back({std::move(statement), static_cast<std::size_t>(line)});
}

void PrintRows(Cursor* cursor, std::ostream& out, Status* status) {
  for (std::size_t i = 0; i < cursor->columns().size(); ++i) {
    out << (i == 0 ? "" : "\t") << cursor->columns()[i].name;
  }
  out << '\n';
  DisplayRow row;
  bool found = false;
  std::size_t count = 0;
  while ((*status = cursor->Next(&row, &found)).ok() && found) {
    ++count;
    for (std::size_t i = 0; i < row.size(); ++i) {
      out << (i == 0 ? "" : "\t") << row[i].value_or("(null)");
    }
    out << '\n';
  }
  if (status->ok()) out << count << (count == 1 ? " row\n" : " rows\n");
}

}  // namespace

std::vector<ScriptStatement> SplitScript(std::string_view script) {
  std::vector<ScriptStatement> statements;
  std::size_t begin = 0;
  for (std::size_t at = 0; at < script.size(); at = EndOfPiece(script, at)) {
    if (script[at] == ';' && AtLineEnd(script, at + 1)) {
      Add(script, begin, at, &statements);
      begin = at + 1;
    }
  }
  Add(script, begin, script.size(), &statements);
  return statements;
}

bool RunScript(const std::string& directory, const std::string& name, std::string_view script,
               std::ostream& out, std::ostream& err) {
  DatabasePath path;
  std::shared_ptr<Link> link;
  std::unique_ptr<Session> session;
  Status status =
      FindDatabasePath(directory, name, &path) ? Link::AttachFile(path, &link) : Ora(12154);
  LogOn log_on;
  log_on.user = "SYS";
  log_on.sysdba = true;
  log_on.trusted = true;
  if (status.ok()) status = Session::Open(link, log_on, &session);
  if (!status.ok()) {
    err << name << ": " << status.Text() << '\n';
    return false;
  }
  std::int64_t changed = 0;
  std::size_t done = 0;
  for (const ScriptStatement& statement : SplitScript(script)) {
    StatementResult result;
    status = link->RoundTrip();
    if (status.ok()) status = session->Execute(statement.text, &result);
    if (status.ok() && result.cursor) PrintRows(result.cursor.get(), out, &status);
    if (!status.ok()) {
      const bool open = session->InTransaction();
      session->Rollback();
      err << name << ": line " << statement.line << ": " << status.Text() << "\n  "
          << Shortened(statement.text, 200) << '\n';
      if (open) err << "  The open transaction was rolled back.\n";
      return false;
    }
    changed += result.rows;
    ++done;
  }
  if (status = session->Commit(); !status.ok()) {
    err << name << ": commit: " << status.Text() << '\n';
    return false;
  }
  out << done << " statements, " << changed << " rows changed, committed\n";
  return true;
}

}  // namespace quillmere::sandbox
