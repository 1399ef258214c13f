// SPDX-License-Identifier: MIT
#include "watch/advice.h"

#include <algorithm>
#include <array>

namespace quillmere {
namespace {

struct Advice {
  int ora;
  std::string_view text;
};

// In order of the number.
constexpr std::array kAdvice = {
    Advice{1,
           "The destination has a row with this key already: somebody else writes to the table, or "
           "it was not alike when the job was started. Compare the row on both sides; delete it on "
           "the destination and try again, or skip the statement."},
    Advice{28, "The session was ended by an administrator. Try again."},
    Advice{54,
           "The table is locked by another session of the destination. End that session, or try "
           "again when it has committed."},
    Advice{60, "The statement waited for a session that waited for it. Try again."},
    Advice{257,
           "The server can not archive its redo any more. Its administrator makes room in the "
           "recovery area; then it goes on by itself."},
    Advice{904,
           "A column is missing on the destination: the table was changed on the source. Add the "
           "column there and try again."},
    Advice{913, "The tables have other columns on the two sides. Make them alike and try again."},
    Advice{942,
           "The table is missing on the destination, or the user may not see it. Create it "
           "(migrate), grant the right, or exclude the table."},
    Advice{1017, "User or password is wrong. Give the data source the right ones."},
    Advice{1031,
           "The user lacks a right. Grant it on the destination, or on the source when the "
           "redo could not be read, and try again."},
    Advice{1291,
           "A redo log that the job needs is not there any more. Bring the archived logs back "
           "and try again; else compare the tables, stop the job and start it anew."},
    Advice{1400,
           "A column of the destination does not take an empty value and the source's does. "
           "Make the columns alike and try again."},
    Advice{1407,
           "A column of the destination does not take an empty value and the source's does. "
           "Make the columns alike and try again."},
    Advice{1438,
           "A number does not fit its column on the destination. Make the column wider and "
           "try again."},
    Advice{1536, "The quota of the owner on the destination is used up. Raise it and try again."},
    Advice{1653, "The tablespace of the destination is full. Add room and try again."},
    Advice{1654, "The tablespace of the destination is full. Add room and try again."},
    Advice{1950,
           "The owner has no quota on the tablespace of the destination. Grant one and try "
           "again."},
    Advice{2290,
           "A check constraint of the destination forbids the row. Make the constraints alike "
           "on both sides and try again, or skip the statement."},
    Advice{2291,
           "The row that this one refers to is missing on the destination: its table is not "
           "carried, or the order of the changes was lost. Bring the row and try again, or "
           "switch the foreign key off there."},
    Advice{2292,
           "Rows of the destination still refer to this one. Delete them or switch the foreign "
           "key off there, and try again."},
    Advice{3113,
           "The connection broke. It is tried again by itself; when it goes on, ask the "
           "server's administrator."},
    Advice{3114,
           "The connection broke. It is tried again by itself; when it goes on, ask the "
           "server's administrator."},
    Advice{3135,
           "The connection broke. It is tried again by itself; when it goes on, ask the "
           "server's administrator."},
    Advice{12154,
           "The connect name is not known here. Look at tnsnames.ora and at the name of the "
           "data source."},
    Advice{12514,
           "The listener does not know the database: it is down, or the connect name leads "
           "to the wrong service."},
    Advice{12541,
           "Nobody listens there: the server or its listener is down, or the connect name "
           "leads to the wrong place."},
    Advice{12899,
           "A text does not fit its column on the destination. Make the column wider and try "
           "again."},
};
static_assert(std::is_sorted(kAdvice.begin(), kAdvice.end(),
                             [](const Advice& a, const Advice& b) { return a.ora < b.ora; }));

}  // namespace

std::string_view AdviceFor(const JobProblem& problem) {
  const auto found = std::lower_bound(kAdvice.begin(), kAdvice.end(), problem.ora,
                                      [](const Advice& a, int ora) { return a.ora < ora; });
  if (found != kAdvice.end() && found->ora == problem.ora) return found->text;
  switch (problem.what.where) {
    case PassProblem::Where::Source:
      return "The source could not be read. It is tried again at each pass; what is to be mended "
             "is "
             "there.";
    case PassProblem::Where::Destination:
      return "The destination could not be written to. It is tried again at each pass; what is to "
             "be mended is there.";
    case PassProblem::Where::Disk:
      return "A file of the working folder could not be written. Make room, or look at its rights.";
    case PassProblem::Where::Statement:
      break;
  }
  return "Mend the cause on the destination and try again, skip the statement, or exclude the "
         "table.";
}

}  // namespace quillmere
