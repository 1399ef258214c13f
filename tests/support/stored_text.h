// SPDX-License-Identifier: MIT
// Long results and tables that are compared whole: with a text that stands in a file beside the
// test.
#pragma once

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
#include <sstream>
#include <string>
#include <utility>

namespace quillmere {

inline std::string StoredText(const std::filesystem::path& file) {
  std::ifstream stored(file, std::ios::binary);
  return {std::istreambuf_iterator<char>(stored), {}};
}

// With QUILLMERE_STORE_TEXTS in the environment the file is written anew instead: look at what
// changed in it before it is committed.
inline void ExpectStored(const std::string& text, const std::filesystem::path& file) {
  if (std::getenv("QUILLMERE_STORE_TEXTS") != nullptr) {
    std::ofstream(file, std::ios::binary) << text;
  }
  EXPECT_EQ(text, StoredText(file)) << file;
}

// How characters stand in a table that could not be read there; "{2000 x}" is 2000 of them.
inline const std::pair<char, std::string> kShownAs[] = {{'\r', "\u240D"}, {'\t', "\u2409"}};

inline std::string Meant(std::string text) {
  for (const auto& [meant, shown] : kShownAs) {
    for (std::size_t at; (at = text.find(shown)) != text.npos;) {
      text.replace(at, shown.size(), 1, meant);
    }
  }
  for (std::size_t at; (at = text.find("{2000 ")) != text.npos;) {
    text.replace(at, 8, std::string(2000, text[at + 6]));
  }
  return text;
}

inline std::string Shown(std::string text) {
  for (const auto& [meant, shown] : kShownAs) {
    for (std::size_t at; (at = text.find(meant)) != text.npos;) text.replace(at, 1, shown);
  }
  for (std::size_t at = 0; at + 2000 <= text.size(); ++at) {
    if (text.find_first_not_of(text[at], at) < at + 2000) continue;
    text.replace(at, 2000, std::string("{2000 ") + text[at] + "}");
  }
  return text;
}

// A table of cases, each "= what it is", what is given, "->", and what run makes of it; an empty
// line ends a case. Given are lines without the last one's end.
inline void ExpectCases(const std::filesystem::path& file,
                        const std::function<std::string(std::string given)>& run) {
  std::istringstream lines(StoredText(file));
  std::string text, given;
  bool giving = false;
  for (std::string line; std::getline(lines, line);) {
    if (line.starts_with("= ")) {
      text += (text.empty() ? "" : "\n") + line + "\n";
      giving = true;
      given.clear();
    } else if (giving && line == "->") {
      giving = false;
      std::string found = Shown(run(Meant(given.substr(0, given.size() - 1))));
      if (!found.ends_with('\n')) found += '\n';
      text += given + "->\n" + found;
    } else if (giving) {
      given += line + "\n";
    }
  }
  EXPECT_FALSE(text.empty()) << file;
  ExpectStored(text, file);
}

}  // namespace quillmere
