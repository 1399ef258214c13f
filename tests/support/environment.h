// SPDX-License-Identifier: MIT
// Variables of this program's own environment, which libraries that it loads see, too.
#pragma once

#include <cstdlib>
#include <string>

namespace quillmere {

inline void SetEnvironment(const char* name, const std::string& value) {
#ifdef _WIN32
  ::_putenv_s(name, value.c_str());
#else
  ::setenv(name, value.c_str(), 1);
#endif
}

}  // namespace quillmere
