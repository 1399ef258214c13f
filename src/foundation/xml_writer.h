// Turns a tree into the text of a configuration file. Inside of XmlDocument.
#pragma once

#include <cstddef>
#include <memory>
#include <string_view>

#include "foundation/xml_document.h"

namespace quillmere {

class XmlWriter {
 public:
  // False when the text would be larger than kXmlTextLimit. A good guess of its size spares moving
  // it to larger and larger buffers.
  bool Write(const XmlNode& root, std::size_t expected_size);

  // Lives as long as the writer.
  std::string_view Text() const { return {buffer_.get(), used_}; }

 private:
  bool Reserve(std::size_t bytes);
  bool WriteTagLine(std::string_view opening, std::string_view name, std::size_t depth);
  bool WriteLeaf(const XmlNode& node, std::size_t depth);
  bool WriteOneLine(const XmlNode& node, std::size_t depth);
  bool WriteTextLine(std::string_view line, std::size_t depth);
  void Put(std::string_view text);
  void PutBlanks(std::size_t count);
  void PutEscaped(std::string_view text);

  std::unique_ptr<char[]> buffer_;
  std::size_t used_ = 0;
  std::size_t size_ = 0;
};

}  // namespace quillmere
