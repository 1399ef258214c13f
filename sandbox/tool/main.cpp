// SPDX-License-Identifier: MIT
// quillmere-sandbox: makes sandbox databases, runs SQL on them and compares them.
#include <CLI/CLI.hpp>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>

#include "foundation/version.h"
#include "sandbox/store/sql_runner.h"
#include "sandbox/tool/compare.h"
#include "sandbox/tool/script.h"
#include "sandbox/values/text.h"

namespace quillmere::sandbox {

namespace {

constexpr int kDone = 0;
constexpr int kFailed = 1;
constexpr int kWrongUsage = 2;

struct Arguments {
  std::string workdir = ".";
  std::string name;
  std::string other;
  std::string file;
  std::string owner;
  std::vector<std::string> excluded;
  std::vector<std::string> mapped;

  // As the library and the other programs find it.
  std::string Directory() const {
    const char* const named = std::getenv("QUILLMERE_SANDBOX_DIR");
    return named != nullptr && *named != 0 ? named
                                           : (std::filesystem::path(workdir) / "sandbox").string();
  }
};

int Fail(const std::string& reason, int code = kFailed) {
  std::cerr << "quillmere-sandbox: " << reason << '\n';
  return code;
}

// False, with the reason told, for what can be no database.
bool Find(const Arguments& arguments, const std::string& name, DatabasePath* path) {
  if (FindDatabasePath(arguments.Directory(), name, path)) return true;
  Fail("'" + name + "' cannot be the name of a database");
  return false;
}

int Create(const Arguments& arguments) {
  std::string password = "sandbox";
  if (!arguments.file.empty()) {
    std::ifstream file(arguments.file, std::ios::binary);
    password.clear();
    if (!file || !std::getline(file, password)) return Fail("cannot read " + arguments.file);
    password = password.substr(0, password.find('\r'));
    if (password.empty()) return Fail(arguments.file + " holds no password in its first line");
  }
  DatabasePath path;
  if (!Find(arguments, arguments.name, &path)) return kWrongUsage;
  if (Status status = CreateDatabase(path, password); !status.ok()) return Fail(status.Text());
  std::cout << "Database " << arguments.name << " made: " << path.file.string()
            << "\nUsers SYS (log on AS SYSDBA) and SYSTEM have "
            << (arguments.file.empty() ? "the password 'sandbox'."
                                       : "the password of " + arguments.file + ".")
            << '\n';
  return kDone;
}

int RunSqlCommand(const Arguments& arguments) {
  std::ifstream file;
  const bool from_file = !arguments.file.empty() && arguments.file != "-";
  if (from_file) file.open(arguments.file, std::ios::binary);
  if (!file) return Fail("cannot read " + arguments.file);
  std::istream& script = from_file ? file : std::cin;
  const bool done = RunScript(arguments.Directory(), arguments.name, script, std::cout, std::cerr);
  return done ? kDone : kFailed;
}

// OWNER.TABLE in upper case, as the dictionary has it; empty when it is no such pair.
std::string FullName(const std::string& text) {
  const std::size_t dot = text.find('.');
  const bool pair = dot != std::string::npos && dot > 0 && dot + 1 < text.size();
  return pair ? Upper(text) : std::string();
}

int Compare(const Arguments& arguments) {
  CompareOptions options;
  options.owner = Upper(arguments.owner);
  for (const std::string& text : arguments.excluded) {
    if (FullName(text).empty())
      return Fail("--exclude wants OWNER.TABLE, not " + text, kWrongUsage);
    options.excluded.insert(FullName(text));
  }
  for (const std::string& text : arguments.mapped) {
    const std::size_t equals = text.find('=');
    const std::string from = FullName(text.substr(0, equals));
    const std::string to = equals == std::string::npos ? "" : FullName(text.substr(equals + 1));
    if (from.empty() || to.empty()) {
      return Fail("--map wants OWNER.TABLE=OWNER2.TABLE, not " + text, kWrongUsage);
    }
    options.mapped[from] = to;
  }
  DatabasePath first;
  DatabasePath second;
  if (!Find(arguments, arguments.name, &first) || !Find(arguments, arguments.other, &second)) {
    return kWrongUsage;
  }
  std::size_t differences = 0;
  Status status = CompareDatabases(first, second, options, std::cout, &differences);
  if (!status.ok()) return Fail(status.Text(), kWrongUsage);
  if (differences == 0) std::cout << "identical\n";
  return differences == 0 ? kDone : kFailed;
}

int Scn(const Arguments& arguments) {
  DatabasePath path;
  std::unique_ptr<SqliteConnection> connection;
  if (!Find(arguments, arguments.name, &path)) return kFailed;
  if (Status status = OpenDatabase(path, &connection); !status.ok()) return Fail(status.Text());
  SqlRunner sql(connection.get());
  const auto scn = sql.Int("SELECT scn FROM qm_meta WHERE id = 1");
  if (!scn) return Fail(sql.status().Text());
  std::cout << *scn << '\n';
  return kDone;
}

int Main(int argc, char** argv) {
  Arguments arguments;
  CLI::App app("Makes sandbox databases, runs SQL on them and compares them.", "quillmere-sandbox");
  app.set_version_flag("--version", std::string("quillmere-sandbox ") + ProgramVersion());
  app.require_subcommand(1);
  app.add_option("--workdir", arguments.workdir,
                 "databases are in DIR/sandbox, or in $QUILLMERE_SANDBOX_DIR (default: .)");
  int (*command)(const Arguments&) = nullptr;
  const auto add = [&](const char* name, const char* help, int (*function)(const Arguments&)) {
    CLI::App* sub = app.add_subcommand(name, help);
    sub->add_option("NAME", arguments.name, "database")->required();
    sub->callback([&command, function] { command = function; });
    return sub;
  };
  add("create", "make a database with the users SYS and SYSTEM", Create)
      ->add_option("--password-file", arguments.file, "first line: the password of both users");
  add("sql", "run statements as SYS, each ended by ; at a line's end", RunSqlCommand)
      ->add_option("FILE", arguments.file, "default: standard input");
  CLI::App* diff = add("diff", "compare the tables and rows of two databases", Compare);
  diff->add_option("OTHER", arguments.other, "second database")->required();
  diff->add_option("OWNER", arguments.owner, "this owner only");
  diff->add_option("--exclude", arguments.excluded, "OWNER.TABLE to leave out")
      ->expected(1)
      ->take_all();
  diff->add_option("--map", arguments.mapped, "OWNER.TABLE=OWNER2.TABLE of the second database")
      ->expected(1)
      ->take_all();
  add("scn", "print the SCN of the last commit", Scn);
  try {
    app.parse(argc, argv);
  } catch (const CLI::Success& asked) {  // --help, --version
    return app.exit(asked);
  } catch (const CLI::ParseError& error) {
    return Fail(error.what(), kWrongUsage);
  }
  return command(arguments);
}

}  // namespace
}  // namespace quillmere::sandbox

int main(int argc, char** argv) {
  try {
    return quillmere::sandbox::Main(argc, argv);
  } catch (const std::exception& error) {
    std::cerr << "quillmere-sandbox: " << error.what() << '\n';
    return 1;
  }
}
