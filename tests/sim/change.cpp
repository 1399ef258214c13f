// SPDX-License-Identifier: MIT
#include "sim/change.h"

#include <iterator>

namespace quillmere::sim {
namespace {

// Of the operations above Update.
constexpr std::string_view kNoStatements[] = {"declare l clob; begin dbms_lob.write(l, 1); end;",
                                              "Unsupported",
                                              "/* No SQL_REDO for temporary tables */"};

std::string Quoted(std::int64_t number) {
  return "'" + std::to_string(number) + "'";
}

std::int64_t Value(const Change& change) {
  return change.undo ? change.old : change.id;
}

std::string QuotedNote(const Change& change) {
  std::string quoted = "'";
  for (const char c : Note(Value(change), change.note)) quoted.append(c == '\'' ? 2 : 1, c);
  return quoted + "'";
}

}  // namespace

std::string Transaction::Xid() const {
  const std::size_t of = number - container;  // that of the one before, which lives elsewhere
  return std::to_string(of % 10 + 1) + '.' + std::to_string(of / 10 % 32) + '.' +
         std::to_string(of / 320 + 1);
}

std::vector<Arrival> Transaction::Arrivals() const {
  std::vector<Arrival> arrivals;
  for (const std::uint32_t index : live) {
    if (changes[index].operation <= Operation::Update) arrivals.emplace_back(changes[index]);
  }
  return arrivals;
}

std::string RowAddress(const Change& change) {
  std::string address = "AAAR0aAAEAAAAAAAAA";
  address[5] = static_cast<char>(address[5] + change.table);
  std::size_t place = address.size();
  for (std::uint32_t row = change.row; row != 0; row /= 26) {
    address[--place] = static_cast<char>('A' + row % 26);
  }
  return address;
}

std::string Note(std::int64_t id, std::size_t characters) {
  static constexpr std::string_view kPieces[] = {"a", "'", ";", "\n", "é", "-", "/", "*", "\""};
  std::string note;
  for (auto piece = static_cast<std::size_t>(id); characters-- != 0; ++piece) {
    note += kPieces[piece % std::size(kPieces)];
  }
  return note;
}

std::string Redo(const Change& change) {
  if (change.operation > Operation::Update) {
    return std::string(kNoStatements[static_cast<std::size_t>(change.operation) - 3]);
  }
  const std::string id = Quoted(change.row);
  const std::string value = Quoted(Value(change));
  std::string text = change.operation == Operation::Insert   ? "insert into \"SHOP\".\""
                     : change.operation == Operation::Update ? "update \"SHOP\".\""
                                                             : "delete from \"SHOP\".\"";
  text.append(kTables[change.table]).append("\"");
  if (change.operation == Operation::Insert) {
    if (change.note == 0) return text + "(\"ID\",\"V\") values (" + id + "," + value + ");";
    text += "(\"ID\",\"V\",\"NOTE\") values (" + id + "," + value;
    return text + "," + QuotedNote(change) + ");";
  }
  if (change.operation == Operation::Update) text += " set \"V\" = " + value;
  if (change.note != 0) text += ", \"NOTE\" = " + QuotedNote(change);
  text += " where ";
  // An undo row finds its row by the address alone.
  if (!change.undo) text += "\"ID\" = " + id + " and \"V\" = " + Quoted(change.old) + " and ";
  return text + "ROWID = '" + RowAddress(change) + "';";
}

}  // namespace quillmere::sim
