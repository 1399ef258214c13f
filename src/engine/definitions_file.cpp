// SPDX-License-Identifier: MIT
#include "engine/definitions_file.h"

#include <array>
#include <optional>

#include "foundation/text.h"
#include "foundation/xml_long_text.h"

namespace quillmere {
namespace {

constexpr char kBetween = '\x1f';  // no name has it

// A column is one text: there may be a hundred thousand of them.
std::string ColumnText(const TableColumn& column) {
  std::string text;
  for (const std::string& field :
       {column.name, column.type, column.type_owner, std::to_string(column.length),
        std::to_string(column.precision), std::to_string(column.scale),
        std::string(column.nullable ? "Y" : "N"), std::string(column.has_default ? "Y" : "N")}) {
    if (!text.empty()) text += kBetween;
    text += field;
  }
  return text;
}

std::optional<TableColumn> ReadColumn(std::string_view text) {
  std::array<std::string_view, 8> fields;
  for (std::size_t i = 0; i < fields.size(); ++i) {
    const std::size_t end = text.find(kBetween);
    if ((end == std::string_view::npos) != (i + 1 == fields.size())) return std::nullopt;
    fields[i] = text.substr(0, end);
    text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
  }
  TableColumn column{std::string(fields[0]), std::string(fields[1]), std::string(fields[2])};
  column.nullable = fields[6] == "Y";
  column.has_default = fields[7] == "Y";
  if (!ParseNumber(fields[3], column.length) || !ParseNumber(fields[4], column.precision) ||
      !ParseNumber(fields[5], column.scale)) {
    return std::nullopt;
  }
  return column;
}

bool ReadTable(const XmlNode& node, Definitions& definitions) {
  std::vector<TableColumn>& columns =
      definitions.source[{LongTextOf(node, "owner"), LongTextOf(node, "name")}];
  std::vector<const XmlNode*> texts;
  node.Children("column", texts);
  for (const XmlNode* text : texts) {
    std::optional<TableColumn> column = ReadColumn(LongTextOf(*text, "is"));
    if (!column) return false;
    columns.push_back(std::move(*column));
  }
  return true;
}

bool ReadDefinitions(const XmlNode& node, Definitions& definitions) {
  definitions.carried = LongTextOf(node, "carried");
  definitions.source_newest = LongTextOf(node, "source_newest");
  definitions.destination_newest = LongTextOf(node, "destination_newest");
  std::vector<const XmlNode*> nodes;
  node.Children("table", nodes);
  for (const XmlNode* table : nodes) {
    if (!ReadTable(*table, definitions)) return false;
  }
  nodes.clear();
  node.Children("difference", nodes);
  for (const XmlNode* one : nodes) {
    definitions.differences.push_back({LongTextOf(*one, "owner"), LongTextOf(*one, "table"),
                                       LongTextOf(*one, "column"), LongTextOf(*one, "what"),
                                       LongTextOf(*one, "cure")});
  }
  return true;
}

}  // namespace

bool WriteDefinitionsFile(FileSystem& files, const JobFolder& folder,
                          const Definitions& definitions, std::string& error) {
  XmlDocument document;
  XmlNode& node = document.Root().AddChild("definitions");
  AddLongText(node, "carried", definitions.carried);
  AddLongText(node, "source_newest", definitions.source_newest);
  AddLongText(node, "destination_newest", definitions.destination_newest);
  for (const DefinitionDifference& one : definitions.differences) {
    XmlNode& difference = node.AddChild("difference");
    AddLongText(difference, "owner", one.owner);
    AddLongText(difference, "table", one.table);
    AddLongText(difference, "column", one.column);
    AddLongText(difference, "what", one.what);
    AddLongText(difference, "cure", one.cure);
  }
  for (const auto& [name, columns] : definitions.source) {
    XmlNode& table = node.AddChild("table");
    AddLongText(table, "owner", name.first);
    AddLongText(table, "name", name.second);
    for (const TableColumn& column : columns) {
      AddLongText(table.AddChild("column"), "is", ColumnText(column));
    }
  }
  std::string text;
  if (!document.WriteText(text)) {
    error =
        "Can not create " + PathText(folder.File(JobFile::Definitions)) + ": it would be too large";
    return false;
  }
  return folder.Make(files, error) && ReplaceTextFile(files, folder.File(JobFile::Definitions),
                                                      text, FileAccess::Everyone, error);
}

FileStatus ReadDefinitionsFile(FileSystem& files, const JobFolder& folder,
                               Definitions& definitions) {
  const std::filesystem::path path = folder.File(JobFile::Definitions);
  std::string text;
  FileStatus status = ReadFile(files, path, text);
  if (!status) return status;
  XmlDocument document;
  const XmlNode* const node = document.Parse(text) ? document.Root().Child("definitions") : nullptr;
  Definitions read;
  if (node == nullptr || !ReadDefinitions(*node, read)) {
    return {FileCode::Damaged, PathText(path) + " is damaged"};
  }
  definitions = std::move(read);
  return {};
}

}  // namespace quillmere
