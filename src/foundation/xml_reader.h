// SPDX-License-Identifier: MIT
// Turns the text of a configuration file into a tree. Inside of XmlDocument.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "foundation/xml_document.h"

namespace quillmere {

// Escapes are resolved in place, so text changes; the tree's views point into it. Open elements
// stand on a list and not on the call stack: no depth of nesting is too much.
class XmlReader {
 public:
  XmlReader(XmlNode& root, std::string& text, std::string& message)
      : text_(text), message_(message), open_{&root} {}

  // False: message holds the reason, the tree what was built up to it.
  bool Read();

 private:
  bool ReadLine(char* at, char* end);
  bool ReadLeaf(char* at, char* end);
  bool ReadTags(char* at, char* end);
  bool ReadTag(char*& at, char* end, bool& opened);
  bool OpenElement(std::string_view name);
  bool AddText(std::string_view text);
  bool Fail(std::string_view what);
  bool FailAt(std::string_view before, std::string_view name, std::string_view after);

  std::string& text_;
  std::string& message_;
  std::vector<XmlNode*> open_;  // from the root to the innermost element
  int line_ = 0;
};

}  // namespace quillmere
