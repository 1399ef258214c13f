// SPDX-License-Identifier: MIT
// A list of words and sentences of the core, in the language of the window. %1, %2 and so on, in
// this order, are places in them where the core puts names or what a server said, which stay as
// they are; what stands behind a colon or a full stop at the end may be a sentence itself. Any
// thread.
#pragma once

#include <QString>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace quillmere {

class CoreSentences {
 public:
  // context: of their translations. The lists live as long as the program.
  template <typename... Lists>
  explicit CoreSentences(const char* context, const Lists&... lists) : context_(context) {
    const auto add = [this](const auto& list) {
      for (const char* const pattern : list) Add(pattern);
    };
    (add(lists), ...);
  }

  // As it is when the list does not have it, or when it is the client library's or the server's,
  // for then it begins with the name of the call. Of several patterns the one that says most of the
  // text itself counts. Patterns are found by their first words, but for those that begin with a
  // name.
  QString Translated(std::string_view text) const;

 private:
  struct Match {
    const char* pattern = nullptr;
    std::size_t common = 0;  // bytes of the text that are the pattern's own
    std::vector<std::string_view> names;
  };

  void Add(const char* pattern);
  void Look(std::string_view first_word, std::string_view text, Match& best) const;

  const char* const context_;
  std::unordered_map<std::string_view, std::vector<const char*>> patterns_;  // by first words
};

}  // namespace quillmere
