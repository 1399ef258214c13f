// SPDX-License-Identifier: MIT
// Turns a tree, or elements as they come, into the text of a configuration file. Large files are
// written without a tree in between.
#pragma once

#include <cstddef>
#include <memory>
#include <string_view>
#include <vector>

#include "foundation/xml_document.h"

namespace quillmere {

class XmlWriter {
 public:
  // False when the text would be larger than kXmlTextLimit. A good guess of its size spares moving
  // it to larger and larger buffers.
  bool Write(const XmlNode& root, std::size_t expected_size);

  // Elements one by one, as Write would write them from a tree: an element that is opened must get
  // a child before it is closed. A leaf without data is left out. name must outlive its Close.
  void Open(std::string_view name);
  void Leaf(std::string_view name, std::string_view data);
  void Number(std::string_view name, long long value);
  void Close();

  // False when the text has become larger than kXmlTextLimit; it is incomplete then.
  bool Ok() const { return ok_; }

  // Lives as long as the writer.
  std::string_view Text() const { return {buffer_.get(), used_}; }

 private:
  bool Reserve(std::size_t bytes);
  bool WriteTagLine(std::string_view opening, std::string_view name, std::size_t depth);
  bool WriteLeaf(std::string_view name, std::string_view data, std::size_t depth);
  bool WriteOneLine(std::string_view name, std::string_view data, std::size_t depth);
  bool WriteTextLine(std::string_view line, std::size_t depth);
  void Put(std::string_view text);
  void PutBlanks(std::size_t count);
  void PutEscaped(std::string_view text);

  std::unique_ptr<char[]> buffer_;
  std::size_t used_ = 0;
  std::size_t size_ = 0;
  std::vector<std::string_view> open_;
  bool ok_ = true;
};

}  // namespace quillmere
