// SPDX-License-Identifier: MIT
#include "foundation/xml_document.h"

#include <new>

#include "foundation/xml_reader.h"
#include "foundation/xml_writer.h"

namespace quillmere {

struct XmlDocument::Storage {
  ByteArena arena;
  std::string text;  // what was read; names and data point into it
  XmlNode root{arena};
  std::string message;

  // What was read is about as long as what is written; a tree that was built takes more than its
  // text does.
  std::size_t ExpectedTextSize() const { return text.size() + arena.Footprint() / 2; }
};

XmlDocument::XmlDocument() : storage_(std::make_unique<Storage>()) {}
XmlDocument::~XmlDocument() = default;

XmlNode& XmlDocument::Root() {
  return storage_->root;
}
const XmlNode& XmlDocument::Root() const {
  return storage_->root;
}
const std::string& XmlDocument::Message() const {
  return storage_->message;
}

void XmlDocument::Clear() {
  storage_ = std::make_unique<Storage>();
}

FileStatus XmlDocument::Load(FileSystem& files, const std::filesystem::path& path) {
  Clear();
  FileStatus status = ReadFile(files, path, storage_->text);
  if (!status) {
    storage_->message = "Can not open " + PathText(path);
    return status;
  }
  if (XmlReader(storage_->root, storage_->text, storage_->message).Read()) return {};
  return {FileCode::Damaged, storage_->message};
}

bool XmlDocument::Parse(std::string_view text) {
  auto fresh = std::make_unique<Storage>();
  fresh->text = text;  // before the old tree goes: the text may be a part of it
  storage_ = std::move(fresh);
  return XmlReader(storage_->root, storage_->text, storage_->message).Read();
}

bool XmlDocument::Save(FileSystem& files, const std::filesystem::path& path) {
  XmlWriter writer;
  std::string reason;
  if (writer.Write(storage_->root, storage_->ExpectedTextSize()) &&
      ReplaceTextFile(files, path, writer.Text(), FileAccess::Everyone, reason)) {
    return true;
  }
  storage_->message = "Can not create " + PathText(path);
  return false;
}

std::string XmlDocument::Text() const {
  std::string text;
  WriteText(text);
  return text;
}

bool XmlDocument::WriteText(std::string& out) const {
  XmlWriter writer;
  out.clear();
  if (!writer.Write(storage_->root, storage_->ExpectedTextSize())) return false;
  out = writer.Text();
  return true;
}

}  // namespace quillmere
