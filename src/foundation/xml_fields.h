// SPDX-License-Identifier: MIT
// Reads the children of a record one after another, in the order in which they are written: no
// search as long as the file follows it, the first child of the name wherever it stands otherwise.
#pragma once

#include <string_view>

#include "foundation/xml_document.h"

namespace quillmere {

class XmlFields {
 public:
  explicit XmlFields(const XmlNode& record) : record_(record), next_(record.FirstChild()) {}

  std::string_view Text(std::string_view name, std::string_view fallback = {}) {
    const XmlNode* node = Find(name);
    return node == nullptr ? fallback : node->Data();
  }

  int Number(std::string_view name) {
    const XmlNode* node = Find(name);
    return node == nullptr ? 0 : node->Number();
  }

 private:
  const XmlNode* Find(std::string_view name) {
    if (next_ == nullptr || next_->Name() != name) return record_.Child(name);
    const XmlNode* found = next_;
    next_ = next_->NextSibling();
    return found;
  }

  const XmlNode& record_;
  const XmlNode* next_;
};

}  // namespace quillmere
