// SPDX-License-Identifier: MIT
// Between the bytes of the core and the characters of the widgets. Any thread, but for what takes a
// widget.
#pragma once

#include <QString>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

class QLineEdit;

namespace quillmere {

// What is no UTF-8 is shown as replacement characters.
QString ToQt(std::string_view bytes);
std::string ToBytes(const QString& text);

// For a single line: control characters, line ends among them, are shown as blanks.
QString OneLine(std::string_view bytes);

// No more of a text than a cell shows, on one line; what is left out, three dots say.
QString Beginning(std::string_view bytes, std::size_t most);

// What the operator entered, in bytes. A field that still shows `original` gives the original back
// byte for byte, also where it is no UTF-8.
std::string EditedText(const QLineEdit& field, std::string_view original);

// With its thousands separated, as the language of the window does it.
QString Grouped(std::int64_t number);

// "2026-01-31 23:59:07" as the language of the window writes it; empty when it is no such time.
QString Dated(std::string_view readable_time);

// For the %n of tr(), which counts with an int: what is above counts as many.
int Plural(std::size_t count);

// A word or sentence of the core that the window shows at a place of its own (a state, a heading),
// in the language of the window; as it is when it has none there.
QString Translated(std::string_view text);

}  // namespace quillmere
