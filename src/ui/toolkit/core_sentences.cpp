// SPDX-License-Identifier: MIT
#include "ui/toolkit/core_sentences.h"

#include <QCoreApplication>
#include <algorithm>
#include <string>
#include <utility>

#include "foundation/text.h"
#include "ui/toolkit/text.h"

namespace quillmere {
namespace {

std::string_view FirstWord(std::string_view text) {
  return text.substr(0, text.find(' '));
}

// What it ends with may be a sentence itself: "... failed. Reason: %2".
bool EndsWithReason(std::string_view pattern) {
  const std::size_t last = pattern.rfind('%');
  if (last + 2 != pattern.size()) return false;
  const std::string_view before = TrimRight(pattern.substr(0, last), " ");
  return before.ends_with(':') || before.ends_with('.');
}

// How many bytes of the text are the pattern's own, and what stands in the places of the others; 0
// when the text is none of the pattern.
std::size_t CommonWith(std::string_view pattern, std::string_view text,
                       std::vector<std::string_view>& names) {
  const std::size_t first = pattern.find('%');
  if (!text.starts_with(pattern.substr(0, first))) return 0;
  std::size_t common = first;
  text.remove_prefix(first);
  pattern.remove_prefix(first);
  while (!pattern.empty()) {
    const std::size_t next = pattern.find('%', 2);
    const std::string_view part = pattern.substr(2, next == pattern.npos ? next : next - 2);
    const std::size_t end =
        next == pattern.npos ? text.size() - std::min(part.size(), text.size()) : text.find(part);
    if (end == text.npos || text.substr(end, part.size()) != part) return 0;
    names.push_back(text.substr(0, end));
    common += part.size();
    text.remove_prefix(end + part.size());
    pattern.remove_prefix(2 + part.size());
  }
  return common;
}

// All at once, for a name may have a percent sign in it.
QString WithNames(const QString& words, const std::vector<QString>& names) {
  QString text;
  for (qsizetype i = 0; i < words.size(); ++i) {
    const int place = words[i] == u'%' && i + 1 < words.size() ? words[i + 1].digitValue() : 0;
    const bool name = place >= 1 && static_cast<std::size_t>(place) <= names.size();
    text += name ? names[static_cast<std::size_t>(place) - 1] : QString(words[i]);
    i += name ? 1 : 0;
  }
  return text;
}

}  // namespace

void CoreSentences::Add(const char* pattern) {
  const std::string_view words = pattern;
  if (words.find('%') == words.npos) return;  // the translation itself is found by it
  const std::string_view first = FirstWord(words);
  patterns_[first.find('%') == first.npos ? first : std::string_view()].push_back(pattern);
}

void CoreSentences::Look(std::string_view first_word, std::string_view text, Match& best) const {
  const auto found = patterns_.find(first_word);
  if (found == patterns_.end()) return;
  for (const char* const pattern : found->second) {
    std::vector<std::string_view> names;
    const std::size_t common = CommonWith(pattern, text, names);
    if (common > best.common) best = {pattern, common, std::move(names)};
  }
}

QString CoreSentences::Translated(std::string_view text) const {
  if (text.starts_with("OCI")) return ToQt(text);
  const std::string words(text);
  QString translated = QCoreApplication::translate(context_, words.c_str());
  if (ToBytes(translated) != words) return translated;
  Match best;
  Look(FirstWord(text), text, best);
  Look({}, text, best);
  if (best.pattern == nullptr) return translated;
  std::vector<QString> names;
  for (const std::string_view name : best.names) names.push_back(ToQt(name));
  if (EndsWithReason(best.pattern)) names.back() = Translated(best.names.back());
  return WithNames(QCoreApplication::translate(context_, best.pattern), names);
}

}  // namespace quillmere
