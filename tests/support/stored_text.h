// SPDX-License-Identifier: MIT
// Long results and tables that are compared whole: with a text that stands in a file beside the
// test.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
#include <regex>
#include <sstream>
#include <string>
#include <utility>

namespace quillmere {

inline std::string StoredText(const std::filesystem::path& file) {
  std::ifstream stored(file, std::ios::binary);
  return {std::istreambuf_iterator<char>(stored), {}};
}

// On Windows paths in messages have a drive and other separators, which files of ours hold twice.
inline std::string AsStored(std::string text) {
#ifdef _WIN32
  static const std::regex kPath(R"((?:[A-Z]:\\{1,2}work|/work(?=\\))[A-Za-z0-9_.\\-]*)");
  std::string stored, name;
  auto from = text.cbegin();
  for (std::sregex_iterator path(from, text.cend(), kPath), end; path != end; ++path) {
    name = (*path)[0];
    if (name.size() > 1 && name[1] == ':') name.erase(0, 2);
    for (std::size_t at; (at = name.find(R"(\\)")) != name.npos;) name.erase(at, 1);
    std::replace(name.begin(), name.end(), '\\', '/');
    stored.append(from, (*path)[0].first).append(name);
    from = (*path)[0].second;
  }
  stored.append(from, text.cend());
  text.swap(stored);
#endif
  return text;
}

// With QUILLMERE_STORE_TEXTS in the environment the file is written anew instead: look at what
// changed in it before it is committed.
inline void ExpectStored(const std::string& text, const std::filesystem::path& file) {
  if (std::getenv("QUILLMERE_STORE_TEXTS") != nullptr) {
    std::ofstream(file, std::ios::binary) << text;
  }
  EXPECT_EQ(AsStored(text), StoredText(file)) << file;
}

// How characters stand in a table that could not be read there; "{2000 x}" is 2000 of them.
inline const std::pair<char, std::string> kShownAs[] = {{'\r', "\u240D"}, {'\t', "\u2409"}};
inline constexpr std::size_t kLongRun = 40;

inline std::string Meant(const std::string& shown) {
  static const std::regex kRun("\\{(\\d+) (.)\\}");
  std::string text;
  auto from = shown.begin();
  for (std::sregex_iterator run(from, shown.end(), kRun), end; run != end; ++run) {
    text.append(from, (*run)[0].first).append(std::stoul((*run)[1]), *(*run)[2].first);
    from = (*run)[0].second;
  }
  text.append(from, shown.end());
  for (const auto& [meant, as] : kShownAs) {
    for (std::size_t at; (at = text.find(as)) != text.npos;) text.replace(at, as.size(), 1, meant);
  }
  return text;
}

inline std::string Shown(std::string text) {
  for (std::size_t at = 0, end = 0; at < text.size(); at = end) {
    end = std::min(text.find_first_not_of(text[at], at), text.size());
    if (end - at < kLongRun) continue;
    const std::string run = "{" + std::to_string(end - at) + " " + text[at] + "}";
    text.replace(at, end - at, run);
    end = at + run.size();
  }
  for (const auto& [meant, as] : kShownAs) {
    for (std::size_t at; (at = text.find(meant)) != text.npos;) text.replace(at, 1, as);
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
