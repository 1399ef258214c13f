// SPDX-License-Identifier: MIT
// The tree of the configuration dialect: elements and text, no attributes, no entities, no root
// element, a backslash before "<", ">" and "\". docs/file-formats.md describes the dialect.
#pragma once

#include <cstddef>
#include <filesystem>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "foundation/byte_arena.h"
#include "foundation/files.h"

namespace quillmere {

// One element. The document that made it owns it, its texts and its whole subtree, and destroys all
// of them together: nodes and the views they return live until the document is cleared or loaded.
// A node has either data or children.
class XmlNode {
 public:
  XmlNode(const XmlNode&) = delete;
  XmlNode& operator=(const XmlNode&) = delete;

  std::string_view Name() const { return name_; }
  std::string_view Data() const { return data_; }  // lines are separated by line feeds
  const XmlNode* FirstChild() const { return first_child_; }
  const XmlNode* NextSibling() const { return next_sibling_; }

  // Appends a child; name and data are copied.
  XmlNode& AddChild(std::string_view name, std::string_view data = {});
  // Appends a leaf whose data is the decimal number.
  XmlNode& AddNumber(std::string_view name, long long value);

  // The data of the first child of that name, or the fallback if there is none.
  std::string_view ChildValue(std::string_view name, std::string_view fallback = {}) const;
  // The data read as "%d" does; what is too large for an int is the nearest one that fits.
  int Number() const;
  // ... of the first child of that name; 0 when there is none.
  int ChildNumber(std::string_view name) const;

  // The first child of that name, or null.
  const XmlNode* Child(std::string_view name) const;

  // All children of that name in document order; the empty name selects all.
  void Children(std::string_view name, std::vector<const XmlNode*>& out) const;

 private:
  friend class XmlDocument;
  friend class XmlReader;
  explicit XmlNode(ByteArena& arena) : arena_(arena) {}

  // A child whose texts are not copied.
  XmlNode& Append(std::string_view name, std::string_view data);

  ByteArena& arena_;  // the document's; holds all nodes but the root
  std::string_view name_, data_;
  XmlNode* first_child_ = nullptr;
  XmlNode* last_child_ = nullptr;
  XmlNode* next_sibling_ = nullptr;
};

// A line of a file holds this many characters; the reader discards the rest of a longer one.
inline constexpr std::size_t kXmlLineLimit = 2048;

// Indentation grows with the depth, so a deep tree could make a text without measure: more bytes
// than this are not written.
inline constexpr std::size_t kXmlTextLimit = std::size_t{256} << 20;

// The value with a line feed put wherever one of its lines would be too long for the reader, which
// could not find the closing tag then. For free texts: all characters survive, except in a run of
// more than a hundred blanks.
std::string FoldForXml(std::string_view value);

// The unnamed root above the top-level elements of one file. One thread at a time.
class XmlDocument {
 public:
  XmlDocument();
  ~XmlDocument();

  XmlNode& Root();
  const XmlNode& Root() const;
  void Clear();

  // Replaces the tree by the file's. On failure Message() holds the reason and the tree what was
  // built up to the error; a file that was read but is wrong is Damaged.
  FileStatus Load(FileSystem& files, const std::filesystem::path& path);
  bool Parse(std::string_view text);

  // Replaces the file whole; on failure Message() is "Can not create " and the path.
  bool Save(FileSystem& files, const std::filesystem::path& path);
  // What Save would write; empty when that is more than kXmlTextLimit.
  std::string Text() const;
  // The same, but false when that is more than kXmlTextLimit.
  bool WriteText(std::string& out) const;

  const std::string& Message() const;

 private:
  struct Storage;
  std::unique_ptr<Storage> storage_;
};

}  // namespace quillmere
