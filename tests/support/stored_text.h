// SPDX-License-Identifier: MIT
// Long results that are compared whole: with a text that stands in a file beside the test.
#pragma once

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

namespace quillmere {

// With QUILLMERE_STORE_TEXTS in the environment the file is written anew instead: look at what
// changed in it before it is committed.
inline void ExpectStored(const std::string& text, const std::filesystem::path& file) {
  if (std::getenv("QUILLMERE_STORE_TEXTS") != nullptr) {
    std::ofstream(file, std::ios::binary) << text;
  }
  std::ifstream stored(file, std::ios::binary);
  EXPECT_EQ(text, std::string(std::istreambuf_iterator<char>(stored), {})) << file;
}

}  // namespace quillmere
