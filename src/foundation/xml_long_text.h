// SPDX-License-Identifier: MIT
// Texts of any length and with any bytes as elements of the dialect: a long one is several, and
// what the dialect would lose stands as "%20". Any thread.
#pragma once

#include <string>
#include <string_view>

#include "foundation/xml_document.h"

namespace quillmere {

// The empty text is no element.
void AddLongText(XmlNode& node, std::string_view name, std::string_view text);
std::string LongTextOf(const XmlNode& node, std::string_view name);

}  // namespace quillmere
