// SPDX-License-Identifier: MIT
// What must hold for any input, in every build.
#pragma once

#include <cstdio>
#include <cstdlib>

#define MUST(holds)                                                                   \
  do {                                                                                \
    if (!(holds)) {                                                                   \
      std::fprintf(stderr, "%s:%d: does not hold: %s\n", __FILE__, __LINE__, #holds); \
      std::abort();                                                                   \
    }                                                                                 \
  } while (false)
