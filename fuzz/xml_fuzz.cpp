// SPDX-License-Identifier: MIT
// Any text as a configuration file; and any texts in a tree, which is written so that it reads back
// the same.
#include <string>
#include <string_view>

#include "foundation/text.h"
#include "foundation/xml_document.h"
#include "must.h"

using namespace quillmere;

namespace {

void ReadsAnything(std::string_view text) {
  XmlDocument document;
  const bool whole = document.Parse(text);
  MUST(whole == document.Message().empty());
  const std::string written = document.Text();
  XmlDocument again;
  if (again.Parse(written)) MUST(again.Text().size() <= written.size());
}

// What the dialect keeps: no carriage returns and tabs, lines that are not empty and neither begin
// nor end with a blank, short enough to stand in the file's line.
std::string Kept(std::string_view text) {
  std::string kept;
  while (!text.empty()) {
    const std::string_view whole = text.substr(0, text.find('\v'));
    text.remove_prefix(std::min(text.size(), whole.size() + 1));
    std::string line;
    for (const char c : whole.substr(0, 400)) {
      if (c != '\r' && c != '\t' && c != '\0') line += c;
    }
    const std::string_view trimmed = TrimRight(TrimLeft(line, " "), " ");
    if (!trimmed.empty()) kept += (kept.empty() ? "" : "\n") + std::string(trimmed);
  }
  return kept;
}

// A line each: "+" goes into a new element, "-" out of it, all else is a leaf, "\v" its line feeds.
void Build(XmlNode& into, std::string_view& lines, int depth) {
  while (!lines.empty()) {
    const std::string_view line = lines.substr(0, lines.find('\n'));
    lines.remove_prefix(std::min(lines.size(), line.size() + 1));
    if (line == "-" && depth > 0) return;
    if (line == "+" && depth < 40) {
      XmlNode& child = into.AddChild("element");
      child.AddNumber("depth", depth);
      Build(child, lines, depth + 1);
    } else if (const std::string text = Kept(line); !text.empty()) {
      into.AddChild("leaf", text);
    }
  }
}

bool AreEqual(const XmlNode& a, const XmlNode& b) {
  const XmlNode *left = a.FirstChild(), *right = b.FirstChild();
  for (; left != nullptr && right != nullptr;
       left = left->NextSibling(), right = right->NextSibling()) {
    if (left->Name() != right->Name() || left->Data() != right->Data() || !AreEqual(*left, *right))
      return false;
  }
  return left == right;
}

void ReadsBack(std::string_view lines) {
  XmlDocument built, read;
  Build(built.Root(), lines, 0);
  MUST(read.Parse(built.Text()));
  MUST(AreEqual(built.Root(), read.Root()));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size) {
  const std::string_view text(reinterpret_cast<const char*>(data), size);
  ReadsAnything(text);
  ReadsBack(text);
  return 0;
}
