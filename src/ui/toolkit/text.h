// SPDX-License-Identifier: MIT
// Between the bytes of the core and the characters of the widgets. Any thread, but for what takes a
// widget.
#pragma once

#include <QString>
#include <string>
#include <string_view>

class QLineEdit;

namespace quillmere {

// What is no UTF-8 is shown as replacement characters.
QString ToQt(std::string_view bytes);
std::string ToBytes(const QString& text);

// For a single line: control characters, line ends among them, are shown as blanks.
QString OneLine(std::string_view bytes);

// What the operator entered, in bytes. A field that still shows `original` gives the original back
// byte for byte, also where it is no UTF-8.
std::string EditedText(const QLineEdit& field, std::string_view original);

// "1 table", "2,500 tables": count and noun, with the plural's s.
QString Counted(std::size_t count, const QString& noun);

}  // namespace quillmere
