// SPDX-License-Identifier: MIT
// In place of window_bench.cpp where the window program is not built.
#include "benches.h"

namespace quillmere::bench {

void AddWindowBenches(RatioTable&) {}

}  // namespace quillmere::bench
