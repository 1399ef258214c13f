// SPDX-License-Identifier: MIT
#include <charconv>
#include <limits>
#include <new>
#include <type_traits>

#include "foundation/xml_document.h"

namespace quillmere {

// A tree of any depth goes with its arena, without a walk.
static_assert(std::is_trivially_destructible_v<XmlNode>);

namespace {

// Reads as "%d" does; a number too large for an int is the nearest one that fits.
int ReadNumber(std::string_view text) {
  std::size_t at = 0;
  const auto is_blank = [](char c) { return c == ' ' || (c >= '\t' && c <= '\r'); };
  while (at < text.size() && is_blank(text[at])) ++at;
  const bool negative = at < text.size() && text[at] == '-';
  if (negative || (at < text.size() && text[at] == '+')) ++at;
  constexpr long long kLimit = std::numeric_limits<int>::max();
  long long value = 0;
  for (; at < text.size() && text[at] >= '0' && text[at] <= '9'; ++at) {
    if (value <= kLimit) value = value * 10 + (text[at] - '0');
  }
  if (value > kLimit) return negative ? std::numeric_limits<int>::min() : static_cast<int>(kLimit);
  return static_cast<int>(negative ? -value : value);
}

}  // namespace

XmlNode& XmlNode::Append(std::string_view name, std::string_view data) {
  void* memory = arena_.Allocate(sizeof(XmlNode), alignof(XmlNode));
  XmlNode* node = new (memory) XmlNode(arena_);
  node->name_ = name;
  node->data_ = data;
  (last_child_ == nullptr ? first_child_ : last_child_->next_sibling_) = node;
  last_child_ = node;
  return *node;
}

XmlNode& XmlNode::AddChild(std::string_view name, std::string_view data) {
  return Append(arena_.Copy(name), arena_.Copy(data));
}

XmlNode& XmlNode::AddNumber(std::string_view name, long long value) {
  char digits[24];
  const auto end = std::to_chars(digits, digits + sizeof digits, value).ptr;
  return AddChild(name, {digits, static_cast<std::size_t>(end - digits)});
}

const XmlNode* XmlNode::Child(std::string_view name) const {
  const XmlNode* child = first_child_;
  while (child != nullptr && child->name_ != name) child = child->next_sibling_;
  return child;
}

std::string_view XmlNode::ChildValue(std::string_view name, std::string_view fallback) const {
  const XmlNode* child = Child(name);
  return child == nullptr ? fallback : child->data_;
}

int XmlNode::Number() const {
  return ReadNumber(data_);
}

int XmlNode::ChildNumber(std::string_view name) const {
  const XmlNode* child = Child(name);
  return child == nullptr ? 0 : child->Number();
}

void XmlNode::Children(std::string_view name, std::vector<const XmlNode*>& out) const {
  out.clear();
  for (const XmlNode* child = first_child_; child != nullptr; child = child->next_sibling_) {
    if (name.empty() || child->name_ == name) out.push_back(child);
  }
}

}  // namespace quillmere
